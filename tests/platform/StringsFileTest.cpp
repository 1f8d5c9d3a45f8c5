// The strings-file parser on whole files: encodings, the grammar's forms, and malformed input.
#include "StringsFile.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using Table = std::map<std::u16string, std::u16string>;

Table Parse(std::string_view bytes, bool expectOk = true) {
  Table table{{u"stale", u"entry"}};
  EXPECT_EQ(scribo::ParseStringsFile(bytes, table), expectOk) << bytes;
  return table;
}

std::string Utf16(std::u16string_view text, bool bigEndian) {
  std::string bytes = bigEndian ? std::string("\xFE\xFF") : std::string("\xFF\xFE");
  for (char16_t u : text) {
    const char hi = static_cast<char>(u >> 8), lo = static_cast<char>(u & 0xFF);
    bytes += bigEndian ? hi : lo;
    bytes += bigEndian ? lo : hi;
  }
  return bytes;
}

TEST(StringsFile, ReadsEntriesCommentsAndEscapes) {
  const Table t = Parse("/* Menu */\n"
                        "\"20000,1\" = \"Subdivide Notes...\";\n"
                        "// a line comment \"ignored\" = \"x\";\n"
                        "\"20000,2\"=\"Tab\\there \\\"quoted\\\" back\\\\slash\\nnext\";"
                        "simple_key.1 = \"caf\\U00e9 \\u20AC\";  \n"
                        "\"repeat\" = \"first\"; \"repeat\" = \"second\";\n"
                        "\"alone\";\n"
                        "\"\\101\\303\" = unquoted/value-1;");
  EXPECT_EQ(t.size(), 6u);
  EXPECT_EQ(t.at(u"20000,1"), u"Subdivide Notes...");
  EXPECT_EQ(t.at(u"20000,2"), u"Tab\there \"quoted\" back\\slash\nnext");
  EXPECT_EQ(t.at(u"simple_key.1"), u"caf\u00e9 \u20ac");
  EXPECT_EQ(t.at(u"repeat"), u"second");
  EXPECT_EQ(t.at(u"alone"), u"alone");
  EXPECT_EQ(t.at(u"A\u00c3"), u"unquoted/value-1");
  EXPECT_FALSE(t.contains(u"stale"));
}

TEST(StringsFile, ReadsEveryEncodingForm) {
  const std::u16string text = u"\"k\" = \"\u00fc\U0001F3B5\";";
  const std::u16string expected = u"\u00fc\U0001F3B5";
  EXPECT_EQ(Parse("\xEF\xBB\xBF\"k\" = \"\xC3\xBC\xF0\x9F\x8E\xB5\";").at(u"k"), expected);
  EXPECT_EQ(Parse("\"k\" = \"\xC3\xBC\xF0\x9F\x8E\xB5\";").at(u"k"), expected);
  EXPECT_EQ(Parse(Utf16(text, false)).at(u"k"), expected);
  EXPECT_EQ(Parse(Utf16(text, true)).at(u"k"), expected);
  EXPECT_TRUE(Parse("").empty());
  EXPECT_TRUE(Parse("\xFF\xFE").empty());
  EXPECT_TRUE(Parse("  /* only a comment */ // and another").empty());
}

TEST(StringsFile, RejectsMalformedFilesAsAWhole) {
  for (std::string_view bad : {
           "\"a\" = \"b\"",           // no semicolon
           "\"a\" = \"b\"; \"c\" = ", // value missing
           "\"a\" = \"b",             // unterminated string
           "\"a\" = \"b\\",           // escape at the end
           "\"a\" = \"\\U\";",        // \U without digits
           "/* never closed",         //
           "\"a\" \"b\";",            // no equals sign
           "= \"b\";",                // no key
           "\"a\" = ;",               //
           "\"a\" = \"b\";;",         // stray semicolon
           "a b = \"c\";",            //
           "\"a\" = \"\xC3\";",       // truncated UTF-8
           "\"a\" = \"\xFF\";",       // not UTF-8 at all
       }) {
    EXPECT_TRUE(Parse(bad, false).empty()) << bad;
  }
  EXPECT_TRUE(Parse(Utf16(u"\"a\"=\"b\";", false) + "x", false).empty()); // odd byte count
}

} // namespace
