// The plug-in's dynamic symbol table is its contract with the host: a host that looks a name up
// in the bundle must find the entry points and counters and nothing else (an exported SX_
// wrapper would be found in place of the host's own function).
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ElfDynamicSymbols.h"
#include "TestSupport.h"

namespace {

const std::set<std::string> kContract = {"main",
                                         "ScriboExtensionVersion",
                                         "ScriboExtensionInit",
                                         "ScriboExtensionEnumerate_UTF16",
                                         "ScriboExtensionInvoke",
                                         "ScriboExtensionTerminate",
                                         "ScriboExtensionGetMenuStatus",
                                         "Ext_getversion",
                                         "Ext_init",
                                         "Ext_enumerate_UTF16",
                                         "Ext_invoke",
                                         "Ext_terminate",
                                         "Ext_getmenustatus",
                                         "LoadedTGFCounter",
                                         "CanAddNoteRecordToRests",
                                         "MassEditDepth",
                                         "ScriboEditDepth"};

TEST(SubdivideNotesExports, ExactlyTheEntryPointsAliasesMainAndCounters) {
  const auto executable =
      scribotest::BundleExecutable(scribotest::BuildDir() / "SubdivideNotes.bundle");
  const std::set<std::string> exported = scribotest::DefinedDynamicSymbols(executable);

  for (const std::string& name : kContract)
    EXPECT_TRUE(exported.count(name)) << "not exported: " << name;
  for (const std::string& name : exported)
    EXPECT_TRUE(kContract.count(name)) << "exported beyond the contract: " << name;

  // Every name in the table can really be found the way the host finds it.
  void* image = scribotest::LoadBundle(scribotest::BuildDir() / "SubdivideNotes.bundle");
  for (const std::string& name : kContract)
    EXPECT_NE(dlsym(image, name.c_str()), nullptr) << name;
}

} // namespace
