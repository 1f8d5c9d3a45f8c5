#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "HostFunctions.h"
#include "LegacyPrefMapping.h"
#include "LegacyPrefTables.h"
#include "TestHost.h"

namespace {

using OtherKey = std::tuple<uint32_t, uint16_t, uint16_t>;

uint16_t Owner(const tPrefMapRow& row) {
  return row.owner == 0 ? kOtherRecordDocumentOwner : row.owner;
}

// Every other record any table reads, keyed as the host keys it.
std::set<OtherKey> AllOtherRecords() {
  std::set<OtherKey> keys;
  for (int t = 0; t < kPrefMapTableCount; ++t) {
    const tPrefMapTable& table = PrefMapTables()[t];
    for (int r = 0; r < table.rowCount; ++r) {
      const tPrefMapRow& row = table.rows[r];
      keys.insert({OtherRecordTag(row.code[0], row.code[1]), Owner(row), row.index});
    }
  }
  return keys;
}

// A known document: distinct words everywhere, except that the words behind inverted flags
// hold 0 or 1 and those behind low-byte fields hold sign-extended bytes, the only values that
// survive a load and a save unchanged.
void PutKnownDocument(TestHost& host) {
  for (const auto& [tag, owner, index] : AllOtherRecords()) {
    std::array<uint16_t, 6> words;
    for (int w = 0; w < 6; ++w)
      words[w] = static_cast<uint16_t>((tag * 31 + owner * 7 + index * 13 + w * 0x1111) & 0x7FFF);
    host.PutRecord(tag, owner, index, words.data(), sizeof words);
  }
  auto set = [&](const char(&tag)[5], int word, uint16_t value) {
    std::array<uint16_t, 6> words = host.Other(tag, kOtherRecordDocumentOwner, 0);
    words[word] = value;
    host.PutOther(tag, kOtherRecordDocumentOwner, 0, words);
  };
  set("ot36", 1, 1);
  set("ot19", 4, 0x007F);
  set("ot19", 5, 0xFF80);
  set("ot12", 5, 0x0001);
  set("ot11", 5, 0xFFFF);
  set("ot69", 2, 0x0000);
  set("ot69", 3, 0x0042);
  set("ot69", 4, 0xFFC0);
  set("ot69", 5, 0x0010);
}

short Load(const char (&tag)[5], std::vector<unsigned char>& record) {
  unsigned short keys[] = {0};
  uint32_t size = static_cast<uint32_t>(record.size());
  return SX_LoadEData(FourCharTag(tag), keys, record.data(), &size, kScriboHostVersion);
}

short Save(const char (&tag)[5], std::vector<unsigned char>& record) {
  unsigned short keys[] = {0};
  return SX_SaveEData(FourCharTag(tag), keys, record.data(), static_cast<uint32_t>(record.size()),
                      kScriboHostVersion);
}

uint16_t Field16(const std::vector<unsigned char>& record, int offset) {
  uint16_t value;
  std::memcpy(&value, record.data() + offset, 2);
  return value;
}
uint32_t Field32(const std::vector<unsigned char>& record, int offset) {
  uint32_t value;
  std::memcpy(&value, record.data() + offset, 4);
  return value;
}
void SetField16(std::vector<unsigned char>& record, int offset, uint16_t value) {
  std::memcpy(record.data() + offset, &value, 2);
}
void SetField32(std::vector<unsigned char>& record, int offset, uint32_t value) {
  std::memcpy(record.data() + offset, &value, 4);
}

struct TableFigures {
  const char* name;
  const char tag[5];
  int rows;
  uint32_t fieldBytes;
  uint32_t recordSize;
  // The other records a load reads, in the order of their first rows: code, and keys where
  // they are not {65534, 0}.
  const char* otherRecords;
};

constexpr TableFigures kFigures[] = {
    {"EDT2005Prefs_MAP_ARRAY", "pf05", 11, 22, 22, "69 20 39 38 23 56 41{0,2} 94 94{0,2}"},
    {"EDTDistancePrefs_MAP_ARRAY", "pfDP", 36, 76, 76,
     "21 59 22 67 68 20 13 19 27 18 39 65 14 01 77{0,4}"},
    {"EDTExtractPrefs_MAP_ARRAY", "pfEX", 25, 50, 50, "77{0,4} 77{0,5} 77{0,6} 77{0,7} 77{0,8}"},
    {"EDTMiscDocPrefs_MAP_ARRAY", "pfMS", 49, 104, 104,
     "36 03 09 41 20 27 01 13 15 44 12 41{0,2} 23 19 31 05 93 76 17 16 62 41{0,1} FI{10,0}"},
    {"EDTPianoBracePrefs_MAP_ARRAY", "pfPB", 11, 44, 44, "65 60 61 64 45"},
    {"EDTPageFormatPrefsScore_MAP_ARRAY", "pfPF", 22, 48, 48, "14 15 39 16 02 17 01 13 03"},
    {"EDTPlaybackPrefs_MAP_ARRAY", "pfPL", 7, 14, 14, "13 39 36 37"},
    {"EDTRepeatPrefs_MAP_ARRAY", "pfRP", 20, 40, 40, "70 71 05 72 76"},
    {"EDTSizePrefs_MAP_ARRAY", "pfSI", 23, 54, 54, "67 58 68 62 03 23 14 64 27 59 01 97 20 21 69"},
    {"EDTSmartShapePrefs_MAP_ARRAY", "pfSS", 43, 96, 108,
     "92 FI{11,0} FI{12,0} 12 11 69 51 53 50 53{0,1} 93 97{0,1}"},
};

TEST(LegacyPrefTables, EveryTableHasItsRowsSizeAndOtherRecords) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);
  for (int t = 0; t < kPrefMapTableCount; ++t) {
    const TableFigures& expected = kFigures[t];
    const tPrefMapTable& table = PrefMapTables()[t];
    SCOPED_TRACE(expected.name);
    EXPECT_STREQ(table.name, expected.name);
    EXPECT_EQ(table.tag, FourCharTag(expected.tag));
    EXPECT_EQ(table.rowCount, expected.rows);
    EXPECT_EQ(table.fieldBytes, expected.fieldBytes);
    EXPECT_EQ(table.recordSize, expected.recordSize);

    // The size query answers without the host.
    host.Reset();
    unsigned short keys[] = {0};
    uint32_t size = 1;
    EXPECT_EQ(SX_LoadEData(table.tag, keys, nullptr, &size, kScriboHostVersion), 1);
    EXPECT_EQ(size, expected.recordSize);
    EXPECT_EQ(host.LogSize(), 0);

    // A load reads each of its other records exactly once, whatever the order of the rows.
    PutKnownDocument(host);
    std::vector<unsigned char> record(expected.recordSize);
    EXPECT_EQ(Load(expected.tag, record), 1);
    std::string read;
    for (const TestHostCall& call : host.LogOf("SX_LoadEData")) {
      EXPECT_EQ(call.tag >> 16, 0x6F74u);
      EXPECT_EQ(call.size, 12u);
      EXPECT_EQ(call.version, kScriboHostVersion);
      read += read.empty() ? "" : " ";
      read += static_cast<char>(call.tag >> 8);
      read += static_cast<char>(call.tag);
      if (call.key0 != kOtherRecordDocumentOwner || call.key1 != 0) {
        const int owner = call.key0 == kOtherRecordDocumentOwner ? 0 : call.key0;
        read += "{" + std::to_string(owner) + "," + std::to_string(call.key1) + "}";
      }
    }
    EXPECT_EQ(read, expected.otherRecords);
    for (int r = 0; r < table.rowCount; ++r)
      EXPECT_EQ(table.rows[r].done, 1) << "row " << r;

    // Saving what was loaded writes nothing back.
    EXPECT_EQ(Save(expected.tag, record), 1);
    EXPECT_EQ(host.LogOf("SX_SaveEData").size(), 0u);
  }
}

TEST(LegacyPrefTables, PlaybackFieldsComeFromTheirWords) {
  TestHost& host = TestHost::Fresh();
  host.PutOther("ot13", kOtherRecordDocumentOwner, 0, {10, 11, 12, 13, 14, 15});
  host.PutOther("ot39", kOtherRecordDocumentOwner, 0, {20, 21, 22, 23, 24, 25});
  host.PutOther("ot36", kOtherRecordDocumentOwner, 0, {30, 31, 32, 33, 34, 35});
  host.PutOther("ot37", kOtherRecordDocumentOwner, 0, {40, 41, 42, 43, 44, 45});

  std::vector<unsigned char> playback(14);
  ASSERT_EQ(Load("pfPL", playback), 1);
  const uint16_t expected[] = {11, 23, 30, 35, 40, 41, 42};
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(Field16(playback, i * 2), expected[i]) << "offset " << i * 2;
  EXPECT_EQ(host.LogOf("SX_LoadEData").size(), 4u);

  // One changed field rewrites its own other record and keeps that record's other words.
  host.Reset();
  host.PutOther("ot13", kOtherRecordDocumentOwner, 0, {10, 11, 12, 13, 14, 15});
  host.PutOther("ot39", kOtherRecordDocumentOwner, 0, {20, 21, 22, 23, 24, 25});
  host.PutOther("ot36", kOtherRecordDocumentOwner, 0, {30, 31, 32, 33, 34, 35});
  host.PutOther("ot37", kOtherRecordDocumentOwner, 0, {40, 41, 42, 43, 44, 45});
  SetField16(playback, 6, 999);
  ASSERT_EQ(Save("pfPL", playback), 1);
  std::vector<TestHostCall> saves = host.LogOf("SX_SaveEData");
  ASSERT_EQ(saves.size(), 1u);
  EXPECT_EQ(saves[0].tag, FourCharTag("ot36"));
  EXPECT_EQ(saves[0].key0, kOtherRecordDocumentOwner);
  EXPECT_EQ(saves[0].size, 12u);
  EXPECT_EQ(host.Other("ot36", kOtherRecordDocumentOwner, 0),
            (std::array<uint16_t, 6>{30, 31, 32, 33, 34, 999}));
}

TEST(LegacyPrefTables, ConversionsBothWays) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);
  std::vector<unsigned char> misc(104);

  // Inverted flag: "ot36" word 1 behind "pfMS" offset 12.
  std::array<uint16_t, 6> ot36 = host.Other("ot36", kOtherRecordDocumentOwner, 0);
  ot36[1] = 0;
  host.PutOther("ot36", kOtherRecordDocumentOwner, 0, ot36);
  ASSERT_EQ(Load("pfMS", misc), 1);
  EXPECT_EQ(Field16(misc, 12), 1);
  ot36[1] = 5;
  host.PutOther("ot36", kOtherRecordDocumentOwner, 0, ot36);
  ASSERT_EQ(Load("pfMS", misc), 1);
  EXPECT_EQ(Field16(misc, 12), 0);
  SetField16(misc, 12, 0);
  ASSERT_EQ(Save("pfMS", misc), 1);
  EXPECT_EQ(host.Other("ot36", kOtherRecordDocumentOwner, 0)[1], 1);

  // Low byte: "ot19" word 4 behind "pfMS" offset 52; saved sign-extended.
  std::array<uint16_t, 6> ot19 = host.Other("ot19", kOtherRecordDocumentOwner, 0);
  ot19[4] = 0x0180;
  host.PutOther("ot19", kOtherRecordDocumentOwner, 0, ot19);
  ASSERT_EQ(Load("pfMS", misc), 1);
  EXPECT_EQ(Field16(misc, 52), 0x0080);
  SetField16(misc, 52, 0x00FF);
  host.Reset();
  PutKnownDocument(host);
  ASSERT_EQ(Save("pfMS", misc), 1);
  EXPECT_EQ(host.Other("ot19", kOtherRecordDocumentOwner, 0)[4], 0xFFFF);

  // Two words, high word first: "ot68" words 4 and 5 behind "pfDP" offset 18.
  std::array<uint16_t, 6> ot68 = host.Other("ot68", kOtherRecordDocumentOwner, 0);
  ot68[4] = 0x0001;
  ot68[5] = 0x0002;
  host.PutOther("ot68", kOtherRecordDocumentOwner, 0, ot68);
  std::vector<unsigned char> distance(76);
  ASSERT_EQ(Load("pfDP", distance), 1);
  EXPECT_EQ(Field32(distance, 18), 0x00010002u);
  SetField32(distance, 18, 0xABCD1234);
  ASSERT_EQ(Save("pfDP", distance), 1);
  ot68 = host.Other("ot68", kOtherRecordDocumentOwner, 0);
  EXPECT_EQ(ot68[4], 0xABCD);
  EXPECT_EQ(ot68[5], 0x1234);

  // Keys of a group with its own owner: "otFI" {10, 0} word 2 behind "pfMS" offset 102.
  std::array<uint16_t, 6> fi = host.Other("otFI", 10, 0);
  ASSERT_EQ(Load("pfMS", misc), 1);
  EXPECT_EQ(Field16(misc, 102), fi[2]);
}

// Kind 2 and kinds no table uses, through a table made for the purpose.
TEST(LegacyPrefTables, LowWordFirstAndUnknownKinds) {
  TestHost& host = TestHost::Fresh();
  host.PutOther("otK2", kOtherRecordDocumentOwner, 5, {0x0001, 0x0002, 0x0003, 0x0004, 0, 0});
  tPrefMapRow rows[] = {
      {0, {'K', '2'}, 0, 5, 0, 0, 4, 0, kPrefMapLowFirst},
      {0, {'K', '2'}, 0, 5, 4, 2, 4, 0, 7},
  };
  tPrefMapTable table{"test", FourCharTag("pfK2"), rows, 2, 8, 8};
  std::vector<unsigned char> record(8, 0xEE);
  uint32_t size = 8;
  ASSERT_EQ(LoadPrefTable(table, record.data(), &size), 1);
  EXPECT_EQ(Field32(record, 0), 0x00020001u);
  EXPECT_EQ(Field32(record, 4), 0u); // a kind that cannot load gives 0

  // An unknown kind stores nothing but counts as a change, so the record is written again.
  SetField32(record, 4, 0x11112222);
  ASSERT_EQ(SavePrefTable(table, record.data(), 8), 1);
  EXPECT_EQ(host.LogOf("SX_SaveEData").size(), 1u);
  EXPECT_EQ(host.Other("otK2", kOtherRecordDocumentOwner, 5),
            (std::array<uint16_t, 6>{0x0001, 0x0002, 0x0003, 0x0004, 0, 0}));
  SetField32(record, 0, 0x00050006);
  SetField32(record, 4, 0);
  ASSERT_EQ(SavePrefTable(table, record.data(), 8), 1);
  EXPECT_EQ(host.Other("otK2", kOtherRecordDocumentOwner, 5),
            (std::array<uint16_t, 6>{0x0006, 0x0005, 0x0003, 0x0004, 0, 0}));
}

TEST(LegacyPrefTables, BuffersBelowTheRecordSizeAreRefusedUntouched) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);
  unsigned short keys[] = {0};

  // Smart shapes reach byte 108 although their fields add up to 96 bytes.
  std::vector<unsigned char> shapes(108, 0xEE);
  uint32_t size = 96;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSS"), keys, shapes.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(size, 96u);
  EXPECT_EQ(std::count(shapes.begin(), shapes.end(), 0xEE), 108);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfSS"), keys, shapes.data(), 107, kScriboHostVersion), 0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfSS"), keys, nullptr, 108, kScriboHostVersion), 0);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSS"), keys, shapes.data(), nullptr, kScriboHostVersion), 0);
  EXPECT_EQ(host.LogSize(), 0);

  size = 108;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSS"), keys, shapes.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(Field16(shapes, 106), host.Other("ot97", kOtherRecordDocumentOwner, 1)[3]);
  EXPECT_EQ(shapes[30], 0xEE); // the gaps between low-byte fields are not the table's
}

TEST(LegacyPrefTables, PageFormatNumberPicksTableOrRun) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);
  for (uint16_t i = 0; i < 4; ++i)
    host.PutOther("ot77", kOtherRecordDocumentOwner, i, {i, i, i, i, i, uint16_t(i + 1)});

  std::vector<unsigned char> score(48);
  ASSERT_EQ(Load("pfPF", score), 1); // number 0: the score's record, from the table
  EXPECT_EQ(Field32(score, 0),
            (uint32_t{host.Other("ot14", kOtherRecordDocumentOwner, 0)[0]} << 16) |
                host.Other("ot14", kOtherRecordDocumentOwner, 0)[1]);

  unsigned short parts[] = {1};
  uint32_t size = 0;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfPF"), parts, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 48u); // four "ot77" records
  std::vector<uint16_t> run(24);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfPF"), parts, run.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(run[23], 4);
  unsigned short other[] = {2};
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfPF"), other, run.data(), &size, kScriboHostVersion), 0);
}

} // namespace
