#include <gtest/gtest.h>

#include <algorithm>
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

// A known document: every other record any table reads holds distinct words, except that the
// words behind inverted flags hold 0 or 1 and those behind low-byte fields hold sign-extended
// bytes, the only values that survive a load and a save unchanged.
void PutKnownDocument(TestHost& host) {
  std::set<std::tuple<uint32_t, uint16_t, uint16_t>> keys;
  for (int t = 0; t < kPrefMapTableCount; ++t)
    for (int r = 0; r < PrefMapTables()[t].rowCount; ++r) {
      const tPrefMapRow& row = PrefMapTables()[t].rows[r];
      keys.insert({OtherRecordTag(row.code[0], row.code[1]),
                   row.owner == 0 ? kOtherRecordDocumentOwner : row.owner, row.index});
    }
  for (const auto& [tag, owner, index] : keys) {
    std::array<uint16_t, 6> words;
    for (int w = 0; w < 6; ++w)
      words[w] = static_cast<uint16_t>((tag * 31 + owner * 7 + index * 13 + w * 0x1111) & 0x7FFF);
    host.PutRecord(tag, owner, index, words.data(), sizeof words);
  }
  host.SetWord("ot36", 1, 1);
  host.SetWord("ot19", 4, 0x007F);
  host.SetWord("ot19", 5, 0xFF80);
  host.SetWord("ot12", 5, 0x0001);
  host.SetWord("ot11", 5, 0xFFFF);
  host.SetWord("ot69", 2, 0x0000);
  host.SetWord("ot69", 3, 0x0042);
  host.SetWord("ot69", 4, 0xFFC0);
  host.SetWord("ot69", 5, 0x0010);
}

// Preference number 0 of `tag`, loaded into a buffer of `size` bytes.
std::vector<unsigned char> Load(const char (&tag)[5], uint32_t size) {
  std::vector<unsigned char> record(size);
  unsigned short keys[] = {0};
  EXPECT_EQ(SX_LoadEData(FourCharTag(tag), keys, record.data(), &size, kScriboHostVersion), 1)
      << tag;
  return record;
}

short Save(const char (&tag)[5], std::vector<unsigned char>& record) {
  unsigned short keys[] = {0};
  return SX_SaveEData(FourCharTag(tag), keys, record.data(), static_cast<uint32_t>(record.size()),
                      kScriboHostVersion);
}

template <class T> T Field(const std::vector<unsigned char>& record, int offset) {
  T value;
  std::memcpy(&value, record.data() + offset, sizeof value);
  return value;
}
template <class T> void SetField(std::vector<unsigned char>& record, int offset, T value) {
  std::memcpy(record.data() + offset, &value, sizeof value);
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
  for (int t = 0; t < kPrefMapTableCount; ++t) {
    const TableFigures& expected = kFigures[t];
    const tPrefMapTable& table = PrefMapTables()[t];
    SCOPED_TRACE(expected.name);
    EXPECT_STREQ(table.name, expected.name);
    EXPECT_EQ(table.tag, FourCharTag(expected.tag));
    EXPECT_EQ(table.rowCount, expected.rows);
    EXPECT_EQ(table.fieldBytes, expected.fieldBytes);

    // The size query answers without the host.
    host.Reset();
    unsigned short keys[] = {0};
    uint32_t size = 1;
    EXPECT_EQ(SX_LoadEData(table.tag, keys, nullptr, &size, kScriboHostVersion), 1);
    EXPECT_EQ(size, expected.recordSize);
    EXPECT_TRUE(host.Log().empty());

    // A load reads each of its other records exactly once, whatever the order of the rows.
    PutKnownDocument(host);
    std::vector<unsigned char> record = Load(expected.tag, expected.recordSize);
    std::string read;
    for (const TestHostCall& call : host.Log("SX_LoadEData")) {
      EXPECT_EQ(call.tag >> 16, 0x6F74u);
      EXPECT_EQ(call.size, 12u);
      EXPECT_EQ(call.version, kScriboHostVersion);
      read += read.empty() ? "" : " ";
      read += {static_cast<char>(call.tag >> 8), static_cast<char>(call.tag)};
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
    EXPECT_EQ(host.Calls("SX_SaveEData"), 0);
  }
}

TEST(LegacyPrefTables, PlaybackFieldsComeFromTheirWords) {
  TestHost& host = TestHost::Fresh();
  host.PutOther("ot13", 0, {10, 11, 12, 13, 14, 15});
  host.PutOther("ot39", 0, {20, 21, 22, 23, 24, 25});
  host.PutOther("ot36", 0, {30, 31, 32, 33, 34, 35});
  host.PutOther("ot37", 0, {40, 41, 42, 43, 44, 45});
  std::vector<unsigned char> playback = Load("pfPL", 14);
  const uint16_t expected[] = {11, 23, 30, 35, 40, 41, 42};
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(Field<uint16_t>(playback, i * 2), expected[i]) << "offset " << i * 2;
  EXPECT_EQ(host.Calls("SX_LoadEData"), 4);

  // One changed field rewrites its own other record and keeps that record's other words.
  SetField<uint16_t>(playback, 6, 999);
  ASSERT_EQ(Save("pfPL", playback), 1);
  EXPECT_EQ(host.Calls("SX_SaveEData"), 1);
  EXPECT_EQ(host.Other("ot36"), (std::array<uint16_t, 6>{30, 31, 32, 33, 34, 999}));
}

TEST(LegacyPrefTables, ConversionsBothWays) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);

  // Inverted flag: "ot36" word 1 behind "pfMS" offset 12. Field 0 saves as word 1.
  host.SetWord("ot36", 1, 0);
  EXPECT_EQ(Field<uint16_t>(Load("pfMS", 104), 12), 1);
  host.SetWord("ot36", 1, 5);
  std::vector<unsigned char> misc = Load("pfMS", 104);
  EXPECT_EQ(Field<uint16_t>(misc, 12), 0);
  ASSERT_EQ(Save("pfMS", misc), 1);
  EXPECT_EQ(host.Other("ot36")[1], 1);

  // Low byte: "ot19" word 4 behind "pfMS" offset 52; saved sign-extended.
  host.SetWord("ot19", 4, 0x0180);
  misc = Load("pfMS", 104);
  EXPECT_EQ(Field<uint16_t>(misc, 52), 0x0080);
  SetField<uint16_t>(misc, 52, 0x00FF);
  ASSERT_EQ(Save("pfMS", misc), 1);
  EXPECT_EQ(host.Other("ot19")[4], 0xFFFF);

  // Two words, high word first: "ot68" words 4 and 5 behind "pfDP" offset 18.
  host.SetWord("ot68", 4, 0x0001);
  host.SetWord("ot68", 5, 0x0002);
  std::vector<unsigned char> distance = Load("pfDP", 76);
  EXPECT_EQ(Field<uint32_t>(distance, 18), 0x00010002u);
  SetField<uint32_t>(distance, 18, 0xABCD1234);
  ASSERT_EQ(Save("pfDP", distance), 1);
  EXPECT_EQ(host.Other("ot68")[4], 0xABCD);
  EXPECT_EQ(host.Other("ot68")[5], 0x1234);

  // Keys of a group with its own owner: "otFI" {10, 0} word 2 behind "pfMS" offset 102.
  EXPECT_EQ(Field<uint16_t>(Load("pfMS", 104), 102), host.Other("otFI", 0, 10)[2]);
}

// Kind 2 and kinds no table uses, through a table made for the purpose.
TEST(LegacyPrefTables, LowWordFirstAndUnknownKinds) {
  TestHost& host = TestHost::Fresh();
  host.PutOther("otK2", 5, {0x0001, 0x0002, 0x0003, 0x0004, 0, 0});
  tPrefMapRow rows[] = {
      {0, {'K', '2'}, 0, 5, 0, 0, 4, 0, kPrefMapLowFirst},
      {0, {'K', '2'}, 0, 5, 4, 2, 4, 0, 7},
  };
  tPrefMapTable table{"test", FourCharTag("pfK2"), rows, 2, 8, 8};
  std::vector<unsigned char> record(8, 0xEE);
  uint32_t size = 8;
  ASSERT_EQ(LoadPrefTable(table, record.data(), &size), 1);
  EXPECT_EQ(Field<uint32_t>(record, 0), 0x00020001u);
  EXPECT_EQ(Field<uint32_t>(record, 4), 0u); // a kind that cannot load gives 0

  // An unknown kind stores nothing but counts as a change, so the record is written again.
  SetField<uint32_t>(record, 4, 0x11112222);
  ASSERT_EQ(SavePrefTable(table, record.data(), 8), 1);
  EXPECT_EQ(host.Calls("SX_SaveEData"), 1);
  EXPECT_EQ(host.Other("otK2", 5), (std::array<uint16_t, 6>{1, 2, 3, 4, 0, 0}));
  SetField<uint32_t>(record, 0, 0x00050006);
  SetField<uint32_t>(record, 4, 0);
  ASSERT_EQ(SavePrefTable(table, record.data(), 8), 1);
  EXPECT_EQ(host.Other("otK2", 5), (std::array<uint16_t, 6>{6, 5, 3, 4, 0, 0}));
}

TEST(LegacyPrefTables, BuffersBelowTheRecordSizeAreRefusedUntouched) {
  TestHost& host = TestHost::Fresh();
  PutKnownDocument(host);
  unsigned short keys[] = {0};
  const uint32_t tag = FourCharTag("pfSS");

  // Smart shapes reach byte 108 although their fields add up to 96 bytes.
  std::vector<unsigned char> shapes(108, 0xEE);
  uint32_t size = 96;
  EXPECT_EQ(SX_LoadEData(tag, keys, shapes.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(size, 96u);
  EXPECT_EQ(std::count(shapes.begin(), shapes.end(), 0xEE), 108);
  EXPECT_EQ(SX_SaveEData(tag, keys, shapes.data(), 107, kScriboHostVersion), 0);
  EXPECT_EQ(SX_SaveEData(tag, keys, nullptr, 108, kScriboHostVersion), 0);
  EXPECT_EQ(SX_LoadEData(tag, keys, shapes.data(), nullptr, kScriboHostVersion), 0);
  EXPECT_TRUE(host.Log().empty());

  size = 108;
  EXPECT_EQ(SX_LoadEData(tag, keys, shapes.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(Field<uint16_t>(shapes, 106), host.Other("ot97", 1)[3]);
  EXPECT_EQ(shapes[30], 0xEE); // the gaps between low-byte fields are not the table's
}

} // namespace
