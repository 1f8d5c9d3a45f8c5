// Dialogs run by the engine against a handler inside a plug-in bundle (the probe), driven by
// scripts and by an interactive source; alerts localised from the caller's bundle.
#include <cstdlib>
#include <functional>
#include <string>

#include "EngineTestSupport.h"
#include "probe/ProbeBundle.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

using Handler = std::function<unsigned char(OpaqueCocoaWindow*, unsigned int, long, long)>;

unsigned char Forward(ProbeDialog* self, OpaqueCocoaWindow* dialog, unsigned int message, long item,
                      long extra) {
  return (*static_cast<Handler*>(self->test))(dialog, message, item, extra);
}

unsigned char HandlerOutsideAnyBundle(OpaqueCocoaWindow*, unsigned int, long, long, void*) {
  return 1;
}

constexpr int32_t kRangeAlert = (910 << 16) | 1;
constexpr long kTyped = 0x202L << 16;

class DialogsTest : public EngineTest {
protected:
  void SetUp() override {
    EngineTest::SetUp();
    probe_ = scribotest::LoadBundle(ENGINE_PROBE_BUNDLE);
    probeHandler = reinterpret_cast<ProbeDialogHandlerFn>(dlsym(probe_, "ProbeDialogHandler"));
    probeAlert = reinterpret_cast<ProbeAlertFn>(dlsym(probe_, "ProbeAlert"));
    ASSERT_NE(probeHandler, nullptr);
    ASSERT_NE(probeAlert, nullptr);
  }
  void TearDown() override {
    dlclose(probe_);
    EngineTest::TearDown();
  }

  // Runs dialog `resource` with `handler` behind the probe's exported handler.
  intptr_t Run(int resource, Handler handler) {
    ProbeDialog user{&Forward, &handler};
    return host.Dialog(resource, probeHandler, nullptr, 0x3001, &user, kStamp);
  }

  // A handler like a plug-in's options dialog: OK accepts a part count of 2..32, otherwise it
  // raises the range alert and puts the focus on the field; Cancel ends the dialog.
  Handler Validating(bool* accepted) {
    return [this, accepted](OpaqueCocoaWindow* dialog, unsigned int message, long item,
                            long) -> unsigned char {
      if (message != kDialogMessageAction)
        return message == kDialogMessageSetUp;
      if (item == 1) {
        int32_t parts = host.GetDlgCntlVal(dialog, 6, nullptr, 0, kStamp);
        if (parts < 2 || parts > 32) {
          probeAlert(kAlertRejected, kRangeAlert, nullptr, nullptr);
          host.SetDlgFocus(dialog, 6, kStamp);
          return 1;
        }
        *accepted = true;
        host.EndDialog(dialog, kStamp);
      } else if (item == 2) {
        host.EndDialog(dialog, kStamp);
      }
      return 1;
    };
  }

  ProbeDialogHandlerFn probeHandler = nullptr;
  ProbeAlertFn probeAlert = nullptr;

private:
  void* probe_ = nullptr;
};

std::vector<std::tuple<unsigned, long, long>> Messages(const DialogRecord& record) {
  std::vector<std::tuple<unsigned, long, long>> out;
  for (const DialogMessage& m : record.messages)
    out.emplace_back(m.message, m.item, m.extra);
  return out;
}

TEST_F(DialogsTest, ScriptedActionsReachTheHandlerInOrderWithTheirCodes) {
  int32_t typedValue = -1;
  int32_t clearedValue = -1;
  Handler handler = [&](OpaqueCocoaWindow* dialog, unsigned int message, long item,
                        long) -> unsigned char {
    EXPECT_EQ(host.IsCocoaSXDLG(dialog, kStamp), 1);
    if (message == kDialogMessageSetUp) {
      host.SetDlgCntlVal(dialog, 6, nullptr, 5, kStamp);
      host.SetDlgCntlVal(dialog, 7, "Viola", 0, kStamp);
      host.SetDlgCntlVal(dialog, 7, "", 0, kStamp); // an empty text clears the field
      clearedValue = host.GetDlgCntlVal(dialog, 7, nullptr, 0, kStamp);
    } else if (message == kDialogMessageAction && item == 1) {
      typedValue = host.GetDlgCntlVal(dialog, 6, nullptr, 0, kStamp);
      host.EndDialog(dialog, kStamp);
    }
    return message == kDialogMessageClose ? 0 : 1;
  };
  engine().QueueDialogScript({DialogAction::TypeText(6, "12"), DialogAction::Toggle(5),
                              DialogAction::Click(9), DialogAction::Click(3),
                              DialogAction::Click(1), DialogAction::Click(2)});
  EXPECT_EQ(Run(900, handler), 1);

  ASSERT_EQ(engine().DialogHistory().size(), 1u);
  const DialogRecord& record = engine().DialogHistory()[0];
  EXPECT_EQ(Messages(record), (std::vector<std::tuple<unsigned, long, long>>{{272, 0, 0},
                                                                             {273, 6, kTyped},
                                                                             {273, 5, 0},
                                                                             {273, 9, 0},
                                                                             {273, 3, 0},
                                                                             {273, 1, 0},
                                                                             {2, 0, 0}}));
  EXPECT_EQ(record.end, DialogEnd::ByHandler);
  EXPECT_EQ(record.actionsPlayed, 5u); // the action after the end is never played
  EXPECT_EQ(typedValue, 12);
  EXPECT_EQ(clearedValue, 0);
  const DialogView& last = record.finalState;
  EXPECT_EQ(last.Find(5)->value, 1); // the check box flipped
  EXPECT_EQ(last.Find(9)->value, 0); // palette buttons and radios are the handler's to set
  EXPECT_EQ(last.Find(3)->value, 0);
  EXPECT_EQ(last.Find(7)->text, "");
  EXPECT_EQ(last.Find(1)->label, "OK");
  EXPECT_EQ(last.Find(6)->label, "Parts");
  EXPECT_EQ(last.Find(10)->label, "no such key"); // no text for the key: the key itself
}

TEST_F(DialogsTest, RejectedEntriesRaiseLocalisedAlertsUntilAccepted) {
  bool accepted = false;
  engine().QueueDialogScript({DialogAction::TypeText(6, "40"), DialogAction::Click(1),
                              DialogAction::TypeText(6, "8"), DialogAction::Click(1)});
  EXPECT_EQ(Run(900, Validating(&accepted)), 1);
  EXPECT_TRUE(accepted);
  const DialogRecord& record = engine().DialogHistory().back();
  EXPECT_EQ(record.focusChanges, std::vector<int16_t>{6});
  ASSERT_EQ(engine().Alerts().size(), 1u);
  const AlertRecord& alert = engine().Alerts()[0];
  EXPECT_EQ(alert.kind, kAlertRejected);
  EXPECT_EQ(alert.key, "910,1");
  EXPECT_EQ(alert.resolved, "The value must lie between 2 and 32.");
  EXPECT_EQ(alert.dialog, 0); // raised without an owner window
}

TEST_F(DialogsTest, ExhaustedScriptsPressCancelAndTheHostEndsStubbornDialogs) {
  bool accepted = false;
  engine().QueueDialogScript({DialogAction::TypeText(6, "40"), DialogAction::Click(1)});
  EXPECT_EQ(Run(900, Validating(&accepted)), 1);
  EXPECT_FALSE(accepted);
  EXPECT_EQ(engine().DialogHistory().back().end, DialogEnd::ByCancel);
  EXPECT_EQ(std::get<1>(Messages(engine().DialogHistory().back()).rbegin()[1]),
            2); // Cancel before close

  // No script at all: Cancel at once. A handler that ignores Cancel is closed by the host.
  EXPECT_EQ(Run(900, Validating(&accepted)), 1);
  EXPECT_EQ(engine().DialogHistory().back().actionsPlayed, 0u);
  EXPECT_EQ(
      Run(900, [](OpaqueCocoaWindow*, unsigned int, long, long) -> unsigned char { return 1; }), 1);
  EXPECT_EQ(engine().DialogHistory().back().end, DialogEnd::ForcedByHost);
  EXPECT_EQ(Messages(engine().DialogHistory().back()).back(),
            (std::tuple<unsigned, long, long>{2, 0, 0}));

  // Actions on items that cannot take them are skipped without a message.
  engine().QueueDialogScript(
      {DialogAction::TypeText(5, "3"), DialogAction::Toggle(6), DialogAction::Click(77)});
  EXPECT_EQ(Run(900, Validating(&accepted)), 1);
  EXPECT_EQ(Messages(engine().DialogHistory().back()).size(), 3u); // 272, Cancel, 2
}

TEST_F(DialogsTest, InteractiveSourceSeesTheDialogAndItsAlerts) {
  bool accepted = false;
  std::vector<std::string> seenAlerts;
  int turns = 0;
  engine().SetInteractiveDialogs([&](const DialogView& view) -> std::optional<DialogAction> {
    EXPECT_EQ(view.resource, 900);
    EXPECT_EQ(view.Find(2)->label, "Cancel");
    for (const AlertRecord& a : view.alerts)
      seenAlerts.push_back(a.resolved);
    switch (turns++) {
    case 0:
      return DialogAction::TypeText(6, "1");
    case 1:
      return DialogAction::Click(1);
    case 2:
      EXPECT_EQ(view.focus, 6);
      return DialogAction::TypeText(6, "32");
    case 3:
      return DialogAction::Click(1);
    default:
      return std::nullopt;
    }
  });
  EXPECT_EQ(Run(900, Validating(&accepted)), 1);
  EXPECT_TRUE(accepted);
  EXPECT_EQ(turns, 4);
  EXPECT_EQ(seenAlerts, (std::vector<std::string>{"The value must lie between 2 and 32.",
                                                  "The value must lie between 2 and 32."}));
  engine().SetInteractiveDialogs(nullptr);
}

TEST_F(DialogsTest, MissingOrMalformedResourcesShowNoDialog) {
  bool called = false;
  Handler handler = [&](OpaqueCocoaWindow*, unsigned int, long, long) -> unsigned char {
    called = true;
    return 1;
  };
  EXPECT_EQ(Run(999, handler), 0);
  EXPECT_EQ(Run(901, handler), 0); // an item of an unknown kind
  EXPECT_EQ(host.Dialog(900, &HandlerOutsideAnyBundle, nullptr, 0, nullptr, kStamp), 0);
  EXPECT_FALSE(called);
  EXPECT_TRUE(engine().DialogHistory().empty());
}

TEST_F(DialogsTest, LabelsAndAlertsFollowTheUsersLanguage) {
  setenv("LC_ALL", "fr_FR.UTF-8", 1);
  bool accepted = false;
  engine().QueueDialogScript({DialogAction::Click(1)});
  Run(900, Validating(&accepted));
  EXPECT_EQ(probeAlert(kAlertPlain, kRangeAlert, nullptr, nullptr), 1);
  setenv("LC_ALL", "C", 1);
  const DialogView& view = engine().DialogHistory().back().finalState;
  EXPECT_EQ(view.Find(1)->label, "Valider");
  EXPECT_EQ(view.Find(6)->label, "900,6"); // not translated
  EXPECT_EQ(engine().Alerts().back().resolved, "La valeur doit être comprise entre 2 et 32.");

  // Literal texts, 8-bit (Mac Roman) and UTF-16; an identifier without a text shows its key.
  EXPECT_EQ(probeAlert(kAlertPlain, 0, "Caf\x8E", nullptr), 1);
  const uint16_t wide[] = {u'D', 0x00FC, u'r', 0};
  EXPECT_EQ(probeAlert(kAlertInternal, 0, nullptr, wide), 1);
  EXPECT_EQ(probeAlert(kAlertPlain, (910 << 16) | 9, nullptr, nullptr), 1);
  EXPECT_EQ(probeAlert(kAlertPlain, 0, nullptr, nullptr), 0); // nothing to say
  const auto& alerts = engine().Alerts();
  ASSERT_EQ(alerts.size(), 5u);
  EXPECT_EQ(alerts[2].resolved, "Café");
  EXPECT_EQ(alerts[3].resolved, "Dür");
  EXPECT_EQ(alerts[3].kind, kAlertInternal);
  EXPECT_EQ(alerts[4].resolved, "910,9");
}

} // namespace
