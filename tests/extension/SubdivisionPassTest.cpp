// The subdivision pass through the real bundle and its dialog: worked examples of one note, the
// tuplets of uneven splits, and random documents, selections and options. Whatever they are, every
// frame the walk reaches is split by the rules and stays in order, every entry the rules leave
// alone (and every frame the walk does not reach) is byte for byte what it was, and the host is
// asked exactly as often as the rules say.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <tuple>

#include "CommandTestHost.h"

using namespace commandtest;

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

// Options the dialog accepts: a range within 1..8192 and a target not above its maximum.
tSubdivideParam RandomParam(Random& rng) {
  static const int32_t kBounds[] = {64, 256, 512, 1024, 1536, 2048, 4096};
  static const int32_t kTargets[] = {64, 128, 170, 256, 338, 341, 512, 1024};
  tSubdivideParam p = Chance(rng, 50) ? Divisions(int16_t(Pick(rng, 2, Chance(rng, 20) ? 32 : 7)))
                                      : Target(kTargets[Pick(rng, 0, 7)]);
  if (Chance(rng, 50)) {
    const int32_t a = kBounds[Pick(rng, 0, 6)], b = kBounds[Pick(rng, 0, 6)];
    p.minDuration = std::min(a, b);
    p.maxDuration = std::max(a, b);
    p.targetDuration = std::min(p.targetDuration, p.maxDuration);
    p.allDurations = 0;
  }
  return p;
}

// How many parts the rules give each entry of a frame the walk reaches (0: left alone), and
// whether voice 2 was met before the scan stopped.
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

class Subdivision : public CommandTest {
protected:
  // Checks a frame after a run: each entry the rules leave alone (parts 0) as it was, each split
  // entry followed by its copies. With `tuplets` (the document has its tuplet preferences and
  // takes tuplet records) an uneven split is a tuplet of the smallest power of two above the
  // quotient, at most a breve; without, the run is truncated.
  static void ExpectFrame(const std::vector<EXENTRY>& before, const std::vector<int>& parts,
                          const std::set<uint32_t>& originals, bool tuplets,
                          const std::vector<EXENTRY>& after) {
    size_t j = 0;
    for (size_t i = 0; i < before.size(); ++i) {
      const EXENTRY& was = before[i];
      const int n = parts[i];
      ASSERT_LT(j, after.size());
      ASSERT_EQ(+after[j].entryNumber, +was.entryNumber) << "entries keep their order";
      if (n == 0) {
        EXPECT_TRUE(SameBytes(after[j++], was)) << "entry " << i << " is outside the rules";
        continue;
      }
      ASSERT_LE(j + n, after.size());
      EXENTRY expected = was;
      expected.duration = int16_t(was.duration / n);
      expected.actualDuration = was.actualDuration / n;
      const auto tuplet = TupletOf(was.entryNumber);
      ASSERT_EQ(tuplet.has_value(), tuplets && was.duration % n != 0);
      if (tuplet) {
        const int16_t unit = tuplet->tupletUnit, quotient = expected.duration;
        EXPECT_TRUE(!(unit & (unit - 1)) && (unit > quotient || unit == 8192) &&
                    unit / 2 <= quotient)
            << "unit " << unit << " for " << quotient;
        EXPECT_EQ(tuplet->tupletNumber, n);
        EXPECT_EQ(tuplet->referenceNumber, was.duration / unit);
        EXPECT_EQ(tuplet->referenceUnit, unit);
        expected.duration = unit;
        expected.flags |= kEntryTupletStart;
      }
      EXPECT_TRUE(SameBytes(after[j], expected)) << "the split entry keeps all but its durations";
      // Each copy is the split entry masked as a template; the host numbers it and stamps the
      // note identifiers into the note flags again when it saves.
      expected.hostWord6 = 0;
      expected.flags &= 0xC080A15F;
      expected.flags2 &= 0x00C0;
      for (int k = 0; k < was.noteCount; ++k)
        expected.notes[k].noteFlags = (was.notes[k].noteFlags & 0x8E000000) | (k + 1) << 16;
      for (int k = 1; k < n; ++k) {
        EXPECT_EQ(originals.count(+after[j + k].entryNumber), 0u) << "a copy is a new entry";
        expected.entryNumber = after[j + k].entryNumber;
        expected.position = was.position + k * expected.actualDuration;
        EXPECT_TRUE(SameBytes(after[j + k], expected)) << "copy " << k;
      }
      j += n;
    }
    EXPECT_EQ(j, after.size()) << "no entry appears from nowhere";
  }
};

// The document's tuplet preference record 0 for a row: the 30 bytes the command asks for, none,
// one of another size, or the 30 bytes with a host that refuses the tuplet record.
enum class Prefs { Present, Missing, Short, Long, RecordRefused };

TEST_F(Subdivision, OneNoteSplitsIntoItsPartsAndTheTupletOfTheirUnit) {
  struct Case {
    int16_t duration;
    int32_t actual, position;
    tSubdivideParam param;
    Prefs prefs;
    int parts; // 1: not split
    int16_t notated;
    int32_t partActual;
    int16_t unit, referenceNumber; // the tuplet; unit 0: none
  };
  const Prefs kPresent = Prefs::Present;
  const Case cases[] = {
      {2048, 2048, 0, Divisions(2), kPresent, 2, 1024, 1024, 0, 0},
      {1024, 1024, 512, Divisions(3), kPresent, 3, 512, 341, 512, 2},
      {1024, 1024, 0, Divisions(5), kPresent, 5, 256, 204, 256, 4},
      {1024, 1024, 0, Divisions(6), kPresent, 6, 256, 170, 256, 4},
      {1024, 1024, 0, Divisions(7), kPresent, 7, 256, 146, 256, 4},
      {1536, 1536, 0, Divisions(5), kPresent, 5, 512, 307, 512, 3},
      {2048, 2048, 0, Divisions(3), kPresent, 3, 1024, 682, 1024, 2},
      {3072, 3072, 0, Divisions(5), kPresent, 5, 1024, 614, 1024, 3},
      {4096, 4096, 0, Divisions(3), kPresent, 3, 2048, 1365, 2048, 2},
      {1026, 1026, 0, Divisions(4), kPresent, 4, 512, 256, 512, 2},       // quotient 256 gets 512
      {32767, 32767, 0, Divisions(2), kPresent, 2, 8192, 16383, 8192, 3}, // never above a breve
      {1536, 1536, 256, Target(512), kPresent, 3, 512, 512, 0, 0},   // dotted quarter into eighths
      {1536, 1536, 256, Target(1024), kPresent, 1, 0, 0, 0, 0},      // one part only
      {1536, 1536, 256, Target(1536), kPresent, 1, 0, 0, 0, 0},      // the note itself
      {512, 341, 256, Target(170), kPresent, 2, 256, 170, 0, 0},     // 340 is within 10 of 341
      {1024, 1024, 256, Target(338), kPresent, 3, 512, 341, 512, 2}, // 1014: 10 short, a triplet
      {1024, 1024, 256, Target(337), kPresent, 1, 0, 0, 0, 0},       // 1011: 13 short
      {1024, 1025, 256, Target(338), kPresent, 1, 0, 0, 0, 0},       // 1014: 11 short
      {1024, 1024, 256, Target(2048), kPresent, 1, 0, 0, 0, 0},      // longer than the note
      {4096, 4096, 0, Target(4), kPresent, 1024, 4, 4, 0, 0},        // a whole note into 1024
      // Without a usable preference record, or refused the tuplet record, a run truncates.
      {1024, 1024, 0, Divisions(3), Prefs::Missing, 3, 341, 341, 0, 0},
      {1024, 1024, 0, Divisions(3), Prefs::Short, 3, 341, 341, 0, 0},
      {1024, 1024, 0, Divisions(3), Prefs::Long, 3, 341, 341, 0, 0},
      {1024, 1024, 0, Divisions(3), Prefs::RecordRefused, 3, 341, 341, 0, 0},
  };
  std::vector<uint8_t> prefs(sizeof(EDTTuplet));
  for (size_t i = 0; i < prefs.size(); ++i)
    prefs[i] = uint8_t(0xA0 + i);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << c.duration << "/" << c.actual << " mode " << c.param.byDivisions << " into "
                 << c.parts << " prefs " << int(c.prefs));
    Restart();
    Build(1, 1);
    std::vector<uint8_t> stored = prefs;
    stored.resize(c.prefs == Prefs::Short ? 20 : c.prefs == Prefs::Long ? 40 : stored.size());
    ASSERT_TRUE(c.prefs == Prefs::Missing ? doc().RemovePreference(kTupletPrefsTag, 0)
                                          : doc().PutPreference(kTupletPrefsTag, 0, stored));
    engine().SetFailing(HostCall::CreateEData, c.prefs == Prefs::RecordRefused);
    const uint32_t number = Add(1, 1, Note(c.duration, c.position, c.actual));
    const auto before = Entries(1, 1);

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), c.param), c.parts > 1 ? 1 : 0);

    const auto after = Entries(1, 1);
    ExpectFrame(before, {c.parts > 1 ? c.parts : 0}, {number}, c.prefs == kPresent, after);
    const auto tuplet = TupletOf(number);
    if (c.parts > 1) {
      EXPECT_EQ(std::tuple(after[0].duration, +after[1].actualDuration, +after[1].position),
                std::tuple(c.notated, c.partActual, c.position + c.partActual));
    }
    const int unit = tuplet ? tuplet->tupletUnit : 0;
    EXPECT_EQ(unit, c.unit);
    EXPECT_EQ(unit ? tuplet->referenceNumber : 0, c.referenceNumber);
    EXPECT_TRUE(!tuplet || std::equal(prefs.begin() + 8, prefs.end(), tuplet->hostData))
        << "the host's tuplet options come from the preferences";
  }
}

struct Frame {
  FrameAddress address;
  std::vector<EXENTRY> before;
  std::vector<int> parts; // by entry, as the rules split them when the walk reaches the frame
};

TEST_F(Subdivision, RandomDocumentsAreSplitByTheRulesAndNothingElseChanges) {
  Random rng(20240517);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    Restart();
    Build(2, 3);
    // A selection (now and then backwards), a view with fewer or hidden layers, options the
    // dialog accepts, and now and then a host that refuses insertions or saves.
    auto span = [&](int count) {
      const int a = Pick(rng, 1, count), b = Pick(rng, 1, count);
      const bool backwards = Chance(rng, 10);
      return std::pair<int16_t, int16_t>(backwards ? std::max(a, b) : std::min(a, b),
                                         backwards ? std::min(a, b) : std::max(a, b));
    };
    const auto [firstStaff, lastStaff] = span(2);
    const auto [firstMeasure, lastMeasure] = span(3);
    EREGION region = Measures(firstStaff, lastStaff, firstMeasure, lastMeasure);
    region.startPosition = Pick(rng, 0, 6000);
    region.endPosition = Chance(rng, 30) ? kNoUpperBound : Pick(rng, 0, 20000);
    const int16_t layers = int16_t(Pick(rng, 1, kMaxLayerCount));
    const int16_t hidden = Chance(rng, 30) ? int16_t(Pick(rng, 0, 3)) : -1;
    engine().SetMaxLayers(layers);
    if (hidden >= 0)
      engine().SetLayerShown(hidden, false);
    const bool refuseInsert = Chance(rng, 8), refuseSave = Chance(rng, 8);
    engine().SetFailing(HostCall::InsertEXENTRY, refuseInsert);
    engine().SetFailing(HostCall::SaveTGF, refuseSave);
    const tSubdivideParam param = RandomParam(rng);

    // Random frames, and what the rules make of those the walk reaches.
    std::vector<Frame> frames;
    std::set<uint32_t> originals;
    long loads = 0, inserts = 0, changedFrames = 0, unevenSplits = 0;
    bool voiceTwo = false;
    for (int16_t m = 1; m <= 3; ++m)
      for (int16_t s = 1; s <= 2; ++s)
        for (int16_t layer = 0; layer < kMaxLayerCount; ++layer) {
          Frame& f = frames.emplace_back(Frame{{s, m, layer}, {}, {}});
          int32_t position = Pick(rng, 0, 600);
          for (int i = Chance(rng, 50) ? Pick(rng, 1, 10) : 0; i > 0; --i) {
            const EXENTRY e = RandomEntry(rng, position);
            originals.insert(doc().AddEntry(f.address, e));
            position += e.actualDuration;
          }
          f.before = doc().Entries(f.address);
          f.parts.assign(f.before.size(), 0);
          if (m < region.startMeasure || m > region.endMeasure || s < region.startStaff ||
              s > region.endStaff || layer >= layers || layer == hidden)
            continue;
          ++loads;
          f.parts = ExpectedParts(f.before, m == region.startMeasure ? region.startPosition : 0,
                                  m == region.endMeasure ? region.endPosition : kNoUpperBound,
                                  param, voiceTwo);
          const long split = std::count_if(f.parts.begin(), f.parts.end(), [](int n) { return n; });
          inserts += split;
          changedFrames += split > 0 && !refuseInsert;
          for (size_t i = 0; i < f.before.size(); ++i)
            unevenSplits += f.parts[i] && !refuseInsert && f.before[i].duration % f.parts[i];
        }
    const bool saved = changedFrames > 0 && !refuseSave;

    EXPECT_EQ(Run(region, param), saved ? 1 : 0);

    EXPECT_EQ(Calls(HostCall::LoadTGF), loads);
    EXPECT_EQ(Calls(HostCall::InsertEXENTRY), inserts) << "the scan moves on after a refusal";
    EXPECT_EQ(Calls(HostCall::SaveTGF), changedFrames) << "only changed frames are saved";
    EXPECT_EQ(Calls(HostCall::LoadEData), unevenSplits) << "read afresh for each uneven split";
    EXPECT_EQ(Calls(HostCall::RebeamRegion), saved ? 1 : 0);
    EXPECT_EQ(VoiceTwoWarnings(), voiceTwo ? 1u : 0u) << "once per invocation";
    for (const Frame& f : frames) {
      SCOPED_TRACE(testing::Message() << "staff " << f.address.staff << " measure "
                                      << f.address.measure << " layer " << f.address.layer);
      ExpectFrame(f.before, saved ? f.parts : std::vector<int>(f.before.size()), originals, true,
                  doc().Entries(f.address));
    }
  }
}

} // namespace
