// Records through the exported host functions: size queries, tuplet details keyed by entry,
// neighbours, specs and texts in the layouts the SDK's accessors read.
#include <cstring>
#include <vector>

#include "EngineTestSupport.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class RecordsTest : public EngineTest {};

int16_t WordAt(const uint8_t* bytes, size_t offset) {
  return int16_t(bytes[offset] | (bytes[offset + 1] << 8));
}

TEST_F(RecordsTest, TupletPreferencesAnswerSizeQueriesAndRefuseSmallBuffers) {
  uint16_t prefKey[1] = {0};
  uint32_t size = 0;
  EXPECT_EQ(host.LoadEData(kTupletPrefsTag, prefKey, nullptr, &size, kStamp), 1);
  EXPECT_EQ(size, 30u);

  uint8_t buffer[40];
  std::memset(buffer, 0xEE, sizeof buffer);
  size = 29;
  EXPECT_EQ(host.LoadEData(kTupletPrefsTag, prefKey, buffer, &size, kStamp), 0);
  EXPECT_EQ(size, 29u);
  EXPECT_EQ(buffer[0], 0xEE);
  size = 40;
  EXPECT_EQ(host.LoadEData(kTupletPrefsTag, prefKey, buffer, &size, kStamp), 1);
  EXPECT_EQ(size, 30u);
  EXPECT_EQ(buffer[30], 0xEE);

  // Tests can take the record away or give it another size.
  EXPECT_TRUE(doc().RemovePreference(kTupletPrefsTag, 0));
  EXPECT_EQ(host.LoadEData(kTupletPrefsTag, prefKey, nullptr, &size, kStamp), 0);
  doc().PutPreference(kTupletPrefsTag, 0, std::vector<uint8_t>(20, 1));
  EXPECT_EQ(host.LoadEData(kTupletPrefsTag, prefKey, nullptr, &size, kStamp), 1);
  EXPECT_EQ(size, 20u);
  // Writing through the host keeps the record's layout size.
  EXPECT_EQ(host.SaveEData(kTupletPrefsTag, prefKey, buffer, 20, kStamp), 0);
  EXPECT_EQ(host.SaveEData(kTupletPrefsTag, prefKey, buffer, 30, kStamp), 1);
}

TEST_F(RecordsTest, TupletDetailsAreKeyedByEntryAndFoundByNextAndPrevious) {
  doc().AddStaff();
  doc().AddMeasure();
  uint32_t first = doc().AddEntry({1, 1, 0}, Note(1024));
  uint32_t second = doc().AddEntry({1, 1, 0}, Note(1024));

  EDTTuplet triplet{3, 512, 2, 512, {}};
  auto create = [&](uint32_t entry) {
    uint16_t key[3] = {uint16_t(entry & 0xFFFF), uint16_t(entry >> 16), 0xFFFF};
    int result = host.CreateEData(kTupletDetailTag, key, &triplet, 30, kStamp);
    return std::pair{result, key[2]};
  };
  EXPECT_EQ(create(second), (std::pair{1, uint16_t(0)}));
  EXPECT_EQ(create(second), (std::pair{1, uint16_t(1)})); // the next free index
  EXPECT_EQ(create(first), (std::pair{1, uint16_t(0)}));
  EXPECT_EQ(create(0x7777), (std::pair{0, uint16_t(0xFFFF)})); // no such entry
  uint16_t taken[3] = {uint16_t(first), 0, 0};
  EXPECT_EQ(host.CreateEData(kTupletDetailTag, taken, &triplet, 30, kStamp), 0);
  engine().SetFailing(HostCall::CreateEData, true);
  EXPECT_EQ(create(first).first, 0);
  engine().SetFailing(HostCall::CreateEData, false);

  ASSERT_TRUE(doc().Tuplet(first));
  EXPECT_EQ(doc().Tuplet(first)->tupletNumber, 3);
  EXPECT_EQ(doc().Tuplet(first)->referenceNumber, 2);

  // Walk the tag in key order: (first, 0), (second, 0), (second, 1), then nothing.
  uint16_t key[3] = {0, 0, 0};
  EDTTuplet read{};
  std::vector<std::pair<uint32_t, uint16_t>> walked;
  while (host.NextEData(kTupletDetailTag, key, &read, sizeof read, kStamp))
    walked.emplace_back(uint32_t(key[0]) | (uint32_t(key[1]) << 16), key[2]);
  EXPECT_EQ(walked,
            (std::vector<std::pair<uint32_t, uint16_t>>{{first, 0}, {second, 0}, {second, 1}}));
  EXPECT_EQ(read.tupletUnit, 512);
  EXPECT_EQ(host.PreviousEData(kTupletDetailTag, key, nullptr, 0, kStamp), 1);
  EXPECT_EQ(key[2], 0);
  EXPECT_EQ(key[0], uint16_t(second));
  // A buffer too small for the neighbour leaves the key where it was.
  EXPECT_EQ(host.PreviousEData(kTupletDetailTag, key, &read, 10, kStamp), 0);
  EXPECT_EQ(key[0], uint16_t(second));

  EXPECT_EQ(host.DeleteEData(kTupletDetailTag, key, kStamp), 1);
  EXPECT_EQ(host.DeleteEData(kTupletDetailTag, key, kStamp), 0);
  EXPECT_EQ(doc().EntryDetails(second).size(), 1u);
}

TEST_F(RecordsTest, SpecsAndTextsHaveTheLayoutsTheAccessorsRead) {
  doc().AddStaff(u"Flute");
  int16_t staff = doc().AddStaff(u"", u"B^flat() Clarinet");
  int16_t measure = doc().AddMeasure(int16_t(0x0100 | 0xFD), {3, 512}); // minor, three flats; 3/8
  doc().SetStaffTransposition(staff, 0x2001);

  // Measure spec: key at byte 2, time signature at 8 and 10.
  uint16_t measureKey[2] = {uint16_t(measure), 0};
  uint8_t spec[136];
  uint32_t size = 30;
  ASSERT_EQ(host.LoadEData(kTagMeasureSpec, measureKey, spec, &size, kStamp), 1);
  EXPECT_EQ(uint16_t(WordAt(spec, 2)), 0x01FD);
  EXPECT_EQ(WordAt(spec, 8), 3);
  EXPECT_EQ(WordAt(spec, 10), 512);

  // Staff spec -> text block -> raw text, the way SXUtilGetStaffName follows them.
  uint16_t staffKey[2] = {uint16_t(staff), 0};
  size = 136;
  ASSERT_EQ(host.LoadEData(kTagStaffSpec, staffKey, spec, &size, kStamp), 1);
  EXPECT_EQ(WordAt(spec, 20), 0x2001);
  EXPECT_EQ(WordAt(spec, 30), 0);
  int16_t block = WordAt(spec, 32);
  ASSERT_NE(block, 0);
  uint16_t blockKey[2] = {uint16_t(block), 0};
  uint8_t textBlock[30];
  size = 30;
  ASSERT_EQ(host.LoadEData(kTagTextBlock, blockKey, textBlock, &size, kStamp), 1);
  uint16_t textKey[2] = {uint16_t(WordAt(textBlock, 0)), 0};
  ASSERT_EQ(host.LoadEData(kTagRawText, textKey, nullptr, &size, kStamp), 1);
  std::u16string expected = u"B^flat() Clarinet";
  ASSERT_EQ(size, expected.size() * 2);
  std::vector<char16_t> text(size / 2);
  ASSERT_EQ(host.LoadEData(kTagRawText, textKey, text.data(), &size, kStamp), 1);
  EXPECT_EQ(std::u16string(text.begin(), text.end()), expected);
  EXPECT_EQ(doc().StaffName(staff), expected);
  EXPECT_EQ(doc().StaffName(1), u"Flute");

  // General preferences: 66 bytes, present by default.
  uint16_t zero[1] = {0};
  ASSERT_EQ(host.LoadEData(kTagGeneralPrefs, zero, nullptr, &size, kStamp), 1);
  EXPECT_EQ(size, 66u);

  // A spec saved through the host reaches the document; one for a measure that does not exist
  // is refused.
  spec[8] = 5;
  spec[9] = 0;
  EXPECT_EQ(host.SaveEData(kTagMeasureSpec, measureKey, spec, 30, kStamp), 1);
  EXPECT_EQ(doc().TimeSig(measure).beats, 5);
  uint16_t missing[2] = {9, 0};
  EXPECT_EQ(host.SaveEData(kTagMeasureSpec, missing, spec, 30, kStamp), 0);

  // Other records: 12 bytes, {owner, index}.
  const uint32_t ot21 = FourCharTag("ot21");
  std::vector<uint8_t> other(12, 0);
  other[0] = 42;
  uint16_t otherKey[2] = {65534, 3};
  EXPECT_EQ(host.SaveEData(ot21, otherKey, other.data(), 12, kStamp), 1);
  EXPECT_EQ(doc().OtherRecord(ot21, 65534, 3), other);
  EXPECT_EQ(host.SaveEData(ot21, otherKey, other.data(), 11, kStamp), 0);
}

} // namespace
