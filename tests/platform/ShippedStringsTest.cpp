// The strings tables shipped in the plug-in bundle: every text the command needs is there, in
// every language, translated, and fits where it goes.
#include "StringsFile.h"
#include "TestSupport.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

TEST(ShippedStrings, EveryLanguageHasEveryTextAndItFits) {
  const char16_t* menuKeys[] = {u"20000,1", u"20000,2", u"20000,3"};
  const char16_t* alertKeys[] = {u"20128,1", u"20128,2", u"20128,3", u"20128,4", u"20128,6"};
  for (const char* language : {"en", "de"}) {
    SCOPED_TRACE(language);
    std::ifstream in(scribotest::SourceDir() / "resources" / (std::string(language) + ".lproj") /
                         "Localizable.strings",
                     std::ios::binary);
    ASSERT_TRUE(in) << "no table";
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::map<std::u16string, std::u16string> table;
    ASSERT_TRUE(scribo::ParseStringsFile(bytes, table));
    auto check = [&](const char16_t* key, size_t maxUnits) {
      SCOPED_TRACE(std::string(key, key + std::char_traits<char16_t>::length(key)));
      auto it = table.find(key);
      ASSERT_NE(it, table.end());
      EXPECT_FALSE(it->second.empty());
      EXPECT_NE(it->second, key);
      EXPECT_LE(it->second.size(), maxUnits);
      // The byte form of a text is Mac Roman, at most 255 bytes: it must convert whole.
      CFStringRef s =
          CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(it->second.data()),
                                       static_cast<CFIndex>(it->second.size()));
      Str255 pascal;
      EXPECT_TRUE(CFStringGetPascalString(s, pascal, sizeof pascal, GetApplicationTextEncoding()));
      CFRelease(s);
    };
    for (const char16_t* key : menuKeys)
      check(key, 127); // a menu text field holds 128 units with the terminator
    for (const char16_t* key : alertKeys)
      check(key, 255);
  }
}

} // namespace
