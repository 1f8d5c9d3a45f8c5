// The SubdivideNotes bundle as a host drives it: its dynamic symbol table, then, loaded with
// dlopen next to the reference engine, initialisation, enumeration of the menu item and the checks
// in front of the command, through both the entry points and their aliases.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "CommandTestHost.h"
#include "StringsFile.h"

using namespace commandtest;

namespace {

// A host that looks a name up in the bundle must find the entry points, their aliases, `main` and
// the counters, and nothing else: an exported SX_ wrapper would be found in place of the host's.
TEST(SubdivideNotesImage, ExportsExactlyTheEntryPointsAliasesMainAndCounters) {
  std::istringstream names(
      "main ScriboExtensionVersion ScriboExtensionInit ScriboExtensionEnumerate_UTF16 "
      "ScriboExtensionInvoke ScriboExtensionTerminate ScriboExtensionGetMenuStatus Ext_getversion "
      "Ext_init Ext_enumerate_UTF16 Ext_invoke Ext_terminate Ext_getmenustatus LoadedTGFCounter "
      "CanAddNoteRecordToRests MassEditDepth ScriboEditDepth");
  const std::set<std::string> contract{std::istream_iterator<std::string>(names), {}};
  const auto bundle = scribotest::BuildDir() / "SubdivideNotes.bundle";
  // The defined names of the dynamic symbol table, as `nm` lists them: address, kind, name.
  FILE* nm = ::popen(
      ("nm -D --defined-only " + scribotest::BundleExecutable(bundle).string()).c_str(), "r");
  ASSERT_NE(nm, nullptr);
  std::set<std::string> exported;
  for (char name[256]; std::fscanf(nm, "%*s %*s %255s", name) == 1;)
    exported.insert(name);
  EXPECT_EQ(::pclose(nm), 0);
  EXPECT_EQ(exported, contract);
}

// Enumeration writes the three texts, each with its terminator and the field's last unit, and the
// value 1 into the host's record; every other byte stays as the host left it.
TEST_F(CommandTest, InitialisationAndEnumerationAnswerTheSameThroughEitherName) {
  std::ifstream in(scribotest::SourceDir() / "resources/en.lproj/Localizable.strings");
  std::map<std::u16string, std::u16string> strings;
  ASSERT_TRUE(scribo::ParseStringsFile(
      std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()), strings));
  tExtensionMenuRecord untouched, expected;
  std::memset(&untouched, 0xAB, sizeof untouched);
  uint16_t fields[3][kMenuTextUnits];
  std::memcpy(fields, &untouched, sizeof fields);
  for (int i = 0; i < 3; ++i) {
    const std::u16string& text = strings.at(u"20000," + std::u16string(1, u'1' + i));
    ASSERT_LT(text.size(), size_t(kMenuTextUnits - 1));
    std::copy(text.begin(), text.end(), fields[i]);
    fields[i][text.size()] = fields[i][kMenuTextUnits - 1] = 0;
  }
  std::memcpy(&expected, &untouched, sizeof expected);
  std::memcpy(&expected, fields, sizeof fields);
  expected.itemValue = 1;

  for (bool aliases : {false, true, false}) {
    const Plugin& x = Command(aliases);
    EXPECT_EQ(x.version(), 0x19500000u);
    EXPECT_EQ(x.menuStatus(), 1);
    x.terminate();
    uint32_t flags = 0xFFFFFFFF;
    EXPECT_EQ(x.init(nullptr, &flags), 1) << "initialisation succeeds every time";
    EXPECT_EQ(flags, 0u);
    for (short index : {0, -1, 1, 2, 32767}) {
      tExtensionMenuRecord menu = untouched;
      EXPECT_EQ(x.enumerate(nullptr, index, &menu), index <= 0 ? 1 : 0);
      EXPECT_EQ(std::memcmp(&menu, index <= 0 ? &expected : &untouched, sizeof menu), 0) << index;
    }
  }
  EXPECT_TRUE(engine().Alerts().empty()) << "the bundle has its strings table";
}

TEST_F(CommandTest, InvocationChecksComeBeforeTheDialogAndCancelChangesNothing) {
  Build(1, 1);
  Add(1, 1, Note(2048, 0));
  EREGION region = Measures(1, 1, 1, 1);
  for (bool aliases : {false, true}) {
    engine().QueueDialogScript(OptionsScript(Divisions(2)));
    EXPECT_EQ(Command(aliases).invoke(nullptr, 1, &region), 0) << "only menu item 0 exists";
    EXPECT_EQ(Command(aliases).invoke(nullptr, -1, &region), 0);
    EXPECT_EQ(Command(aliases).invoke(nullptr, 0, nullptr), 0) << "no selection";
    EXPECT_EQ(Calls(HostCall::Dialog), 0);
    engine().ClearDialogScripts();
    engine().QueueDialogScript({DialogAction::TypeText(kDivisionsField, "2")}); // then Cancel
    EXPECT_EQ(Command(aliases).invoke(nullptr, 0, &region), 0);
    EXPECT_EQ(LastDialog().resource, kResourceID);
    EXPECT_EQ(Calls(HostCall::LoadTGF), 0);
    EXPECT_EQ(Entries(1, 1).size(), 1u);
    engine().ResetCallCounts();
  }
  // A fresh image, as after the host's start, whose initialisation has not been called.
  const auto copy = scribotest::FreshBundleCopy(scribotest::BuildDir() / "SubdivideNotes.bundle",
                                                "uninitialised");
  engine().QueueDialogScript(OptionsScript(Divisions(2)));
  EXPECT_EQ(Bind(LoadAndStart(copy)).invoke(nullptr, 0, &region), 0);
  EXPECT_EQ(Calls(HostCall::Dialog), 0) << "no dialog without initialisation";
  std::filesystem::remove_all(copy.parent_path());
}

} // namespace
