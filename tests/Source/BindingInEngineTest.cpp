// The binding layer's own logic against the reference engine: this test plays host (it links the
// engine) and runs the SDK inside the probe plug-in, which finds the engine by its identifier.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "Engine.h"
#include "HostExports.h"
#include "ProbeBundle.h"
#include "probe/SdkProbe.h"

namespace {

namespace se = scribo::engine;
using Words = std::array<uint16_t, 6>;
using Tag = const char (&)[5];
constexpr uint32_t kStamp = kScriboHostVersion;
constexpr uint16_t kDoc = kOtherRecordDocumentOwner;
const EXNOTE kNoNote{};

const scribotest::ProbeBundle<SdkProbe>& Probe() {
  static const auto probe = scribotest::LoadProbe<SdkProbe>(
      scribotest::BuildDir() / "tests/Source/SdkProbe.bundle", "SdkProbe_Table");
  return probe;
}

template <class T> T Field(const std::vector<uint8_t>& record, int offset) {
  T value;
  std::memcpy(&value, record.data() + offset, sizeof value);
  return value;
}
template <class T> void SetField(std::vector<uint8_t>& record, int offset, T value) {
  std::memcpy(record.data() + offset, &value, sizeof value);
}

// A note entry whose every byte is host data from `random`, with these note identifiers.
EXENTRY Entry(uint32_t number, const std::vector<int16_t>& ids, std::mt19937& random) {
  EXENTRY entry;
  std::generate_n(reinterpret_cast<uint8_t*>(&entry), sizeof entry, std::ref(random));
  entry.entryNumber = number;
  entry.noteCount = static_cast<int16_t>(ids.size());
  for (int j = 0; int16_t id : ids)
    entry.notes[j++].noteID = id;
  return entry;
}
std::vector<int16_t> NoteIDs(const EXENTRY& entry) {
  std::vector<int16_t> ids;
  for (int j = 0; j < entry.noteCount; ++j)
    ids.push_back(entry.notes[j].noteID);
  return ids;
}

class SdkInEngine : public testing::Test {
protected:
  void SetUp() override {
    engine.Reset();
    doc.AddStaff();
    doc.AddMeasure();
  }
  long Calls(se::HostCall call) const { return engine.CallCount(call); }
  // Other records of the document, stored and read the way the host itself keeps them.
  void PutOther(Tag tag, uint16_t index, Words words) {
    unsigned short keys[] = {kDoc, index};
    ASSERT_EQ(::SX_SaveEData(FourCharTag(tag), keys, words.data(), 12, kStamp), 1);
  }
  Words Other(Tag tag, uint16_t index = 0) const {
    Words words{};
    if (auto bytes = doc.Record(FourCharTag(tag), std::array<uint16_t, 2>{kDoc, index}))
      std::memcpy(words.data(), bytes->data(), 12);
    return words;
  }
  // Frame (staff 1, measure 1, layer 0) loaded, saved and freed through the SDK.
  std::vector<EXENTRY> SavedThroughSdk() {
    EXTGF2005a* frame = sdk.SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
    EXPECT_EQ(sdk.SX_SaveTGF(frame, kStamp), 1);
    sdk.SX_FreeTGF(frame, kStamp);
    return doc.Entries({1, 1, 0});
  }
  short Load(Tag tag, uint16_t number, void* buffer, uint32_t& size) {
    unsigned short keys[] = {number};
    return sdk.SX_LoadEData(FourCharTag(tag), keys, buffer, &size, kStamp);
  }
  std::vector<uint8_t> Load(Tag tag, uint32_t size) {
    std::vector<uint8_t> record(size, 0xEE);
    EXPECT_EQ(Load(tag, 0, record.data(), size), 1) << tag;
    return record;
  }
  short Save(Tag tag, uint16_t number, void* buffer, uint32_t size, uint32_t version = kStamp) {
    unsigned short keys[] = {number};
    return sdk.SX_SaveEData(FourCharTag(tag), keys, buffer, size, version);
  }

  const SdkProbe& sdk = *Probe().table;
  se::Engine& engine = se::Engine::Instance();
  se::Document& doc = engine.document();
};

} // namespace

// Runs first: nothing is bound yet.
TEST(SdkStartUp, MainBindsToTheEngineByIdentifierAndEarlyLookupsStayFinal) {
  const SdkProbe& sdk = *Probe().table;
  se::Engine::Instance().SetMaxLayers(2);
  EXPECT_EQ(sdk.SX_GetMaxLayers(kStamp), 4) << "called before main: the fallback";
  int context = 0;
  EXPECT_EQ(Probe().main(0, &context) + Probe().main(7, nullptr), 0);
  EXPECT_EQ(sdk.SX_IsMachO(kStamp), 0) << "a zero argument must not bind anything";
  EXPECT_EQ(Probe().main(7, &context), 1);
  EXPECT_FALSE(sdk.boundToMainBundle());
  EXPECT_EQ(sdk.SX_GetShowLayer(0, kStamp), 1);
  EXPECT_EQ(sdk.SX_GetMaxLayers(kStamp) + sdk.SX_IsMachO(kStamp), 4) << "failed lookups are final";
  const long lookups = sdk.lookups();
  EXPECT_EQ(sdk.initializeGlobals(), 0);
  EXPECT_EQ(sdk.lookups(), lookups);
}

// Every entry of a saved frame reaches the host cleaned: missing and twin note identifiers
// renumbered above the greatest, bits 16..20 of each note's flags repeating its identifier,
// unused note records zero, a rest given one placeholder note, and every other byte as it was.
TEST_F(SdkInEngine, SavedEntriesAreCleanedAndKeepEverythingElse) {
  const std::vector<int16_t> cases[][2] = {
      {{0, 0}, {1, 2}},   {{5, 5, 3}, {6, 5, 3}},
      {{-4, 0}, {-4, 1}}, {{7, 3, 7, 7}, {8, 3, 9, 7}},
      {{37}, {37}},       {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, {}},
      {{}, {0}}};
  std::mt19937 random(1442);
  std::vector<EXENTRY> before, expected;
  for (const auto& [ids, cleaned] : cases) {
    EXENTRY entry = Entry(static_cast<uint32_t>(before.size() + 1), ids, random), clean = entry;
    for (int j = 0; j < kMaxNotesPerEntry; ++j) {
      EXNOTE note = j < entry.noteCount ? entry.notes[j] : kNoNote;
      note.noteID = j < int(cleaned.size()) ? cleaned[j] : note.noteID;
      note.noteFlags = (note.noteFlags & ~0x1F0000u) | (uint16_t(note.noteID) & 0x1Fu) << 16;
      clean.notes[j] = note;
    }
    if (ids.empty()) {
      clean.noteCount = 1;
      clean.notes[0].noteFlags = kNoteRestPlaceholder;
      clean.flags = clean.flags | kEntryRestPlaceholder;
    }
    before.push_back(entry);
    expected.push_back(clean);
  }
  ASSERT_TRUE(doc.ReplaceEntries({1, 1, 0}, before));
  const std::vector<EXENTRY> after = SavedThroughSdk();
  for (size_t i = 0; i < after.size(); ++i) {
    EXPECT_EQ(NoteIDs(after[i]), NoteIDs(expected[i])) << i;
    EXPECT_EQ(std::memcmp(&after[i], &expected[i], sizeof(EXENTRY)), 0) << i;
  }
  const EXENTRY rest = SavedThroughSdk().back(); // the placeholder is numbered like any note
  EXPECT_EQ(uint32_t{rest.notes[0].noteFlags}, kNoteRestPlaceholder | 0x10000u);
  EXPECT_EQ(uint32_t{rest.flags}, uint32_t{expected.back().flags});

  bool& addPlaceholder = Probe().Exported<bool>("CanAddNoteRecordToRests");
  ASSERT_TRUE(doc.ReplaceEntries({1, 1, 0}, std::vector<EXENTRY>{before.back()}));
  addPlaceholder = false;
  const EXENTRY bare = SavedThroughSdk()[0];
  addPlaceholder = true;
  EXENTRY cleared = expected.back(); // without its placeholder
  cleared.noteCount = 0;
  cleared.notes[0] = kNoNote;
  cleared.flags = before.back().flags;
  EXPECT_EQ(std::memcmp(&bare, &cleared, sizeof bare), 0);
}

TEST_F(SdkInEngine, InsertCleansBeforeTheHostInserts) {
  std::mt19937 random(3);
  doc.AddEntry({1, 1, 0}, Entry(1, {9, 9}, random));
  EXTGF2005a* frame = sdk.SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
  ASSERT_EQ(sdk.SX_InsertEXENTRY(frame, 1, 1, kStamp), 1);
  EXPECT_EQ(NoteIDs(frame->entries[0]), (std::vector<int16_t>{10, 9}));
  EXPECT_EQ(int{frame->entries[1].noteCount}, 0) << "the new slot is left as the host made it";
  sdk.SX_FreeTGF(frame, kStamp);
}

TEST_F(SdkInEngine, EndsAndCancelsReachTheHostOnlyForAnOpenEdit) {
  int32_t& depth = Probe().Exported<int32_t>("ScriboEditDepth");
  int32_t& massDepth = Probe().Exported<int32_t>("MassEditDepth");
  sdk.SX_CancelScriboEdit(kStamp);
  EXPECT_EQ(sdk.SX_EndScriboEdit(kStamp), 1) << "nothing open: success without the host";
  const unsigned short title[] = {'T', 0};
  EXPECT_NE(sdk.SX_StartScriboEdit_UTF16(title, kStamp) * sdk.SX_StartScriboEdit("in", kStamp), 0);
  EXPECT_EQ(depth, 2);
  for (int i = 0; i < 3; ++i)
    sdk.SX_CancelScriboEdit(kStamp);
  EXPECT_EQ(depth + Calls(se::HostCall::EndScriboEdit), 0);
  EXPECT_FALSE(engine.EndEdit()) << "the host's edits are closed as well";
  EXPECT_EQ(Calls(se::HostCall::CancelScriboEdit), 2);

  const int32_t before = massDepth;
  sdk.SX_EndMassEdit(nullptr, 0, kStamp); // counted without a floor
  sdk.SX_EndMassEdit(sdk.SX_StartMassEdit(nullptr, 40, kStamp), 0, kStamp);
  EXPECT_EQ(massDepth + engine.OpenMassEdits(), before - 1);
}

// Preference tags kept as runs of other records: each reads `count` records of its other tag,
// from index number - 1 when numbered (1..limit), else from 0 whatever the number.
TEST_F(SdkInEngine, EachPreferenceRunIsItsOtherRecords) {
  struct {
    const char tag[5], other[5];
    uint16_t count, limit;
  } const kRuns[] = {{"pfGD", "ot79", 1, 0},  {"pfGG", "ot88", 11, 0},  {"pfGb", "ot98", 1, 4},
                     {"pfGd", "ot80", 1, 0},  {"pfGs", "ot91", 1, 1},   {"pfMM", "ot25", 2, 0},
                     {"pfND", "ot04", 1, 0},  {"pfNd", "ot66", 1, 0},   {"pfPF", "ot77", 4, 1},
                     {"pfSC", "ot52", 2, 0},  {"pfSN", "ot40", 1, 128}, {"pfSP", "ot94", 3, 0},
                     {"pfSl", "ot26", 1, 15}, {"pfTC", "ot86", 5, 0},   {"pfTI", "ot84", 4, 0},
                     {"pfTX", "ot78", 9, 0},  {"pfTp", "ot85", 4, 0},   {"pfTs", "ot90", 1, 9}};
  for (const auto& run : kRuns) {
    SCOPED_TRACE(run.tag);
    const uint16_t number = run.limit ? run.limit : 300;
    const uint16_t first = run.limit && run.count == 1 ? number - 1 : 0;
    std::vector<uint16_t> expected(run.count * 6u + 1, 0xCCCC), loaded = expected;
    for (uint16_t i = 0; i < run.count; ++i) {
      const Words words = {i, number, 1, 2, 3, uint16_t(i == 1 ? 0 : 0xF000 | i)};
      if (i != 1) // a record the host lacks reads as zeros
        PutOther(run.other, uint16_t(first + i), words);
      std::copy_n(i == 1 ? Words{}.begin() : words.begin(), 6, expected.begin() + i * 6);
    }
    engine.ResetCallCounts();
    uint32_t size = run.count * 12u - 1;
    EXPECT_EQ(Load(run.tag, number, loaded.data(), size), 0) << "a buffer too small";
    EXPECT_EQ(Load(run.tag, number, nullptr, size), 1);
    EXPECT_EQ(size, run.count * 12u);
    EXPECT_EQ(Calls(se::HostCall::LoadEData), 0);
    EXPECT_EQ(Load(run.tag, number, loaded.data(), size), 1);
    EXPECT_EQ(loaded, expected);
    EXPECT_EQ(Calls(se::HostCall::LoadEData), run.count);
    for (uint16_t outside : {uint16_t(run.limit + 1), uint16_t{0x8000}})
      EXPECT_EQ(Load(run.tag, outside, loaded.data(), size), run.limit ? 0 : 1) << outside;
  }
  // A save writes each record of the run from its 12 bytes; a short or missing buffer nothing.
  std::vector<uint16_t> text(9 * 6);
  text[2 * 6 + 4] = 0x4242;
  EXPECT_EQ(Save("pfTX", 1, text.data(), 9 * 12 - 1) + Save("pfTX", 1, nullptr, 9 * 12), 0);
  EXPECT_EQ(Calls(se::HostCall::SaveEData), 0);
  EXPECT_EQ(Save("pfTX", 1, text.data(), 9 * 12), 1);
  EXPECT_EQ(Calls(se::HostCall::SaveEData), 9);
  EXPECT_EQ(Other("ot78", 2)[4], 0x4242);
  uint32_t size = 12;
  EXPECT_EQ(sdk.SX_LoadEData(FourCharTag("pfSN"), nullptr, text.data(), &size, kStamp), 0);
}

TEST_F(SdkInEngine, OtherTagsAndOlderCallersGoStraightToTheHost) {
  uint32_t size = 0;
  EXPECT_EQ(Load("pfTP", 0, nullptr, size), 1);
  EXPECT_EQ(size, 30u) << "the host answered the size query itself";
  std::vector<uint8_t> distance(76, 0x11);
  EXPECT_EQ(Save("pfDP", 0, distance.data(), 76, 0x07FFFFFF), 1);
  EXPECT_EQ(doc.Record(FourCharTag("pfDP"), std::array<uint16_t, 1>{0}), distance);
}

// The ten tables: the other records each reads, in the order of their first rows (code, then
// {owner, index} where they are not {65534, 0}); each is read once per load, a buffer below the
// table's reach is refused, and saving what was loaded writes nothing back.
TEST_F(SdkInEngine, EveryTableReadsEachOtherRecordOnceAndSavesNothingUnchanged) {
  const char* const kOthers[] = {
      "pf05 69 20 39 38 23 56 41{0,2} 94 94{0,2}",
      "pfDP 21 59 22 67 68 20 13 19 27 18 39 65 14 01 77{0,4}",
      "pfEX 77{0,4} 77{0,5} 77{0,6} 77{0,7} 77{0,8}",
      "pfMS 36 03 09 41 20 27 01 13 15 44 12 41{0,2} 23 19 31 05 93 76 17 16 62 41{0,1} FI{10,0}",
      "pfPB 65 60 61 64 45",
      "pfPF 14 15 39 16 02 17 01 13 03",
      "pfPL 13 39 36 37",
      "pfRP 70 71 05 72 76",
      "pfSI 67 58 68 62 03 23 14 64 27 59 01 97 20 21 69",
      "pfSS 92 FI{11,0} FI{12,0} 12 11 69 51 53 50 53{0,1} 93 97{0,1}",
  };
  for (int t = 0; t < kPrefMapTableCount; ++t) {
    const tPrefMapTable& table = sdk.prefMapTables()[t];
    const char tag[5] = {char(table.tag >> 24), char(table.tag >> 16), char(table.tag >> 8),
                         char(table.tag), 0};
    SCOPED_TRACE(tag);
    std::string others = tag;
    int groups = 0;
    for (int r = 0; r < table.rowCount; ++r) {
      const tPrefMapRow row = table.rows[r];
      if (std::any_of(table.rows, table.rows + r, [&](auto& s) { return SameOtherRecord(s, row); }))
        continue;
      ++groups;
      others += " " + std::string(row.code, 2);
      if (row.owner || row.index)
        others += "{" + std::to_string(row.owner) + "," + std::to_string(row.index) + "}";
    }
    EXPECT_EQ(others, kOthers[t]);
    engine.ResetCallCounts();
    // A buffer below the furthest row end ("pfSS": 108, its fields add up to 96) is refused.
    std::vector<uint8_t> record(table.recordSize, 0xEE);
    uint32_t size = table.recordSize - 1;
    EXPECT_EQ(Load(tag, 0, record.data(), size) + Save(tag, 0, record.data(), size), 0);
    EXPECT_EQ(Save(tag, 0, nullptr, table.recordSize), 0);
    EXPECT_EQ(std::count(record.begin(), record.end(), 0xEE), long(table.recordSize));
    EXPECT_EQ(Calls(se::HostCall::LoadEData) + Calls(se::HostCall::SaveEData), 0);
    record = Load(tag, table.recordSize);
    EXPECT_EQ(Calls(se::HostCall::LoadEData), groups);
    EXPECT_EQ(Save(tag, 0, record.data(), table.recordSize), 1);
    EXPECT_EQ(Calls(se::HostCall::SaveEData), 0);
  }
}

TEST_F(SdkInEngine, TableFieldsConvertBothWays) {
  // Inverted flag: "ot36" word 1 behind "pfMS" offset 12; low byte: "ot19" word 4 behind
  // offset 52, saved sign-extended; two words, high first: "ot68" words 4, 5 behind "pfDP" 18.
  PutOther("ot36", 0, {0, 5, 0, 0, 0, 0});
  PutOther("ot19", 0, {0, 0, 0, 0, 0x0180, 0});
  PutOther("ot68", 0, {0, 0, 0, 0, 1, 2});
  std::vector<uint8_t> misc = Load("pfMS", 104), distance = Load("pfDP", 76);
  EXPECT_EQ(Field<uint16_t>(misc, 12), 0);
  EXPECT_EQ(Field<uint16_t>(misc, 52), 0x0080);
  EXPECT_EQ(Field<uint32_t>(distance, 18), 0x00010002u);
  SetField<uint16_t>(misc, 52, 0x00FF);
  SetField<uint32_t>(distance, 18, 0xABCD1234);
  ASSERT_EQ(Save("pfMS", 0, misc.data(), 104) + Save("pfDP", 0, distance.data(), 76), 2);
  EXPECT_EQ(Other("ot36")[1], 1) << "an inverted 0 is saved as 1";
  EXPECT_EQ(Other("ot19")[4], 0xFFFF);
  EXPECT_EQ(Other("ot68"), (Words{0, 0, 0, 0, 0xABCD, 0x1234}));
  PutOther("ot36", 0, {0, 0, 0, 0, 0, 0});
  EXPECT_EQ(Field<uint16_t>(Load("pfMS", 104), 12), 1);

  // One changed field rewrites its own other record only, keeping that record's other words;
  // one whose other record the host lacks is still saved, over zero words.
  PutOther("ot36", 0, {30, 31, 32, 33, 34, 35});
  std::vector<uint8_t> playback = Load("pfPL", 14);
  EXPECT_EQ(Field<uint16_t>(playback, 6), 35);
  SetField<uint16_t>(playback, 6, 999);
  SetField<uint16_t>(playback, 10, 7);
  engine.ResetCallCounts();
  ASSERT_EQ(Save("pfPL", 0, playback.data(), 14), 1);
  EXPECT_EQ(Calls(se::HostCall::SaveEData), 2);
  EXPECT_EQ(Other("ot36"), (Words{30, 31, 32, 33, 34, 999}));
  EXPECT_EQ(Other("ot37"), (Words{0, 7, 0, 0, 0, 0}));
}
