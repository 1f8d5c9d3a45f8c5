// Intervals, transposition, key signatures and staff transpositions, without a host.
#include <gtest/gtest.h>

#include <string>

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
std::string Text(tDiaPitch p) {
  return std::to_string(p.step) + "," + std::to_string(p.alteration);
}
std::string Text(tInterval i) {
  return Text(tDiaPitch{i.steps, i.alteration});
}
short Semitones(tInterval i) {
  return SXUtilAbsTCDToChrom({i.steps, i.alteration});
}
short KeyWord(int sharps, bool minor) {
  return static_cast<short>((sharps & 0xff) | (minor ? 0x100 : 0));
}

} // namespace

TEST(Transpose, IntervalsKeepTheirSizeAndInvert) {
  EXPECT_EQ(Text(Moved({2, 0}, {2, 0})), "4,1");     // E + major third = G#
  EXPECT_EQ(Text(Moved({3, 0}, {3, 0})), "6,-1");    // F + fourth = Bb
  EXPECT_EQ(Text(Moved({6, 0}, {1, 0})), "7,1");     // B + major second = C# above
  EXPECT_EQ(Text(Moved({0, 0}, {-2, -1})), "-2,-1"); // C - major third = Ab below
  EXPECT_EQ(Text(Inverted({2, 0})), "-2,-1");
  EXPECT_EQ(Text(Inverted({3, 1})), "-3,-1");
  EXPECT_EQ(Text(Inverted({-1, -1})), "1,0");
  for (int16_t step = -14; step <= 14; ++step)
    for (int16_t alteration = -1; alteration <= 1; ++alteration)
      for (int16_t steps = -14; steps <= 14; ++steps)
        for (int16_t ialt = -2; ialt <= 2; ++ialt) {
          const tDiaPitch p{step, alteration};
          const tInterval i{steps, ialt};
          const tDiaPitch q = Moved(p, i);
          ASSERT_EQ(q.step, step + steps);
          // The interval's size in semitones is the same on every note as on C.
          ASSERT_EQ(SXUtilAbsTCDToChrom(q) - SXUtilAbsTCDToChrom(p), Semitones(i));
          ASSERT_EQ(Text(Moved(q, Inverted(i))), Text(p)) << Text(p) << " by " << Text(i);
        }
}

TEST(KeySignatures, OffsetsAndTheMovableTonic) {
  // Per key from seven flats to seven sharps: its major tonic and the minor tonic's shift.
  const std::string kKeys = "Cb5 Gb-2 Db5 Ab-2 Eb-2 Bb-2 F-2 C5 G-2 D5 A-2 E-2 B-2 F#-2 C#5";
  std::string keys;
  for (int n = -7; n <= 7; ++n) {
    tKeySigOffsets major{}, minor{};
    ASSERT_EQ(
        KeySigToOffsets(KeyWord(n, false), &major) + KeySigToOffsets(KeyWord(n, true), &minor), 0);
    ASSERT_EQ(major.minorShift, 0);
    keys += std::string(n > -7, ' ') + "CDEFGAB"[major.tonic.steps] +
            (major.tonic.alteration ? (major.tonic.alteration > 0 ? "#" : "b") : "") +
            std::to_string(minor.minorShift);
  }
  EXPECT_EQ(keys, kKeys);
  tDiaPitch p{0, 0};
  ASSERT_EQ(SXUtilRelToAbsTCD(&p, 0x0100), 0);
  EXPECT_EQ(Text(p), "5,0") << "A minor: the tonic is A";
  for (unsigned bad : {0x0200u, 0x3fffu, 0x4000u, 0xffffu}) {
    p = {3, 1};
    EXPECT_EQ(SXUtilRelToAbsTCD(&p, static_cast<short>(bad)), kSXUtilBadKeySig);
    EXPECT_EQ(SXUtilAbsToRelTCD(&p, static_cast<short>(bad)), kSXUtilBadKeySig);
    EXPECT_EQ(Text(p), "3,1");
  }
  // Relative -> absolute -> relative over every key in both modes.
  for (int n = -7; n <= 7; ++n)
    for (bool minor : {false, true})
      for (int16_t step = -14; step <= 14; ++step)
        for (int16_t alteration = -2; alteration <= 2; ++alteration) {
          tDiaPitch q{step, alteration};
          ASSERT_EQ(SXUtilRelToAbsTCD(&q, KeyWord(n, minor)), 0);
          ASSERT_EQ(SXUtilAbsToRelTCD(&q, KeyWord(n, minor)), 0);
          ASSERT_EQ(Text(q), Text(tDiaPitch{step, alteration})) << n << (minor ? " minor" : "");
        }
}

TEST(StaffTransposition, Decoding) {
  const struct {
    unsigned word;
    short keySig;
    const char* interval;
  } kWords[] = {{0x2001, 0, "1,0"},  {0x20ff, 0, "-1,-1"}, {0x2fff, 0, "-1,-2"},
                {0x2007, 0, "7,0"},  {0x0042, 0, "1,0"},   {0x0042, 5, "2,-2"},
                {0x4042, 5, "1,0"},  {0x0ffe, 0, "-1,-1"}, {0x0001, -7, "0,0"},
                {0x003f, -6, "-1,1"}}; // B major to D-flat; 7 flats to 5 sharps
  for (const auto& w : kWords)
    EXPECT_EQ(Text(Decoded(w.word, w.keySig)), w.interval) << std::hex << w.word << " " << w.keySig;

  // Key words of 0x4000 and above count as that many sharps: the respelling that the step-by-step
  // rule would reach after thousands of octaves, computed in one go.
  for (int keySig : {0x4000, 0x7fff, 0x8000, 0xffff, 0xc123}) {
    const int current = static_cast<int16_t>(keySig);
    for (unsigned low = 0; low < 0x1000; low += 0x41) {
      int k = static_cast<int>(low & 0x3f) - ((low & 0x20) ? 64 : 0);
      int s = static_cast<int>((low >> 6) & 0x3f) - ((low & 0x800) ? 64 : 0);
      for (; k + current > 6; k -= 12)
        ++s;
      for (; k + current < -6; k += 12)
        --s;
      const short alteration = static_cast<short>((k + 1) / 7 - (k + 1 < 0 ? 1 : 0));
      ASSERT_EQ(Text(Decoded(low, static_cast<short>(keySig))),
                Text(tDiaPitch{int16_t(s), alteration}))
          << std::hex << keySig << " " << low;
    }
  }
}

TEST(StaffTransposition, EncodingAndRoundTrips) {
  EXPECT_EQ(static_cast<uint16_t>(SXUtilIntervalToStaffTrans({1, 0}, 1)), 0x0ffe);
  EXPECT_EQ(static_cast<uint16_t>(SXUtilIntervalToStaffTrans({1, 0}, 0)), 0x20ff);
  EXPECT_EQ(SXUtilIntervalToStaffTrans({0, 0}, 0) + SXUtilIntervalToStaffTrans({0, 0}, 1), 0);
  // A B-flat clarinet: concert C is written D, and back.
  const short clarinet = SXUtilIntervalToStaffTrans({-1, -1}, 0);
  EXPECT_EQ(static_cast<uint16_t>(clarinet), 0x2001);
  tDiaPitch p{0, 0};
  SXUtilAbsToStaffTCD(&p, clarinet, 0);
  EXPECT_EQ(Text(p), "1,0");
  SXUtilStaffToAbsTCD(&p, clarinet, 0);
  EXPECT_EQ(Text(p), "0,0");

  // Interval -> word -> interval over two octaves each way: the word decodes to the reverse.
  for (int16_t steps = -14; steps <= 14; ++steps)
    for (int16_t alteration = -1; alteration <= 1; ++alteration) {
      const tInterval i{steps, alteration};
      if (steps == 0 && alteration == 0)
        continue;
      const unsigned byInterval = static_cast<uint16_t>(SXUtilIntervalToStaffTrans(i, 0));
      ASSERT_EQ(Text(Inverted(Decoded(byInterval))), Text(i));
      // Key form: exact without respelling; with it, the same sound in another spelling.
      const unsigned byKey = static_cast<uint16_t>(SXUtilIntervalToStaffTrans(i, 1));
      ASSERT_EQ(byKey & (kStaffTransIntervalForm | kStaffTransKeyAsIs), 0u);
      // The tonic-alteration rule gives a key change of 8 flats one flat too many.
      const int16_t oneFlatTooMany = (byKey & 0x3f) == (-8 & 0x3f) ? 1 : 0;
      ASSERT_EQ(Text(Inverted(Decoded(byKey | kStaffTransKeyAsIs))),
                Text(tInterval{steps, int16_t(alteration + oneFlatTooMany)}));
      ASSERT_EQ(Semitones(Inverted(Decoded(byKey, 0))), Semitones(i)) << Text(i);
    }
}

TEST(UtilModDiv, FlooredDivision) {
  const short kCases[][4] = {// value, divisor, remainder, quotient
                             {-1, 7, 6, -1},         {-7, 7, 0, -1},        {13, 12, 1, 1},
                             {-60, 12, 0, -5},       {6, 7, 6, 0},          {-8, 7, 6, -2},
                             {5, 0, 5, 0},           {-32768, 7, 6, -4682}, {32767, 12, 7, 2730},
                             {-32768, -1, 0, -32768}};
  for (const auto& c : kCases) {
    short remainder = -99, quotient = -99;
    UtilModDiv(c[0], c[1], &remainder, &quotient);
    EXPECT_EQ(Text(tDiaPitch{remainder, quotient}), Text(tDiaPitch{c[2], c[3]}))
        << c[0] << "/" << c[1];
  }
}
