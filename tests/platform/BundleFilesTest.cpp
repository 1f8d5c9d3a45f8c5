// The language a bundle's texts are taken in, for the CoreFoundation stand-in and the engine.
#include "BundleFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

TEST(BundleFiles, LanguageOrderFollowsTheEnvironment) {
  struct Case {
    const char *all, *messages, *lang, *region, *expected;
  } cases[] = {
      {"de_DE.UTF-8", "fr_FR", "fr", "en", "de.lproj fr.lproj en.lproj Base.lproj "},
      {nullptr, "fr_CA@euro", "it.UTF-8", "en", "fr.lproj it.lproj en.lproj Base.lproj "},
      {"", nullptr, "de", "", "de.lproj Base.lproj "}, // empty says nothing
      {"C", "de", "fr", "en", "en.lproj Base.lproj "}, // the untranslated program
      {"pt_BR", "POSIX", "de", "en", "pt.lproj en.lproj Base.lproj "},
      {"en_GB", "a/b", "../x", "en", "en.lproj Base.lproj "}, // no paths out of Resources
  };
  for (const Case& c : cases) {
    const char* names[] = {"LC_ALL", "LC_MESSAGES", "LANG"};
    const char* values[] = {c.all, c.messages, c.lang};
    for (int i = 0; i < 3; ++i)
      values[i] ? setenv(names[i], values[i], 1) : unsetenv(names[i]);
    std::string order;
    for (const std::string& dir : scribo::LanguageDirectories(c.region))
      order += dir + " ";
    EXPECT_EQ(order, c.expected) << &c - cases;
  }
  setenv("LC_ALL", "C", 1);
}

} // namespace
