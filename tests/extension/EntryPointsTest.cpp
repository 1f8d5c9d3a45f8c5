// The SubdivideNotes bundle as a host drives it: loaded with dlopen next to the reference
// engine, `main`, then initialisation, enumeration of the menu item and invocation with a
// scripted options dialog. Every check runs through both the entry points and their aliases.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "HostTypes.h"
#include "SubdivisionHost.h"
#include "tExtensionMenuRecord.h"

namespace subdivisiontest {
namespace {

using scribo::engine::DialogAction;
using scribo::engine::DialogScript;

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
  auto find = [&](auto& fn, const char* name, const char* alias) {
    fn = scribotest::Symbol<std::remove_reference_t<decltype(fn)>>(image, aliases ? alias : name);
    if (!fn)
      throw std::runtime_error(std::string("missing entry point ") + (aliases ? alias : name));
  };
  Extension x{};
  find(x.version, "ScriboExtensionVersion", "Ext_getversion");
  find(x.init, "ScriboExtensionInit", "Ext_init");
  find(x.enumerate, "ScriboExtensionEnumerate_UTF16", "Ext_enumerate_UTF16");
  find(x.invoke, "ScriboExtensionInvoke", "Ext_invoke");
  find(x.terminate, "ScriboExtensionTerminate", "Ext_terminate");
  find(x.menuStatus, "ScriboExtensionGetMenuStatus", "Ext_getmenustatus");
  return x;
}

std::filesystem::path BuiltBundle() {
  return scribotest::BuildDir() / "SubdivideNotes.bundle";
}

// The English text of `key` as the bundle's strings table words it, in UTF-8.
std::string EnglishText(const std::string& key) {
  std::ifstream in(scribotest::SourceDir() / "resources/en.lproj/Localizable.strings");
  std::stringstream all;
  all << in.rdbuf();
  const std::string text = all.str();
  std::smatch match;
  if (!std::regex_search(text, match, std::regex("\"" + key + "\"\\s*=\\s*\"([^\"]*)\";")))
    throw std::runtime_error("no English text for " + key);
  return match[1];
}

// A zero-terminated UTF-16 menu text in UTF-8 (the menu texts stay in the BMP).
std::string Text(const uint16_t (&field)[kMenuTextUnits]) {
  uint16_t units[kMenuTextUnits];
  std::memcpy(units, field, sizeof units);
  std::string s;
  for (int i = 0; i < kMenuTextUnits && units[i] != 0; ++i) {
    const unsigned u = units[i];
    if (u < 0x80)
      s += char(u);
    else if (u < 0x800)
      s += {char(0xC0 | u >> 6), char(0x80 | (u & 0x3F))};
    else
      s += {char(0xE0 | u >> 12), char(0x80 | (u >> 6 & 0x3F)), char(0x80 | (u & 0x3F))};
  }
  return s;
}

// The dialog as a user fills it to split every note into `parts`.
DialogScript SplitInto(int parts) {
  return {DialogAction::Click(3), DialogAction::TypeText(14, std::to_string(parts)),
          DialogAction::Click(1)};
}

class ExtensionTest : public EngineTest {
protected:
  static void SetUpTestSuite() {
    void* image = LoadAndStart(BuiltBundle());
    both_[0] = Bind(image, false);
    both_[1] = Bind(image, true);
  }
  void SetUp() override {
    EngineTest::SetUp();
    Build(2, 2);
  }
  static inline Extension both_[2]{};
  static inline EREGION whole_ = Measures(1, 2, 1, 2);
};

TEST_F(ExtensionTest, ConstantsAndInitialisationAnswerTheSameThroughEitherName) {
  for (const Extension& x : {both_[0], both_[1], both_[0]}) {
    EXPECT_EQ(x.version(), 0x19500000u);
    EXPECT_EQ(x.menuStatus(), 1);
    x.terminate();
    uint32_t flags = 0xFFFFFFFF;
    EXPECT_EQ(x.init(nullptr, &flags), 1) << "initialisation succeeds every time";
    EXPECT_EQ(flags, 0u);
  }
  EXPECT_TRUE(engine().Alerts().empty()) << "a Mach-O host gets no internal alert";
}

TEST_F(ExtensionTest, EnumerationListsOneMenuItemWithItsEnglishTexts) {
  for (const Extension& x : both_) {
    for (short index : {short(0), short(-1)}) {
      tExtensionMenuRecord menu;
      std::memset(&menu, 0xAB, sizeof menu);
      EXPECT_EQ(x.enumerate(nullptr, index, &menu), 1);
      EXPECT_EQ(Text(menu.text1), EnglishText("20000,1"));
      EXPECT_EQ(Text(menu.text2), EnglishText("20000,2"));
      EXPECT_EQ(Text(menu.text3), EnglishText("20000,3"));
      EXPECT_EQ(+menu.itemValue, 1u);
      // Only each text, its terminator and the field's last unit are written.
      uint16_t fields[3][kMenuTextUnits];
      std::memcpy(fields, &menu, sizeof fields);
      for (const auto& field : fields) {
        size_t end = 0;
        while (field[end] != 0)
          ++end;
        for (size_t i = end + 1; i + 1 < kMenuTextUnits; ++i)
          EXPECT_EQ(field[i], 0xABAB) << "unit " << i << " of a text was overwritten";
        EXPECT_EQ(field[kMenuTextUnits - 1], 0);
      }
    }
    for (short index : {short(1), short(2), short(32767)}) {
      tExtensionMenuRecord menu, untouched;
      std::memset(&menu, 0xAB, sizeof menu);
      std::memcpy(&untouched, &menu, sizeof menu);
      EXPECT_EQ(x.enumerate(nullptr, index, &menu), 0);
      EXPECT_EQ(std::memcmp(&menu, &untouched, sizeof menu), 0) << "nothing is written";
    }
  }
  EXPECT_TRUE(engine().Alerts().empty()) << "the bundle has its strings table";
}

TEST_F(ExtensionTest, InvocationChecksComeBeforeTheDialogAndCancelChangesNothing) {
  uint32_t flags = 0;
  ASSERT_EQ(both_[0].init(nullptr, &flags), 1);
  Add(1, 1, Note(2048, 0));
  for (const Extension& x : both_) {
    engine().QueueDialogScript(SplitInto(2));
    EXPECT_EQ(x.invoke(nullptr, 1, &whole_), 0) << "only menu item 0 exists";
    EXPECT_EQ(x.invoke(nullptr, -1, &whole_), 0);
    EXPECT_EQ(x.invoke(nullptr, 0, nullptr), 0) << "no selection";
    EXPECT_TRUE(engine().DialogHistory().empty());
    EXPECT_EQ(engine().QueuedDialogScripts(), 1u);
    engine().ClearDialogScripts();
  }
  engine().QueueDialogScript(
      {DialogAction::Click(3), DialogAction::TypeText(14, "2"), DialogAction::Click(2)});
  EXPECT_EQ(both_[0].invoke(nullptr, 0, &whole_), 0);
  ASSERT_EQ(engine().DialogHistory().size(), 1u);
  EXPECT_EQ(engine().DialogHistory()[0].resource, 20256);
  EXPECT_EQ(Calls(HostCall::LoadTGF), 0);
  EXPECT_EQ(Entries(1, 1).size(), 1u);
}

TEST_F(ExtensionTest, InvocationSplitsTheSelectionAsTheDialogSaysAndWarnsOncePerRun) {
  uint32_t flags = 0;
  ASSERT_EQ(both_[0].init(nullptr, &flags), 1);
  const uint32_t quarter = Add(1, 1, Note(1024, 0));
  Add(2, 2, Note(2048, 1024));
  Add(1, 2, Note(1024, 0, -1, kEntryVoiceTwo));
  Add(2, 1, Note(1024, 0, -1, kEntryVoiceTwo));
  engine().QueueDialogScript(SplitInto(3));

  EXPECT_EQ(both_[0].invoke(nullptr, 0, &whole_), 1);

  const auto e11 = Entries(1, 1);
  ASSERT_EQ(e11.size(), 3u);
  EXPECT_EQ(+e11[2].position, 682);
  EXPECT_EQ(e11[2].duration, 512);
  ASSERT_TRUE(doc().Tuplet(quarter).has_value());
  EXPECT_EQ(doc().Tuplet(quarter)->tupletNumber, 3);
  const auto e22 = Entries(2, 2);
  ASSERT_EQ(e22.size(), 3u);
  EXPECT_EQ(+e22[1].position, 1024 + 682);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 1);
  EXPECT_EQ(VoiceTwoWarnings(), 1u);

  // Target mode through the target palette: the eighth-note button (item 45) sets 512, which
  // splits a dotted quarter in three and leaves the 341 TDU triplet eighths alone.
  Add(1, 1, Note(1536, 2048));
  engine().QueueDialogScript(
      {DialogAction::Click(3), DialogAction::Click(45), DialogAction::Click(1)});
  EXPECT_EQ(both_[1].invoke(nullptr, 0, &whole_), 1);
  EXPECT_EQ(Entries(1, 1).size(), 6u);
  EXPECT_EQ(Entries(2, 2).size(), 3u);
  EXPECT_EQ(VoiceTwoWarnings(), 2u) << "every invocation may warn once";
}

TEST(ExtensionBeforeInitialisation, InvocationShowsNoDialog) {
  // A fresh image, as after the host's start, whose initialisation has not been called.
  const Extension x =
      Bind(LoadAndStart(scribotest::FreshBundleCopy(BuiltBundle(), "uninit")), false);
  Engine& engine = Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  engine.document().AddStaff();
  engine.document().AddMeasure();
  EREGION region = Measures(1, 1, 1, 1);
  engine.QueueDialogScript({DialogAction::Click(1)});

  EXPECT_EQ(x.invoke(nullptr, 0, &region), 0);

  EXPECT_TRUE(engine.DialogHistory().empty());
  EXPECT_EQ(engine.CallCount(HostCall::LoadTGF), 0);
}

} // namespace
} // namespace subdivisiontest
