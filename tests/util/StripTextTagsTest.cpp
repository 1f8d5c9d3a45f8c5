// Inline text tags, and the keyboard when the host provides none.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "KbdUtil.h"
#include "SXUtilRawText.h"
#include "StripTextTagsReference.h"

namespace {

std::u16string Strip(std::u16string text) {
  SXUtilStripTextTags(reinterpret_cast<unsigned short*>(text.data()));
  return text.c_str(); // up to the terminator the function left
}

} // namespace

TEST(StripTextTags, TagsAndFlats) {
  EXPECT_EQ(Strip(u"^font(Times)Violin"), u"Violin");
  EXPECT_EQ(Strip(u"B^flat() Clarinet"), u"Bb Clarinet");
  EXPECT_EQ(Strip(u"^flat()"), u"b");
  EXPECT_EQ(Strip(u"F^sharp() Horn"), u"F Horn");
  EXPECT_EQ(Strip(u"Viola"), u"Viola");
  EXPECT_EQ(Strip(u"A^b"), u"A^b");
  EXPECT_EQ(Strip(u"^size(12)^font(Arial)E^flat() Alto^x"), u"Eb Alto^x");
  EXPECT_EQ(Strip(u"^a(^b(c)d)e"), u"d)e");
  EXPECT_EQ(Strip(u"^flat(x)"), u"");
  EXPECT_EQ(Strip(u"x^"), u"x^");
  EXPECT_EQ(Strip(u""), u"");
  SXUtilStripTextTags(nullptr);

  // Any mix of carets, parentheses and flats gives what the literal removal gives.
  std::mt19937 random(20240611);
  const char16_t pieces[][8] = {u"^", u"(", u")", u"^flat()", u"^flat(", u"a", u"b", u"f"};
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (int n = random() % 12; n > 0; --n)
      text += pieces[random() % 8];
    ASSERT_EQ(Strip(text), StripLiterally(text)) << std::string(text.begin(), text.end());
  }
}

TEST(Keyboard, NothingIsDownWithoutAProvider) {
  EXPECT_FALSE(EventUtilCancelInQueue());
  EXPECT_FALSE(KbdUtilKeyIsDown(kKeyCodePeriod));
  EXPECT_FALSE(KbdUtilKeyIsDown(-1));
}
