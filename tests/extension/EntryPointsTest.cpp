// The SubdivideNotes bundle as a host drives it: loaded with dlopen next to the reference
// engine, `main`, then initialisation, enumeration of the menu item and invocation with a
// scripted options dialog.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "Engine.h"
#include "HostTypes.h"
#include "TestSupport.h"
#include "tExtensionMenuRecord.h"

namespace {

using scribo::engine::DialogAction;
using scribo::engine::DialogScript;
using scribo::engine::Engine;
using scribo::engine::EntrySpec;
using scribo::engine::FrameAddress;
using scribo::engine::HostCall;
using scribo::engine::NoteSpec;

constexpr char kVoiceTwoWarning[] =
    "The current selection contains some voice 2 entries.  These entries will not be changed.";

// The six entry points (or their aliases) of one loaded image.
struct Extension {
  uint32_t (*version)();
  int32_t (*init)(void*, uint32_t*);
  int32_t (*enumerate)(void*, short, tExtensionMenuRecord*);
  int32_t (*invoke)(OpaqueCocoaWindow*, short, EREGION*);
  void (*terminate)();
  int32_t (*menuStatus)();
};

Extension Bind(void* image, bool aliases) {
  using scribotest::Symbol;
  Extension x{};
  x.version =
      Symbol<decltype(x.version)>(image, aliases ? "Ext_getversion" : "ScriboExtensionVersion");
  x.init = Symbol<decltype(x.init)>(image, aliases ? "Ext_init" : "ScriboExtensionInit");
  x.enumerate = Symbol<decltype(x.enumerate)>(image, aliases ? "Ext_enumerate_UTF16"
                                                             : "ScriboExtensionEnumerate_UTF16");
  x.invoke = Symbol<decltype(x.invoke)>(image, aliases ? "Ext_invoke" : "ScriboExtensionInvoke");
  x.terminate =
      Symbol<decltype(x.terminate)>(image, aliases ? "Ext_terminate" : "ScriboExtensionTerminate");
  x.menuStatus = Symbol<decltype(x.menuStatus)>(image, aliases ? "Ext_getmenustatus"
                                                               : "ScriboExtensionGetMenuStatus");
  return x;
}

// Loads an image of the bundle and calls its `main` as the host does after loading.
void* LoadAndStart(const std::filesystem::path& bundle) {
  void* image = scribotest::LoadBundle(bundle);
  int context = 0;
  auto bundleMain = scribotest::Symbol<int (*)(int, void*)>(image, "main");
  EXPECT_NE(bundleMain, nullptr);
  EXPECT_EQ(bundleMain(1, &context), 1);
  return image;
}

std::filesystem::path BuiltBundle() {
  return scribotest::BuildDir() / "SubdivideNotes.bundle";
}

// The English text of `key` as the bundle's strings table words it, in UTF-16.
std::u16string EnglishText(const std::string& key) {
  std::ifstream in(scribotest::SourceDir() / "resources/en.lproj/Localizable.strings");
  std::stringstream all;
  all << in.rdbuf();
  std::smatch match;
  const std::string text = all.str();
  const std::regex line("\"" + key + "\"\\s*=\\s*\"([^\"]*)\";");
  if (!std::regex_search(text, match, line))
    throw std::runtime_error("no English text for " + key);
  const std::string utf8 = match[1];
  std::u16string out;
  for (size_t i = 0; i < utf8.size();) {
    const unsigned char c = utf8[i];
    const int length = c < 0x80 ? 1 : c < 0xE0 ? 2 : 3; // the menu texts stay in the BMP
    char32_t cp = length == 1 ? c : length == 2 ? c & 0x1F : c & 0x0F;
    for (int k = 1; k < length; ++k)
      cp = (cp << 6) | (utf8[i + k] & 0x3F);
    out.push_back(char16_t(cp));
    i += length;
  }
  return out;
}

std::u16string Text(const uint16_t (&field)[kMenuTextUnits]) {
  uint16_t copy[kMenuTextUnits];
  std::memcpy(copy, field, sizeof copy);
  std::u16string s;
  for (int i = 0; i < kMenuTextUnits && copy[i] != 0; ++i)
    s.push_back(char16_t(copy[i]));
  return s;
}

class ExtensionTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    image_ = LoadAndStart(BuiltBundle());
    direct_ = Bind(image_, false);
    aliases_ = Bind(image_, true);
  }
  void SetUp() override {
    engine().Reset();
    engine().SetAlertEcho(false);
    for (int s = 0; s < 2; ++s)
      engine().document().AddStaff();
    for (int m = 0; m < 2; ++m)
      engine().document().AddMeasure();
  }
  static Engine& engine() { return Engine::Instance(); }
  static uint32_t AddNote(int16_t staff, int16_t measure, int16_t duration, int32_t position,
                          uint32_t flags = 0) {
    EntrySpec spec;
    spec.duration = duration;
    spec.position = position;
    spec.flags = flags;
    spec.notes = {NoteSpec{0, 0, 0}};
    return engine().document().AddEntry(FrameAddress{staff, measure, 0}, spec);
  }
  static std::vector<EXENTRY> Entries(int16_t staff, int16_t measure) {
    return engine().document().Entries(FrameAddress{staff, measure, 0});
  }
  static EREGION WholeDocument() {
    EREGION r{};
    r.startStaff = 1;
    r.startMeasure = 1;
    r.endStaff = 2;
    r.endMeasure = 2;
    r.endPosition = 0x7FFFFFFF;
    return r;
  }
  // The dialog as a user fills it to split every note into `parts`.
  static DialogScript SplitInto(int parts) {
    return {DialogAction::Click(3), DialogAction::TypeText(14, std::to_string(parts)),
            DialogAction::Click(1)};
  }

  static inline void* image_ = nullptr;
  static inline Extension direct_{};
  static inline Extension aliases_{};
};

TEST_F(ExtensionTest, VersionMenuStatusAndTerminateAnswerTheirConstants) {
  for (const Extension* x : {&direct_, &aliases_}) {
    EXPECT_EQ(x->version(), 0x19500000u);
    EXPECT_EQ(x->menuStatus(), 1);
    x->terminate();
  }
  EXPECT_TRUE(engine().Alerts().empty());
}

TEST_F(ExtensionTest, InitialisationStoresZeroAndSucceedsEveryTime) {
  for (const Extension* x : {&direct_, &aliases_, &direct_}) {
    uint32_t flags = 0xFFFFFFFF;
    EXPECT_EQ(x->init(nullptr, &flags), 1);
    EXPECT_EQ(flags, 0u);
  }
  EXPECT_TRUE(engine().Alerts().empty()) << "a Mach-O host gets no internal alert";
}

TEST_F(ExtensionTest, EnumerationListsOneMenuItemWithItsEnglishTexts) {
  for (const Extension* x : {&direct_, &aliases_}) {
    for (short index : {short(0), short(-1)}) {
      tExtensionMenuRecord menu;
      std::memset(&menu, 0xAB, sizeof menu);
      EXPECT_EQ(x->enumerate(nullptr, index, &menu), 1);
      EXPECT_EQ(Text(menu.text1), EnglishText("20000,1"));
      EXPECT_EQ(Text(menu.text2), EnglishText("20000,2"));
      EXPECT_EQ(Text(menu.text3), EnglishText("20000,3"));
      EXPECT_EQ(+menu.itemValue, 1u);
    }
    for (short index : {short(1), short(2), short(32767)}) {
      tExtensionMenuRecord menu, untouched;
      std::memset(&menu, 0xAB, sizeof menu);
      std::memcpy(&untouched, &menu, sizeof menu);
      EXPECT_EQ(x->enumerate(nullptr, index, &menu), 0);
      EXPECT_EQ(std::memcmp(&menu, &untouched, sizeof menu), 0) << "nothing is written";
    }
  }
  EXPECT_TRUE(engine().Alerts().empty()) << "the bundle has its strings table";
}

TEST_F(ExtensionTest, InvocationChecksComeBeforeTheDialog) {
  uint32_t flags = 0;
  ASSERT_EQ(direct_.init(nullptr, &flags), 1);
  AddNote(1, 1, 2048, 0);
  EREGION region = WholeDocument();
  for (const Extension* x : {&direct_, &aliases_}) {
    engine().QueueDialogScript(SplitInto(2));
    EXPECT_EQ(x->invoke(nullptr, 1, &region), 0) << "only menu item 0 exists";
    EXPECT_EQ(x->invoke(nullptr, -1, &region), 0);
    EXPECT_EQ(x->invoke(nullptr, 0, nullptr), 0) << "no selection";
    EXPECT_TRUE(engine().DialogHistory().empty());
    EXPECT_EQ(engine().QueuedDialogScripts(), 1u);
    engine().ClearDialogScripts();
  }
  EXPECT_EQ(engine().CallCount(HostCall::LoadTGF), 0);
  EXPECT_EQ(Entries(1, 1).size(), 1u);
}

TEST_F(ExtensionTest, CancelledDialogChangesNothing) {
  uint32_t flags = 0;
  ASSERT_EQ(direct_.init(nullptr, &flags), 1);
  AddNote(1, 1, 2048, 0);
  EREGION region = WholeDocument();
  engine().QueueDialogScript(
      {DialogAction::Click(3), DialogAction::TypeText(14, "2"), DialogAction::Click(2)});

  EXPECT_EQ(direct_.invoke(nullptr, 0, &region), 0);

  ASSERT_EQ(engine().DialogHistory().size(), 1u);
  EXPECT_EQ(engine().DialogHistory()[0].resource, 20256);
  EXPECT_EQ(engine().CallCount(HostCall::LoadTGF), 0);
  EXPECT_EQ(Entries(1, 1).size(), 1u);
}

TEST_F(ExtensionTest, InvocationSplitsTheSelectionAsTheDialogSays) {
  uint32_t flags = 0;
  ASSERT_EQ(direct_.init(nullptr, &flags), 1);
  const uint32_t quarter = AddNote(1, 1, 1024, 0);
  AddNote(2, 2, 2048, 1024);
  EREGION region = WholeDocument();
  engine().QueueDialogScript(SplitInto(3));

  EXPECT_EQ(direct_.invoke(nullptr, 0, &region), 1);

  const auto e11 = Entries(1, 1);
  ASSERT_EQ(e11.size(), 3u);
  EXPECT_EQ(+e11[2].position, 682);
  EXPECT_EQ(e11[2].duration, 512);
  ASSERT_TRUE(engine().document().Tuplet(quarter).has_value());
  EXPECT_EQ(engine().document().Tuplet(quarter)->tupletNumber, 3);
  const auto e22 = Entries(2, 2);
  ASSERT_EQ(e22.size(), 3u);
  EXPECT_EQ(+e22[1].position, 1024 + 682);
  EXPECT_EQ(engine().CallCount(HostCall::RebeamRegion), 1);
  EXPECT_EQ(engine().LoadedFrames(), 0);

  // Target mode through the target palette: the eighth-note button (item 45) sets 512.
  engine().QueueDialogScript(
      {DialogAction::Click(3), DialogAction::Click(45), DialogAction::Click(1)});
  EXPECT_EQ(aliases_.invoke(nullptr, 0, &region), 0) << "512 TDU parts of 341 TDU notes do not fit";
  engine().ResetCallCounts();
  AddNote(1, 2, 1536, 0);
  engine().QueueDialogScript(
      {DialogAction::Click(3), DialogAction::Click(45), DialogAction::Click(1)});
  EXPECT_EQ(aliases_.invoke(nullptr, 0, &region), 1);
  EXPECT_EQ(Entries(1, 2).size(), 3u);
  EXPECT_EQ(Entries(1, 1).size(), 3u);
}

TEST_F(ExtensionTest, VoiceTwoWarningIsShownOncePerInvocation) {
  uint32_t flags = 0;
  ASSERT_EQ(direct_.init(nullptr, &flags), 1);
  AddNote(1, 1, 1024, 0, kEntryVoiceTwo);
  AddNote(2, 1, 1024, 0, kEntryVoiceTwo);
  EREGION region = WholeDocument();
  for (int run = 1; run <= 2; ++run) {
    engine().QueueDialogScript(SplitInto(2));
    EXPECT_EQ(direct_.invoke(nullptr, 0, &region), 0) << "nothing but voice 2 to split";
    ASSERT_EQ(engine().Alerts().size(), size_t(run));
    EXPECT_EQ(engine().Alerts().back().text, kVoiceTwoWarning);
    EXPECT_EQ(engine().Alerts().back().kind, 0);
  }
}

TEST(ExtensionBeforeInitialisation, InvocationShowsNoDialog) {
  // A fresh image, as after the host's start, whose initialisation has not been called.
  void* image = LoadAndStart(scribotest::FreshBundleCopy(BuiltBundle(), "uninitialised"));
  const Extension x = Bind(image, false);
  Engine& engine = Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  engine.document().AddStaff();
  engine.document().AddMeasure();
  EREGION region{};
  region.startStaff = region.endStaff = region.startMeasure = region.endMeasure = 1;
  region.endPosition = 0x7FFFFFFF;
  engine.QueueDialogScript({DialogAction::Click(1)});

  EXPECT_EQ(x.invoke(nullptr, 0, &region), 0);

  EXPECT_TRUE(engine.DialogHistory().empty());
  EXPECT_EQ(engine.CallCount(HostCall::LoadTGF), 0);
}

} // namespace
