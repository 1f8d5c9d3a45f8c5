// Strings into bytes and numbers, and comparison.
#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

// Owns a created string for the length of a test.
struct Str {
  explicit Str(std::u16string_view text)
      : ref(CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(text.data()),
                                         static_cast<CFIndex>(text.size()))) {}
  ~Str() { CFRelease(ref); }
  Str(const Str&) = delete;
  Str& operator=(const Str&) = delete;
  operator CFStringRef() const { return ref; }
  CFStringRef ref;
};

std::string Bytes(CFStringRef s, CFStringEncoding encoding, UInt8 loss, CFIndex max,
                  CFIndex* converted) {
  UInt8 buffer[64] = {};
  CFIndex used = -1;
  *converted = CFStringGetBytes(s, CFRangeMake(0, CFStringGetLength(s)), encoding, loss, false,
                                buffer, max, &used);
  return std::string(reinterpret_cast<const char*>(buffer), static_cast<size_t>(used));
}

TEST(CFStringConvert, GetBytesUsesTheLossByteOrStops) {
  const Str text(u"Caf\u00e9 \u2669 \U0001F3B5 \u03c0!");
  CFIndex converted = 0;
  EXPECT_EQ(Bytes(text, kCFStringEncodingMacRoman, '?', 64, &converted), "Caf\x8E ? ? \xB9!");
  EXPECT_EQ(converted, 12); // units, the pair counted as two
  EXPECT_EQ(Bytes(text, kCFStringEncodingMacRoman, 0, 64, &converted), "Caf\x8E ");
  EXPECT_EQ(converted, 5);
  EXPECT_EQ(Bytes(text, kCFStringEncodingASCII, '_', 64, &converted), "Caf_ _ _ _!");
  EXPECT_EQ(Bytes(text, kCFStringEncodingUTF8, 0, 64, &converted),
            "Caf\xC3\xA9 \xE2\x99\xA9 \xF0\x9F\x8E\xB5 \xCF\x80!");
  // A buffer that ends inside a character stops before it.
  EXPECT_EQ(Bytes(text, kCFStringEncodingUTF8, 0, 4, &converted), "Caf");
  EXPECT_EQ(converted, 3);
  // A lone surrogate has no UTF-8 form.
  const Str lone(u"a\xD800z");
  EXPECT_EQ(Bytes(lone, kCFStringEncodingUTF8, '?', 64, &converted), "a?z");

  // Measuring only: no buffer, any maxBufLen.
  CFIndex used = 0;
  EXPECT_EQ(
      CFStringGetBytes(text, CFRangeMake(4, 3), kCFStringEncodingUTF8, 0, false, nullptr, 0, &used),
      3);
  EXPECT_EQ(used, 5);
  EXPECT_EQ(CFStringGetBytes(text, CFRangeMake(10, 5), kCFStringEncodingUTF8, 0, false, nullptr, 0,
                             &used),
            0);
  EXPECT_EQ(used, 0) << "a range past the end converts nothing";
  UInt8 external[8];
  EXPECT_EQ(CFStringGetBytes(Str(u"A"), CFRangeMake(0, 1), kCFStringEncodingUTF16, 0, true,
                             external, 8, &used),
            1);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(external), static_cast<size_t>(used)),
            std::string("\xFF\xFE"
                        "A\0",
                        4));

  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingMacRoman), 10);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8), 30);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, 0x7777), kCFNotFound);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(LONG_MAX / 2, kCFStringEncodingUTF8), kCFNotFound);
}

TEST(CFStringConvert, CAndPascalStringsAreWholeOrEmpty) {
  char c[8] = "garbage";
  EXPECT_TRUE(CFStringGetCString(Str(u"Caf\u00e9"), c, 8, kCFStringEncodingMacRoman));
  EXPECT_STREQ(c, "Caf\x8E");
  EXPECT_FALSE(CFStringGetCString(Str(u"Caf\u00e9"), c, 5, kCFStringEncodingUTF8)); // 5 bytes + 0
  EXPECT_STREQ(c, "");
  EXPECT_TRUE(CFStringGetCString(Str(u"Caf\u00e9"), c, 6, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(Str(u"\u2669"), c, 8, kCFStringEncodingMacRoman));
  EXPECT_STREQ(c, "");

  Str255 p;
  EXPECT_TRUE(CFStringGetPascalString(Str(u"Noten"), p, sizeof p, kCFStringEncodingMacRoman));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(p), 6), "\x05Noten");
  EXPECT_FALSE(CFStringGetPascalString(Str(u"Noten"), p, 5, kCFStringEncodingMacRoman));
  EXPECT_EQ(p[0], 0);
  EXPECT_TRUE(
      CFStringGetPascalString(Str(std::u16string(255, u'x')), p, 256, kCFStringEncodingMacRoman));
  EXPECT_EQ(p[0], 255);
  EXPECT_FALSE(
      CFStringGetPascalString(Str(std::u16string(256, u'x')), p, 256, kCFStringEncodingMacRoman));
  EXPECT_EQ(p[0], 0);
}

TEST(CFStringConvert, IntValueReadsTheLeadingNumber) {
  EXPECT_EQ(CFStringGetIntValue(Str(u"42")), 42);
  EXPECT_EQ(CFStringGetIntValue(Str(u" \t-17 bars")), -17);
  EXPECT_EQ(CFStringGetIntValue(Str(u"+8")), 8);
  EXPECT_EQ(CFStringGetIntValue(Str(u"abc")), 0);
  EXPECT_EQ(CFStringGetIntValue(Str(u"- 5")), 0);
  EXPECT_EQ(CFStringGetIntValue(Str(u"")), 0);
  EXPECT_EQ(CFStringGetIntValue(nullptr), 0);
  EXPECT_EQ(CFStringGetIntValue(Str(u"2147483647")), INT_MAX);
  EXPECT_EQ(CFStringGetIntValue(Str(u"2147483648")), INT_MAX);
  EXPECT_EQ(CFStringGetIntValue(Str(u"-2147483648")), INT_MIN);
  EXPECT_EQ(CFStringGetIntValue(Str(u"-99999999999999999999")), INT_MIN);
}

TEST(CFStringConvert, CompareGivesExactlyMinusOneZeroOne) {
  EXPECT_EQ(CFStringCompare(Str(u"\uffff"), Str(u"A"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(Str(u"A"), Str(u"\uffff"), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(Str(u"ab"), Str(u"abc"), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(Str(u"abc"), Str(u"ab"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(Str(u"20000,1"), CFSTR("20000,1"), 0), kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(Str(u"a"), Str(u"A"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(Str(u"Stra\u00dfe \u00c9T\u00c9 \u0394"),
                            Str(u"stra\u00dfe \u00e9t\u00e9 \u03b4"), kCFCompareCaseInsensitive),
            kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(Str(u"\u0141\u00f3d\u017a"), Str(u"\u0142\u00d3D\u0179"),
                            kCFCompareCaseInsensitive),
            kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(Str(u"a"), Str(u"B"), kCFCompareCaseInsensitive), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(Str(u"bar 9"), Str(u"bar 10"), 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(Str(u"bar 9"), Str(u"bar 10"), kCFCompareNumerically),
            kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(Str(u"bar 010"), Str(u"bar 10"), kCFCompareNumerically),
            kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(Str(u"v2.10"), Str(u"v2.9"), kCFCompareNumerically),
            kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(nullptr, Str(u""), 0), kCFCompareEqualTo);
}

} // namespace
