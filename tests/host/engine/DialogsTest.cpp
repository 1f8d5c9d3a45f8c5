// Dialogs and alerts the engine must refuse or settle by itself, which the options dialog never
// gives it: missing or malformed resources, a handler outside any bundle, actions a control
// cannot take, a handler that ignores Cancel, alert texts that are not in a strings table. The
// options dialog's tests run everything else through the engine.
#include <dlfcn.h>

#include <vector>

#include "EngineTestSupport.h"
#include "TestSupport.h"
#include "probe/ProbeBundle.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class DialogsTest : public EngineTest {
protected:
  void SetUp() override {
    EngineTest::SetUp();
    probe_ = scribotest::LoadBundle(ENGINE_PROBE_BUNDLE);
    handler = scribotest::Symbol<SF_DialogHandlerUPP>(probe_, "ProbeDialogHandler");
    ASSERT_NE(handler, nullptr);
  }
  void TearDown() override {
    dlclose(probe_);
    EngineTest::TearDown();
  }

  SF_DialogHandlerUPP handler = nullptr;

private:
  void* probe_ = nullptr;
};

TEST_F(DialogsTest, NoDialogWithoutAHandlerInABundleAndAUsableResource) {
  ProbeDialog never{[](OpaqueCocoaWindow*, unsigned int, long, long) -> unsigned char {
    ADD_FAILURE() << "the handler was called";
    return 1;
  }};
  auto outsideAnyBundle = [](OpaqueCocoaWindow*, unsigned int, long, long, void*) -> unsigned char {
    return 1;
  };
  EXPECT_EQ(SX_Dialog(999, handler, nullptr, 0, &never, kStamp), 0); // no such resource
  EXPECT_EQ(SX_Dialog(901, handler, nullptr, 0, &never, kStamp), 0); // an unknown kind of item
  EXPECT_EQ(SX_Dialog(900, nullptr, nullptr, 0, &never, kStamp), 0);
  EXPECT_EQ(SX_Dialog(900, +outsideAnyBundle, nullptr, 0, &never, kStamp), 0);
  EXPECT_TRUE(engine().DialogHistory().empty());
}

TEST_F(DialogsTest, ImpossibleActionsAreSkippedAndTheHostClosesWhatItsHandlerKeepsOpen) {
  // The handler disables OK and hides a radio, and never ends the dialog, not even on Cancel.
  ProbeDialog stubborn{
      [](OpaqueCocoaWindow* dialog, unsigned int message, long, long) -> unsigned char {
        if (message == kDialogMessageSetUp) {
          SX_EnableDlgItem(dialog, 1, 0, kStamp);
          SX_ShowHideDlgItem(dialog, 3, 0, kStamp);
        }
        return 1;
      }};
  engine().QueueDialogScript({DialogAction::TypeText(5, "3"), DialogAction::Toggle(6),
                              DialogAction::Click(8), DialogAction::Click(77),
                              DialogAction::Click(1), DialogAction::Click(3)});
  EXPECT_EQ(SX_Dialog(900, handler, nullptr, 0, &stubborn, kStamp), 1);
  const DialogRecord& record = engine().DialogHistory().back();
  std::vector<std::pair<unsigned int, long>> messages;
  for (const DialogMessage& m : record.messages)
    messages.emplace_back(m.message, m.item);
  EXPECT_EQ(messages, (std::vector<std::pair<unsigned int, long>>{{272, 0}, {273, 2}, {2, 0}}));
  EXPECT_EQ(record.actionsPlayed, 6u);
  EXPECT_EQ(record.end, DialogEnd::ForcedByHost);
  EXPECT_EQ(record.finalState.Find(5)->value, 0);
}

TEST_F(DialogsTest, AlertsShowTheirTextOrTheKeyOfAMissingOne) {
  const uint16_t wide[] = {u'D', 0x00FC, u'r', 0};
  EXPECT_EQ(SX_AlertMessage_UTF16(nullptr, kAlertInternal, 0, wide, kStamp), 1);
  EXPECT_EQ(SX_AlertMessage(nullptr, kAlertPlain, (910 << 16) | 9, nullptr, kStamp), 1);
  EXPECT_EQ(SX_AlertMessage(nullptr, kAlertPlain, 0, nullptr, kStamp), 0); // nothing to say
  ASSERT_EQ(engine().Alerts().size(), 2u);
  EXPECT_EQ(engine().Alerts()[0].resolved, "D\xC3\xBCr");
  EXPECT_EQ(engine().Alerts()[0].kind, kAlertInternal);
  EXPECT_EQ(engine().Alerts()[1].resolved, "910,9");
}

} // namespace
