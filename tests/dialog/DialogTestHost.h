// A host for the options dialog: the reference engine linked in, and a fresh copy of the dialog
// probe bundle loaded the way a host loads a plug-in, so every test starts as if the host had
// just started. Dialogs run through the engine's SX_Dialog, scripted or step by step.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "Engine.h"
#include "HostTypes.h"
#include "TestSupport.h"
#include "tSubdivideParam.h"

namespace dialogtest {

using scribo::engine::DialogAction;
using scribo::engine::DialogRecord;
using scribo::engine::DialogView;
using scribo::engine::Engine;

// Where the dialog was when it last closed, as the probe keeps it.
struct WinPos {
  int16_t top, left;
  bool operator==(const WinPos&) const = default;
  friend std::ostream& operator<<(std::ostream& os, WinPos p) {
    return os << "{top " << p.top << ", left " << p.left << '}';
  }
};
static_assert(sizeof(WinPos) == 4 && offsetof(WinPos, left) == 2);

// The probe bundle's exports; the remembered settings and position are read and written in
// place.
struct DialogProbe {
  short (*init)() = nullptr;
  short (*specify)(OpaqueCocoaWindow*, tSubdivideParam*) = nullptr;
  SF_DialogHandlerUPP (*handlerHandle)() = nullptr;
  SF_DialogHandlerProcPtr (*handler)() = nullptr; // MyDlogHandler itself
  void (*noteDialogWindow)() = nullptr;
  OpaqueCocoaWindow* (*openDialog)() = nullptr;
  tSubdivideParam* (*state)() = nullptr;
  WinPos* (*winPos)() = nullptr;
};

inline bool SameParam(const tSubdivideParam& a, const tSubdivideParam& b) {
  return a.minDuration == b.minDuration && a.maxDuration == b.maxDuration &&
         a.targetDuration == b.targetDuration && a.divisions == b.divisions &&
         a.allDurations == b.allDurations && a.byDivisions == b.byDivisions;
}

inline DialogAction Type(int16_t item, std::string text) {
  return DialogAction::TypeText(item, std::move(text));
}
inline DialogAction Click(int16_t item) {
  return DialogAction::Click(item);
}
inline DialogAction Toggle(int16_t item) {
  return DialogAction::Toggle(item);
}

// The eight buttons of a palette as a string of 0/1, first button first.
inline std::string PaletteBits(const std::function<int32_t(int16_t)>& value, int16_t first) {
  std::string bits;
  for (int k = 0; k < 8; ++k)
    bits += value(static_cast<int16_t>(first + k)) ? '1' : '0';
  return bits;
}

// The engine's own control calls, read directly as the host's dialog sees its controls.
extern "C" int32_t SX_GetDlgCntlVal(OpaqueCocoaWindow* window, int item, char* buffer, int size,
                                    uint32_t version);

// What a step of a dialog run sees: the open dialog window, its controls read live from the
// engine, and the engine's view as of the last user action.
struct DialogMoment {
  OpaqueCocoaWindow* window;
  const DialogView& view;
  int32_t Value(int16_t item) const {
    EXPECT_NE(view.Find(item), nullptr) << "no item " << item;
    return SX_GetDlgCntlVal(window, item, nullptr, 0, 0x19500000);
  }
  std::string Text(int16_t item) const {
    char buffer[64] = {};
    SX_GetDlgCntlVal(window, item, buffer, sizeof buffer, 0x19500000);
    return buffer;
  }
  std::string Bits(int16_t firstButton) const {
    return PaletteBits([&](int16_t item) { return Value(item); }, firstButton);
  }
  // Every item's value and text, to see that a message changed nothing.
  std::vector<std::pair<int32_t, std::string>> Snapshot() const {
    std::vector<std::pair<int32_t, std::string>> all;
    for (int16_t item = 1; item <= 48; ++item)
      all.emplace_back(Value(item), Text(item));
    return all;
  }
};
// One step: look at the dialog (and, playing host, call the handler directly), then give the
// next user action, or nothing to go on with the next step.
using DialogStep = std::function<std::optional<DialogAction>(const DialogMoment&)>;

inline DialogStep Do(DialogAction action) {
  return [action](const DialogMoment&) { return std::optional<DialogAction>(action); };
}
inline DialogStep Check(std::function<void(const DialogMoment&)> check) {
  return [check](const DialogMoment& m) {
    check(m);
    return std::optional<DialogAction>();
  };
}
// Checks that the items hold these values.
inline DialogStep Expect(std::vector<std::pair<int16_t, int32_t>> values) {
  return Check([values](const DialogMoment& m) {
    for (auto [item, value] : values)
      EXPECT_EQ(m.Value(item), value) << "item " << item;
  });
}
// Checks a palette's eight buttons, given as a string of 0/1, first button first.
inline DialogStep ExpectPalette(int16_t firstButton, std::string bits) {
  return Check([=](const DialogMoment& m) {
    EXPECT_EQ(m.Bits(firstButton), bits) << "palette " << firstButton;
  });
}

// Value of an item in the controls as they were when the dialog closed.
inline int32_t FinalValue(const DialogRecord& record, int16_t item) {
  const auto* c = record.finalState.Find(item);
  EXPECT_NE(c, nullptr) << "no item " << item;
  return c ? c->value : 0;
}

// Items of dialog 20256 the tests name.
constexpr int16_t kOK = 1, kCancel = 2, kAllDurations = 3, kDurationRange = 4, kMinDotted = 6,
                  kMinField = 7, kMaxDotted = 10, kMaxField = 11, kByDivisions = 13,
                  kPartsField = 14, kByTarget = 16, kTargetDotted = 17, kTargetField = 18,
                  kMinPalette = 25, kMaxPalette = 33, kTargetPalette = 41;

class DialogHost : public ::testing::Test {
protected:
  void SetUp() override {
    Engine::Instance().Reset();
    Engine::Instance().SetAlertEcho(false);
    const std::string tag =
        std::string("dialog-") + ::testing::UnitTest::GetInstance()->current_test_info()->name();
    copy_ = scribotest::FreshBundleCopy(DIALOG_PROBE_BUNDLE, tag);
    void* image = scribotest::LoadBundle(copy_);
    auto bind = [&](auto& fn, const char* name) {
      fn = scribotest::Symbol<std::remove_reference_t<decltype(fn)>>(image, name);
      ASSERT_NE(fn, nullptr) << name;
    };
    int (*bundleMain)(int, void*) = nullptr;
    bind(bundleMain, "main");
    ASSERT_FALSE(HasFatalFailure());
    int context = 0;
    ASSERT_EQ(bundleMain(1, &context), 1) << "the probe did not bind to the engine";
    bind(probe_.init, "ProbeInitSelectSubdivisionDialog");
    bind(probe_.specify, "ProbeSpecifySubdivision");
    bind(probe_.handlerHandle, "ProbeHandlerHandle");
    bind(probe_.handler, "ProbeHandler");
    bind(probe_.noteDialogWindow, "ProbeNoteDialogWindow");
    bind(probe_.openDialog, "ProbeOpenDialog");
    bind(probe_.state, "ProbeDialogState");
    bind(probe_.winPos, "ProbeWinPos");
  }

  void TearDown() override {
    Engine::Instance().ClearDialogScripts();
    Engine::Instance().SetInteractiveDialogs({});
    // The image stays loaded, as in a host: the binding keeps its engine bundle for the life of
    // the process, and unloading would orphan it.
    std::error_code ec;
    std::filesystem::remove_all(copy_.parent_path(), ec);
  }

  // Initialises the dialog handle, as extension initialisation does; with `noteWindow` the
  // open dialog window is reachable from the steps of RunSteps.
  void Init(bool noteWindow = false) {
    ASSERT_EQ(probe_.init(), 1);
    if (noteWindow)
      probe_.noteDialogWindow();
  }

  // Runs SpecifySubdivision with a scripted dialog; returns its result.
  short RunScript(std::vector<DialogAction> script, tSubdivideParam* out) {
    Engine::Instance().QueueDialogScript(std::move(script));
    return probe_.specify(nullptr, out);
  }

  // Runs SpecifySubdivision step by step, with the dialog window at hand.
  short RunSteps(std::vector<DialogStep> steps, tSubdivideParam* out) {
    size_t next = 0;
    Engine::Instance().SetInteractiveDialogs(
        [&](const DialogView& view) -> std::optional<DialogAction> {
          while (next < steps.size()) {
            DialogMoment moment{probe_.openDialog(), view};
            if (auto action = steps[next++](moment))
              return action;
          }
          return std::nullopt;
        });
    const short result = probe_.specify(nullptr, out);
    Engine::Instance().SetInteractiveDialogs({});
    EXPECT_EQ(next, steps.size()) << "the dialog closed before every step ran";
    return result;
  }

  const DialogRecord& LastDialog() const {
    const auto& history = Engine::Instance().DialogHistory();
    EXPECT_FALSE(history.empty());
    return history.back();
  }

  std::filesystem::path copy_;
  DialogProbe probe_;
};

} // namespace dialogtest
