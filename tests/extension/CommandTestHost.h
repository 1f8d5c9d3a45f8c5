// A host for the subdivision command's tests: the reference engine linked in, plug-in images
// loaded with dlopen and started as a host starts them, small documents to split, and the options
// dialog played from scripts. The plug-in code lives only in the loaded images.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "DialogItems.h"
#include "EDTTuplet.h"
#include "Engine.h"
#include "HostTypes.h"
#include "TestSupport.h"
#include "tExtensionMenuRecord.h"
#include "tSubdivideParam.h"

namespace commandtest {

using namespace scribo::engine;
using namespace dialog_items;

constexpr int32_t kNoUpperBound = 0x7FFFFFFF;

// A function or variable a loaded image exports; throws when it does not.
template <class T> T Export(void* image, const char* name) {
  if (T found = scribotest::Symbol<T>(image, name))
    return found;
  throw std::runtime_error(std::string("the image does not export ") + name);
}

// Loads an image of a bundle and calls its `main` as the host does after loading.
inline void* LoadAndStart(const std::filesystem::path& bundle) {
  void* image = scribotest::LoadBundle(bundle);
  int context = 0;
  if (Export<int (*)(int, void*)>(image, "main")(1, &context) != 1)
    throw std::runtime_error("the bundle could not bind to the engine: " + bundle.string());
  return image;
}

// The six entry points of a plug-in image, found by their names or by their Ext_ aliases.
struct Plugin {
  uint32_t (*version)();
  int32_t (*init)(void*, uint32_t*);
  int32_t (*enumerate)(void*, short, tExtensionMenuRecord*);
  int32_t (*invoke)(OpaqueCocoaWindow*, short, EREGION*);
  void (*terminate)();
  int32_t (*menuStatus)();
};
inline Plugin Bind(void* image, bool aliases = false) {
  auto find = [&](auto& fn, const char* name, const char* alias) {
    fn = Export<std::remove_reference_t<decltype(fn)>>(image, aliases ? alias : name);
  };
  Plugin p{};
  find(p.version, "ScriboExtensionVersion", "Ext_getversion");
  find(p.init, "ScriboExtensionInit", "Ext_init");
  find(p.enumerate, "ScriboExtensionEnumerate_UTF16", "Ext_enumerate_UTF16");
  find(p.invoke, "ScriboExtensionInvoke", "Ext_invoke");
  find(p.terminate, "ScriboExtensionTerminate", "Ext_terminate");
  find(p.menuStatus, "ScriboExtensionGetMenuStatus", "Ext_getmenustatus");
  return p;
}

// Split every note into `parts`, or into parts of `target` TDU.
inline tSubdivideParam Divisions(int16_t parts) {
  return {1, kNoUpperBound, 1024, parts, 1, 1};
}
inline tSubdivideParam Target(int32_t target) {
  return {1, kNoUpperBound, target, 0, 1, 0};
}
// Every field of a parameter record, for comparisons that print.
inline std::array<int32_t, 6> Fields(const tSubdivideParam& p) {
  return {p.minDuration, p.maxDuration,  p.targetDuration,
          p.divisions,   p.allDurations, p.byDivisions};
}

inline DialogAction Type(int16_t item, int32_t value) {
  return DialogAction::TypeText(item, std::to_string(value));
}
inline DialogAction Click(int16_t item) {
  return DialogAction::Click(item);
}
// The options a user gives the dialog for `param`, then OK. Typing a duration selects its group's
// radio, so the script does not depend on what the dialog remembered.
inline DialogScript OptionsScript(const tSubdivideParam& p) {
  DialogScript script;
  if (p.allDurations != 0)
    script.push_back(Click(kAllDurations));
  else
    script.insert(script.end(),
                  {Type(kMinimumField, p.minDuration), Type(kMaximumField, p.maxDuration)});
  script.push_back(p.byDivisions != 0 ? Type(kDivisionsField, p.divisions)
                                      : Type(kTargetField, p.targetDuration));
  script.push_back(Click(kOK));
  return script;
}

// Whole measures first..last of staves first..last.
inline EREGION Measures(int16_t firstStaff, int16_t lastStaff, int16_t firstMeasure,
                        int16_t lastMeasure) {
  return {0, firstStaff, firstMeasure, 0, {}, lastStaff, lastMeasure, kNoUpperBound};
}

inline EntrySpec Rest(int16_t duration, int32_t position) {
  return {duration, -1, position, 0, 0, {}};
}
inline EntrySpec Note(int16_t duration, int32_t position, int32_t actualDuration = -1,
                      uint32_t flags = 0) {
  return {duration, actualDuration, position, flags, 0, {NoteSpec{2, 0, 0}}};
}

// Entry records are packed, so a 32-bit field may sit on a 2-byte boundary: the tests read such
// a field into a value (unary +) before a test macro binds a reference to it.
inline bool SameBytes(const EXENTRY& a, const EXENTRY& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Each test starts from an empty document, four layers all shown, alerts logged but not echoed.
class HostTest : public ::testing::Test {
protected:
  void SetUp() override { Restart(); }
  void TearDown() override {
    EXPECT_EQ(engine().LoadedFrames(), 0) << "a frame was left loaded";
    engine().ClearDialogScripts();
    engine().SetInteractiveDialogs({});
  }

  static Engine& engine() { return Engine::Instance(); }
  static Document& doc() { return Engine::Instance().document(); }
  static void Restart() {
    engine().Reset();
    engine().SetAlertEcho(false);
  }
  static void Build(int staves, int measures) {
    for (int s = 0; s < staves; ++s)
      doc().AddStaff();
    for (int m = 0; m < measures; ++m)
      doc().AddMeasure();
  }
  static uint32_t Add(int16_t staff, int16_t measure, const EntrySpec& spec, int16_t layer = 0) {
    const uint32_t number = doc().AddEntry(FrameAddress{staff, measure, layer}, spec);
    EXPECT_NE(number, 0u);
    return number;
  }
  static std::vector<EXENTRY> Entries(int16_t staff, int16_t measure, int16_t layer = 0) {
    return doc().Entries(FrameAddress{staff, measure, layer});
  }
  static long Calls(HostCall call) { return engine().CallCount(call); }
  // The voice-2 warnings raised, checking that no other alert was.
  static size_t VoiceTwoWarnings() {
    for (const auto& alert : engine().Alerts())
      EXPECT_EQ(alert.text, "The current selection contains some voice 2 entries.  These "
                            "entries will not be changed.");
    return engine().Alerts().size();
  }
  // The entry's tuplet detail record; none when it has no detail record at all.
  static std::optional<EDTTuplet> TupletOf(uint32_t entryNumber) {
    const auto details = doc().EntryDetails(entryNumber);
    if (details.empty())
      return std::nullopt;
    EXPECT_EQ(details.size(), 1u);
    EXPECT_EQ(details[0].tag, kTupletDetailTag);
    EDTTuplet tuplet{};
    EXPECT_EQ(details[0].bytes.size(), sizeof tuplet);
    std::memcpy(&tuplet, details[0].bytes.data(), std::min(sizeof tuplet, details[0].bytes.size()));
    return tuplet;
  }
  static const DialogRecord& LastDialog() {
    EXPECT_FALSE(engine().DialogHistory().empty());
    return engine().DialogHistory().back();
  }
};

// The SubdivideNotes bundle, loaded and initialised once per process as a host does, splitting
// through its own options dialog.
class CommandTest : public HostTest {
protected:
  struct Image {
    Plugin names, aliases;
    const int32_t* loadedTGFCounter;
  };
  static const Image& Loaded() {
    static const Image image = [] {
      void* loaded = LoadAndStart(scribotest::BuildDir() / "SubdivideNotes.bundle");
      uint32_t flags = 0;
      if (Bind(loaded).init(nullptr, &flags) != 1)
        throw std::runtime_error("SubdivideNotes did not initialise");
      return Image{Bind(loaded), Bind(loaded, true),
                   Export<const int32_t*>(loaded, "LoadedTGFCounter")};
    }();
    return image;
  }
  static const Plugin& Command(bool aliases = false) {
    return aliases ? Loaded().aliases : Loaded().names;
  }
  void TearDown() override {
    HostTest::TearDown();
    EXPECT_EQ(*Loaded().loadedTGFCounter, 0) << "the plug-in counts a frame still loaded";
  }
  // One invocation on `region` whose dialog the user fills in for `param`; the dialog must
  // accept it. Returns the invocation's result.
  static int Run(EREGION region, const tSubdivideParam& param) {
    engine().QueueDialogScript(OptionsScript(param));
    const int result = Command().invoke(nullptr, 0, &region);
    EXPECT_EQ(LastDialog().end, DialogEnd::ByHandler) << "the dialog refused the options";
    return result;
  }
};

} // namespace commandtest
