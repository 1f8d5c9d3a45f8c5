// The pass over random frames: whatever the entries and parameters, the frame stays in order,
// every entry the rules leave alone is byte for byte what it was, and every run adds up to the
// entry it came from.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>

#include "EDTTuplet.h"
#include "SubdivisionHost.h"

namespace subdivisiontest {
namespace {

using Random = std::mt19937;

int Pick(Random& rng, int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(rng);
}
bool Chance(Random& rng, int percent) {
  return Pick(rng, 1, 100) <= percent;
}

// Entries in the form the host keeps after its clean-up (note identifiers 1..n mirrored in the
// note flags, unused records zero, rests with their placeholder note), so that a save changes
// nothing the pass did not change.
EXENTRY RandomEntry(Random& rng, int32_t position) {
  static const int16_t kDurations[] = {64, 128, 256, 512, 768, 1024, 1536, 2048, 3072, 4096};
  EXENTRY e{};
  e.duration = kDurations[Pick(rng, 0, 9)];
  e.actualDuration = Chance(rng, 25) ? e.duration * 2 / 3 : e.duration;
  e.position = position;
  e.hostWord6 = uint16_t(Pick(rng, 0, 0xFFFF));
  e.flags2 = uint16_t(Pick(rng, 0, 0xFFFF));
  e.flags = uint32_t(rng()) &
            ~(kEntryVoiceTwo | kEntryVoiceTwoLaunch | kEntryIsNote | kEntryRestPlaceholder);
  if (Chance(rng, 12))
    e.flags |= kEntryVoiceTwo;
  if (Chance(rng, 15))
    e.flags |= kEntryVoiceTwoLaunch;
  if (Chance(rng, 15)) {
    e.flags |= kEntryRestPlaceholder;
    e.noteCount = 1;
    e.notes[0].noteID = 1;
    e.notes[0].noteFlags = kNoteRestPlaceholder | (1u << 16);
  } else {
    e.flags |= kEntryIsNote;
    e.noteCount = int16_t(Pick(rng, 1, 4));
    for (int16_t j = 0; j < e.noteCount; ++j) {
      SetNotePitch(e.notes[j], int16_t(Pick(rng, -20, 20)), int16_t(Pick(rng, -2, 2)));
      e.notes[j].noteID = int16_t(j + 1);
      e.notes[j].noteFlags = (uint32_t(rng()) & ~kNoteIDCopyMask) | (uint32_t(j + 1) << 16);
    }
  }
  e.hostTrailer[0] = uint8_t(rng());
  e.hostTrailer[1] = uint8_t(rng());
  return e;
}

tSubdivideParam RandomParam(Random& rng) {
  static const int32_t kBounds[] = {64, 256, 512, 1024, 1536, 2048, 4096};
  static const int32_t kTargets[] = {64, 128, 170, 256, 338, 341, 512, 1024};
  tSubdivideParam p = Chance(rng, 50) ? Divisions(int16_t(Pick(rng, 2, Chance(rng, 20) ? 32 : 7)))
                                      : Target(kTargets[Pick(rng, 0, 7)]);
  if (Chance(rng, 50)) {
    p.minDuration = kBounds[Pick(rng, 0, 6)];
    p.maxDuration = kBounds[Pick(rng, 0, 6)]; // sometimes below the minimum: nothing qualifies
    p.allDurations = 0;
  }
  return p;
}

// How many parts the rules give each entry (0: left alone), and whether voice 2 was met.
std::vector<int> ExpectedParts(const std::vector<EXENTRY>& in, int32_t start, int32_t end,
                               const tSubdivideParam& p, bool& voiceTwo) {
  std::vector<int> parts(in.size(), 0);
  for (size_t i = 0; i < in.size(); ++i) {
    const EXENTRY& e = in[i];
    if ((e.flags & kEntryVoiceTwo) || (i + 1 < in.size() && (e.flags & kEntryVoiceTwoLaunch) &&
                                       (in[i + 1].flags & kEntryVoiceTwo))) {
      voiceTwo = true;
      continue;
    }
    if (e.position < start)
      continue;
    if (e.position > end)
      break;
    if (!(e.flags & kEntryIsNote) || e.actualDuration < p.minDuration ||
        e.actualDuration > p.maxDuration)
      continue;
    if (p.byDivisions) {
      parts[i] = p.divisions;
    } else {
      const int q = e.actualDuration / p.targetDuration;
      if (p.targetDuration != e.actualDuration && q >= 2 &&
          std::abs(q * p.targetDuration - e.actualDuration) <= 10)
        parts[i] = q;
    }
  }
  return parts;
}

void CheckRun(const EXENTRY& before, const EXENTRY* run, int n, const Document& doc) {
  const int32_t part = before.actualDuration / n;
  const bool uneven = before.duration % n != 0;
  const auto tuplet = doc.Tuplet(before.entryNumber);
  // The document has its tuplet preferences, so every uneven split is a tuplet.
  ASSERT_EQ(tuplet.has_value(), uneven);
  int16_t notated = int16_t(before.duration / n);
  if (uneven) {
    const int quotient = before.duration / n;
    EXPECT_EQ(tuplet->tupletNumber, n);
    EXPECT_GT(tuplet->tupletUnit, quotient);
    EXPECT_LE(tuplet->tupletUnit, std::max(1, 2 * quotient));
    EXPECT_EQ(tuplet->tupletUnit & (tuplet->tupletUnit - 1), 0) << "a power of two";
    EXPECT_EQ(tuplet->referenceNumber, before.duration / tuplet->tupletUnit);
    EXPECT_EQ(tuplet->referenceUnit, tuplet->tupletUnit);
    notated = tuplet->tupletUnit;
  }

  EXENTRY expected = before;
  expected.duration = notated;
  expected.actualDuration = part;
  expected.flags = before.flags | (uneven ? kEntryTupletStart : 0);
  EXPECT_TRUE(SameBytes(run[0], expected)) << "the split entry keeps everything but its durations";

  // Each copy is the split entry masked as a template; the host numbers it and stamps the note
  // identifiers into the note flags again when it saves.
  expected.hostWord6 = 0;
  expected.flags &= 0xC080A15F;
  expected.flags2 &= 0x00C0;
  for (int j = 0; j < before.noteCount; ++j)
    expected.notes[j].noteFlags = (before.notes[j].noteFlags & 0x8E000000) | uint32_t(j + 1) << 16;
  int64_t total = part;
  for (int k = 1; k < n; ++k) {
    SCOPED_TRACE(k);
    total += run[k].actualDuration;
    expected.entryNumber = run[k].entryNumber;
    expected.position = before.position + k * part;
    EXPECT_TRUE(SameBytes(run[k], expected));
  }
  EXPECT_EQ(total, before.actualDuration - before.actualDuration % n);
}

TEST_F(SubdivisionTest, RandomFramesKeepOrderLeaveTheRestAloneAndAddUp) {
  Random rng(20240517);
  for (int round = 0; round < 250; ++round) {
    SCOPED_TRACE(round);
    Restart();
    Build(1, 1);
    int32_t position = Pick(rng, 0, 600);
    const int count = Pick(rng, 0, 10);
    for (int i = 0; i < count; ++i) {
      const EXENTRY e = RandomEntry(rng, position);
      ASSERT_NE(doc().AddEntry(FrameAddress{1, 1, 0}, e), 0u);
      position += e.actualDuration;
    }
    const auto before = Entries(1, 1);
    const int32_t start = Pick(rng, 0, position / 2);
    const int32_t end = Chance(rng, 30) ? kNoUpperBound : Pick(rng, 0, position);
    const tSubdivideParam param = RandomParam(rng);
    bool voiceTwo = false;
    const std::vector<int> parts = ExpectedParts(before, start, end, param, voiceTwo);
    const bool anySplit = std::any_of(parts.begin(), parts.end(), [](int n) { return n > 1; });

    EXPECT_EQ(Run(Region(1, 1, start, 1, 1, end), param, 1), anySplit ? 1 : 0);

    const auto after = Entries(1, 1);
    std::set<uint32_t> originals;
    for (const EXENTRY& e : before)
      originals.insert(+e.entryNumber);
    size_t j = 0;
    long unevenSplits = 0;
    for (size_t i = 0; i < before.size(); ++i) {
      ASSERT_LT(j, after.size());
      ASSERT_EQ(+after[j].entryNumber, +before[i].entryNumber) << "entries keep their order";
      if (parts[i] == 0) {
        EXPECT_TRUE(SameBytes(after[j], before[i])) << "entry " << i << " is outside the rules";
        ++j;
        continue;
      }
      ASSERT_LE(j + parts[i], after.size());
      for (int k = 1; k < parts[i]; ++k)
        EXPECT_EQ(originals.count(+after[j + k].entryNumber), 0u) << "a copy is a new entry";
      CheckRun(before[i], &after[j], parts[i], doc());
      unevenSplits += before[i].duration % parts[i] != 0;
      j += parts[i];
    }
    EXPECT_EQ(j, after.size()) << "no entry appears from nowhere";
    for (size_t k = 1; k < after.size(); ++k)
      EXPECT_LE(+after[k - 1].position, +after[k].position);
    EXPECT_EQ(VoiceTwoWarnings(), voiceTwo ? 1u : 0u);
    EXPECT_EQ(Calls(HostCall::RebeamRegion), anySplit ? 1 : 0);
    EXPECT_EQ(Calls(HostCall::LoadEData), unevenSplits) << "read afresh for each uneven split";
  }
}

} // namespace
} // namespace subdivisiontest
