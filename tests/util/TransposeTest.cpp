// Intervals, transposition, key signatures and staff transpositions, without a host.
#include <gtest/gtest.h>

#include "SXUtilPitch.h"
#include "SXUtilTranspose.h"
#include "UtilModDiv.h"

namespace {

tDiaPitch Moved(tDiaPitch p, tInterval i) {
  SXUtilTranspose(&p, i);
  return p;
}
tInterval Inverted(tInterval i) {
  SXUtilInvertInterval(&i);
  return i;
}
tInterval Decoded(unsigned word, short keySig = 0) {
  tInterval out{-999, -999};
  SXUtilStaffTransToInterval(static_cast<short>(word), keySig, &out);
  return out;
}
bool Same(tDiaPitch a, tDiaPitch b) {
  return a.step == b.step && a.alteration == b.alteration;
}
bool Same(tInterval a, tInterval b) {
  return a.steps == b.steps && a.alteration == b.alteration;
}
short KeyWord(int sharps, bool minor) {
  return static_cast<short>((sharps & 0xff) | (minor ? 0x100 : 0));
}

} // namespace

TEST(Transpose, IntervalsKeepTheirSizeAndInvert) {
  EXPECT_TRUE(Same(Moved({2, 0}, {2, 0}), {4, 1}));     // E + major third = G#
  EXPECT_TRUE(Same(Moved({3, 0}, {3, 0}), {6, -1}));    // F + fourth = Bb
  EXPECT_TRUE(Same(Moved({6, 0}, {1, 0}), {7, 1}));     // B + major second = C# above
  EXPECT_TRUE(Same(Moved({2, 0}, {-2, 0}), {0, 1}));    // E - minor third = C#
  EXPECT_TRUE(Same(Moved({0, 0}, {-2, -1}), {-2, -1})); // C - major third = Ab below
  EXPECT_TRUE(Same(Inverted({2, 0}), {-2, -1}));
  EXPECT_TRUE(Same(Inverted({2, -1}), {-2, 0}));
  EXPECT_TRUE(Same(Inverted({3, 1}), {-3, -1}));
  EXPECT_TRUE(Same(Inverted({7, 0}), {-7, 0}));
  EXPECT_TRUE(Same(Inverted({-1, -1}), {1, 0}));
  for (int step = -14; step <= 14; ++step)
    for (int alt = -1; alt <= 1; ++alt) {
      const tDiaPitch p{static_cast<int16_t>(step), static_cast<int16_t>(alt)};
      ASSERT_TRUE(Same(Moved(p, {0, 0}), p));
      for (int steps = -14; steps <= 14; ++steps)
        for (int ialt = -2; ialt <= 2; ++ialt) {
          const tInterval i{static_cast<int16_t>(steps), static_cast<int16_t>(ialt)};
          const tDiaPitch q = Moved(p, i);
          ASSERT_EQ(q.step, step + steps);
          // The interval's size in semitones is the same on every note as on C.
          ASSERT_EQ(SXUtilAbsTCDToChrom(q) - SXUtilAbsTCDToChrom(p),
                    SXUtilAbsTCDToChrom({i.steps, i.alteration}));
          ASSERT_TRUE(Same(Moved(q, Inverted(i)), p)) << step << " " << steps << " " << ialt;
        }
    }
}

TEST(KeySignatures, OffsetsAndTheMovableTonic) {
  const char* majorNames[] = {"Cb", "Gb", "Db", "Ab", "Eb", "Bb", "F", "C",
                              "G",  "D",  "A",  "E",  "B",  "F#", "C#"};
  const int minorShifts[] = {5, -2, 5, -2, -2, -2, -2, 5, -2, 5, -2, -2, -2, -2, 5};
  for (int n = -7; n <= 7; ++n) {
    tKeySigOffsets major{}, minor{};
    ASSERT_EQ(KeySigToOffsets(KeyWord(n, false), &major), 0);
    ASSERT_EQ(KeySigToOffsets(KeyWord(n, true), &minor), 0);
    std::string name(1, "CDEFGAB"[major.tonic.steps]);
    if (major.tonic.alteration)
      name += major.tonic.alteration > 0 ? "#" : "b";
    EXPECT_EQ(name, majorNames[n + 7]) << n;
    EXPECT_EQ(major.minorShift, 0);
    EXPECT_EQ(minor.minorShift, minorShifts[n + 7]) << n;
  }

  tDiaPitch p{0, 0};
  ASSERT_EQ(SXUtilRelToAbsTCD(&p, 0x0100), 0); // A minor: the tonic is A
  EXPECT_TRUE(Same(p, {5, 0}));
  p = {2, 0};
  ASSERT_EQ(SXUtilRelToAbsTCD(&p, 0x0004), 0); // E major: the third is G#
  EXPECT_TRUE(Same(p, {4, 1}));
  for (unsigned bad : {0x0200u, 0x3fffu, 0x4000u, 0xffffu}) {
    p = {3, 1};
    EXPECT_EQ(SXUtilRelToAbsTCD(&p, static_cast<short>(bad)), kSXUtilBadKeySig);
    EXPECT_EQ(SXUtilAbsToRelTCD(&p, static_cast<short>(bad)), kSXUtilBadKeySig);
    EXPECT_TRUE(Same(p, {3, 1}));
  }

  // Relative -> absolute -> relative over every key in both modes.
  for (int n = -7; n <= 7; ++n)
    for (bool minor : {false, true})
      for (int step = -14; step <= 14; ++step)
        for (int alt = -2; alt <= 2; ++alt) {
          const tDiaPitch rel{static_cast<int16_t>(step), static_cast<int16_t>(alt)};
          tDiaPitch q = rel;
          ASSERT_EQ(SXUtilRelToAbsTCD(&q, KeyWord(n, minor)), 0);
          ASSERT_EQ(SXUtilAbsToRelTCD(&q, KeyWord(n, minor)), 0);
          ASSERT_TRUE(Same(q, rel)) << n << (minor ? " minor " : " major ") << step << " " << alt;
        }
}

TEST(StaffTransposition, Decoding) {
  EXPECT_TRUE(Same(Decoded(0x2001), {1, 0}));
  EXPECT_TRUE(Same(Decoded(0x20ff), {-1, -1}));
  EXPECT_TRUE(Same(Decoded(0x2fff), {-1, -2}));
  EXPECT_TRUE(Same(Decoded(0x2007), {7, 0}));
  EXPECT_TRUE(Same(Decoded(0x0042, 0), {1, 0}));
  EXPECT_TRUE(Same(Decoded(0x0042, 5), {2, -2})) << "B major becomes Db major";
  EXPECT_TRUE(Same(Decoded(0x4042, 5), {1, 0}));
  EXPECT_TRUE(Same(Decoded(0x0ffe, 0), {-1, -1}));
  EXPECT_TRUE(Same(Decoded(0x0001, -7), {0, 0})) << "six flats needs no respelling";
  EXPECT_TRUE(Same(Decoded(0x003f, -6), {-1, 1})) << "seven flats become five sharps";
}

TEST(StaffTransposition, NonStandardKeyWordsAreRespelledAtOnce) {
  // Key words of 0x4000 and above count as that many sharps: the respelling the step-by-step
  // rule would reach after thousands of octaves, computed in one go.
  for (int keySig : {0x4000, 0x7fff, 0x8000, 0xffff, 0xc123}) {
    const int current = static_cast<int16_t>(keySig);
    for (unsigned low = 0; low < 0x1000; low += 0x41) {
      int k = static_cast<int>(low & 0x3f) - ((low & 0x20) ? 64 : 0);
      int s = static_cast<int>((low >> 6) & 0x3f) - ((low & 0x800) ? 64 : 0);
      while (k + current > 6) {
        k -= 12;
        s += 1;
      }
      while (k + current < -6) {
        k += 12;
        s -= 1;
      }
      const short alt = static_cast<short>((k + 1) / 7 - (k + 1 < 0 ? 1 : 0));
      ASSERT_TRUE(Same(Decoded(low, static_cast<short>(keySig)), {static_cast<int16_t>(s), alt}))
          << std::hex << keySig << " " << low;
    }
  }
}

TEST(StaffTransposition, EncodingAndRoundTrips) {
  EXPECT_EQ(static_cast<uint16_t>(SXUtilIntervalToStaffTrans({1, 0}, 1)), 0x0ffe);
  EXPECT_EQ(static_cast<uint16_t>(SXUtilIntervalToStaffTrans({1, 0}, 0)), 0x20ff);
  EXPECT_EQ(static_cast<uint16_t>(SXUtilIntervalToStaffTrans({-1, -1}, 0)), 0x2001);
  EXPECT_EQ(SXUtilIntervalToStaffTrans({0, 0}, 0), 0);
  EXPECT_EQ(SXUtilIntervalToStaffTrans({0, 0}, 1), 0);

  // A B-flat clarinet: written D sounds C, so concert C is written D and back.
  const short clarinet = SXUtilIntervalToStaffTrans({-1, -1}, 0);
  tDiaPitch p{0, 0};
  SXUtilAbsToStaffTCD(&p, clarinet, 0);
  EXPECT_TRUE(Same(p, {1, 0}));
  SXUtilStaffToAbsTCD(&p, clarinet, 0);
  EXPECT_TRUE(Same(p, {0, 0}));

  // Interval -> word -> interval over two octaves each way: the word decodes to the reverse.
  for (int steps = -14; steps <= 14; ++steps)
    for (int alt = -1; alt <= 1; ++alt) {
      const tInterval i{static_cast<int16_t>(steps), static_cast<int16_t>(alt)};
      if (steps == 0 && alt == 0)
        continue;
      const unsigned byInterval = static_cast<uint16_t>(SXUtilIntervalToStaffTrans(i, 0));
      ASSERT_TRUE(Same(Inverted(Decoded(byInterval)), i)) << steps << " " << alt;
      // Key form: exact without respelling; with it, the same sound in another spelling.
      const unsigned byKey = static_cast<uint16_t>(SXUtilIntervalToStaffTrans(i, 1));
      ASSERT_EQ(byKey & (kStaffTransIntervalForm | kStaffTransKeyAsIs), 0u);
      // The tonic-alteration rule gives a key change of 8 flats one flat too many.
      const int oneFlatTooMany = (byKey & 0x3f) == (-8 & 0x3f) ? 1 : 0;
      const tInterval asIs = Inverted(Decoded(byKey | kStaffTransKeyAsIs));
      ASSERT_TRUE(Same(asIs, {i.steps, static_cast<int16_t>(i.alteration + oneFlatTooMany)}))
          << steps << " " << alt;
      const tInterval respelled = Inverted(Decoded(byKey, 0));
      ASSERT_EQ(SXUtilAbsTCDToChrom({respelled.steps, respelled.alteration}),
                SXUtilAbsTCDToChrom({i.steps, i.alteration}));
    }
}

TEST(UtilModDiv, FlooredDivision) {
  struct Case {
    short value, divisor, remainder, quotient;
  } cases[] = {{-1, 7, 6, -1},       {-7, 7, 0, -1}, {13, 12, 1, 1},         {-60, 12, 0, -5},
               {0, 7, 0, 0},         {6, 7, 6, 0},   {-8, 7, 6, -2},         {-32768, 7, 6, -4682},
               {32767, 12, 7, 2730}, {5, 0, 5, 0},   {-32768, -1, 0, -32768}};
  for (const Case& c : cases) {
    short r = -99, q = -99;
    UtilModDiv(c.value, c.divisor, &r, &q);
    EXPECT_EQ(r, c.remainder) << c.value << " by " << c.divisor;
    EXPECT_EQ(q, c.quotient) << c.value << " by " << c.divisor;
  }
}
