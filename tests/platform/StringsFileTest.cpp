// The strings-file parser on whole files, and the tables the plug-in ships.
#include "StringsFile.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

using Table = std::map<std::u16string, std::u16string>;

Table Parse(std::string_view bytes, bool expectOk = true) {
  Table table{{u"stale", u"entry"}};
  EXPECT_EQ(scribo::ParseStringsFile(bytes, table), expectOk) << bytes;
  return table;
}

// The forms the test probe's table does not use (the localised-strings test reads that one).
TEST(StringsFile, ReadsEveryEncodingAndTheRarerForms) {
  EXPECT_EQ(
      Parse("\xEF\xBB\xBF\"k\" = \"back\\\\slash\\n\\u20AC \xF0\x9F\x8E\xB5\"; // \"x\" = \"y\";"),
      (Table{{u"k", u"back\\slash\n\u20ac \U0001F3B5"}}));
  EXPECT_EQ(Parse(std::string("\xFF\xFE\"\0k\0\"\0=\0\"\0\xE9\0\"\0;\0", 18)),
            (Table{{u"k", u"\u00e9"}}));
  EXPECT_EQ(Parse(std::string("\xFE\xFF\0\"\0k\0\"\0;", 10)), (Table{{u"k", u"k"}}));
}

TEST(StringsFile, RejectsMalformedFilesAsAWhole) {
  for (std::string_view bad : std::initializer_list<std::string_view>{
           "\"a\" = \"b\"", "\"a\" = \"b\"; \"c\" = ", "\"a\" = \"b", "\"a\" = \"b\\",
           "\"a\" = \"\\U\";", "/* never closed", "\"a\" \"b\";", "= \"b\";", "\"a\" = ;",
           "\"a\" = \"b\";;", "a b = \"c\";", "\"a\" = \"\xC3\";",
           std::string_view("\xFF\xFE\"\0a\0\"\0;\0x", 11), // a dangling half unit
       }) {
    EXPECT_TRUE(Parse(bad, false).empty()) << bad;
  }
}

// Every text the command shows is in every shipped language and translated; a menu text fits
// the host's menu field (127 units and the terminator).
TEST(StringsFile, ShippedTablesTranslateEveryTextTheCommandShows) {
  for (std::string language : {"en", "de"}) {
    std::ifstream in(scribotest::SourceDir() / "resources" /
                     (language + ".lproj/Localizable.strings"));
    Table table;
    ASSERT_TRUE(scribo::ParseStringsFile(
        std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()), table));
    for (std::u16string key : {u"20000,1", u"20000,2", u"20000,3", u"20128,1", u"20128,2",
                               u"20128,3", u"20128,4", u"20128,6"}) {
      const std::u16string& text = table[key];
      EXPECT_TRUE(!text.empty() && text != key &&
                  (!key.starts_with(u"20000") || text.size() <= 127))
          << language << " " << std::string(key.begin(), key.end());
    }
  }
}

} // namespace
