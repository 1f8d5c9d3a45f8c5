// A host for the options dialog: the reference engine linked in, and a fresh copy of the dialog
// probe bundle loaded the way a host loads a plug-in, so every test starts as if the host had
// just started. Dialogs run through the engine's SX_Dialog, scripted or step by step.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Engine.h"
#include "HostTypes.h"
#include "TestSupport.h"
#include "tSubdivideParam.h"

namespace dialogtest {

using scribo::engine::DialogAction;
using scribo::engine::DialogControl;
using scribo::engine::DialogRecord;
using scribo::engine::DialogView;
using scribo::engine::Engine;
using scribo::engine::ScreenRect;

// The probe bundle's exports.
struct DialogProbe {
  short (*init)() = nullptr;
  short (*specify)(OpaqueCocoaWindow*, tSubdivideParam*) = nullptr;
  void* (*handlerHandle)() = nullptr;
  SF_DialogHandlerProcPtr handler = nullptr; // MyDlogHandler itself
  void (*getState)(tSubdivideParam*) = nullptr;
  void (*setState)(const tSubdivideParam*) = nullptr;
  void (*getWinPos)(short*, short*) = nullptr;
  void (*setWinPos)(short, short) = nullptr;
  void (*noteDialogWindow)() = nullptr;
  OpaqueCocoaWindow* (*openDialog)() = nullptr;

  tSubdivideParam State() const {
    tSubdivideParam state{};
    getState(&state);
    return state;
  }
  std::pair<short, short> WinPos() const { // {top, left}
    short top = 0, left = 0;
    getWinPos(&top, &left);
    return {top, left};
  }
};

inline std::filesystem::path ProbeBundle() {
  return DIALOG_PROBE_BUNDLE;
}

inline DialogProbe BindProbe(void* image) {
  using scribotest::Symbol;
  DialogProbe p;
  p.init = Symbol<short (*)()>(image, "ProbeInitSelectSubdivisionDialog");
  p.specify =
      Symbol<short (*)(OpaqueCocoaWindow*, tSubdivideParam*)>(image, "ProbeSpecifySubdivision");
  p.handlerHandle = Symbol<void* (*)()>(image, "ProbeHandlerHandle");
  p.handler = reinterpret_cast<SF_DialogHandlerProcPtr>(
      Symbol<void* (*)()>(image, "ProbeHandlerAddress")());
  p.getState = Symbol<void (*)(tSubdivideParam*)>(image, "ProbeGetDialogState");
  p.setState = Symbol<void (*)(const tSubdivideParam*)>(image, "ProbeSetDialogState");
  p.getWinPos = Symbol<void (*)(short*, short*)>(image, "ProbeGetWinPos");
  p.setWinPos = Symbol<void (*)(short, short)>(image, "ProbeSetWinPos");
  p.noteDialogWindow = Symbol<void (*)()>(image, "ProbeNoteDialogWindow");
  p.openDialog = Symbol<OpaqueCocoaWindow* (*)()>(image, "ProbeOpenDialog");
  return p;
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

// Items of dialog 20256 the tests name.
enum : int16_t {
  kOK = 1,
  kCancel = 2,
  kAllDurations = 3,
  kDurationRange = 4,
  kMinDotted = 6,
  kMinField = 7,
  kMaxDotted = 10,
  kMaxField = 11,
  kByDivisions = 13,
  kPartsField = 14,
  kByTarget = 16,
  kTargetDotted = 17,
  kTargetField = 18,
  kMinPalette = 25,
  kMaxPalette = 33,
  kTargetPalette = 41,
};

class DialogHost : public ::testing::Test {
protected:
  void SetUp() override {
    Engine::Instance().Reset();
    Engine::Instance().SetAlertEcho(false);
    const std::string tag =
        std::string("dialog-") + ::testing::UnitTest::GetInstance()->current_test_info()->name();
    copy_ = scribotest::FreshBundleCopy(ProbeBundle(), tag);
    image_ = scribotest::LoadBundle(copy_);
    auto bundleMain = scribotest::Symbol<int (*)(int, void*)>(image_, "main");
    ASSERT_NE(bundleMain, nullptr);
    int context = 0;
    ASSERT_EQ(bundleMain(1, &context), 1) << "the probe did not bind to the engine";
    probe_ = BindProbe(image_);
  }

  void TearDown() override {
    Engine::Instance().ClearDialogScripts();
    Engine::Instance().SetInteractiveDialogs({});
    // The image stays loaded, as in a host: the binding keeps its engine bundle for the life of
    // the process, and unloading would orphan it.
    std::error_code ec;
    std::filesystem::remove_all(copy_.parent_path(), ec);
  }

  // Initialises the dialog handle, as extension initialisation does.
  void Init() { ASSERT_EQ(probe_.init(), 1); }

  // Runs SpecifySubdivision with a scripted dialog; returns its result.
  short RunScript(std::vector<DialogAction> script, tSubdivideParam* out) {
    Engine::Instance().QueueDialogScript(std::move(script));
    return probe_.specify(nullptr, out);
  }

  // Runs SpecifySubdivision step by step, with the dialog window at hand. Needs
  // probe_.noteDialogWindow() to have been called.
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
  void* image_ = nullptr;
  DialogProbe probe_;
};

// Checks a palette's eight buttons, given as a string of 0/1, first button first.
inline DialogStep ExpectPalette(int16_t firstButton, std::string bits) {
  return Check([=](const DialogMoment& m) {
    EXPECT_EQ(PaletteBits([&](int16_t item) { return m.Value(item); }, firstButton), bits)
        << "palette " << firstButton;
  });
}

// Value of an item in the controls as they were when the dialog closed.
inline int32_t FinalValue(const DialogRecord& record, int16_t item) {
  const DialogControl* c = record.finalState.Find(item);
  EXPECT_NE(c, nullptr) << "no item " << item;
  return c ? c->value : 0;
}

} // namespace dialogtest
