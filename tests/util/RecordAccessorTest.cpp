// Record accessors, raw texts, staff names, empty measures and slots against the test host.
#include <string>

#include "SDKCounters.h"
#include "SXUtilPitch.h"
#include "SXUtilRawText.h"
#include "SXUtilRecords.h"
#include "UtilHostFixture.h"

namespace {

const auto* const gEnvironment = testing::AddGlobalTestEnvironment(new utiltest::HostEnvironment);

using utiltest::HostTest;
using RecordAccessors = HostTest;
using RawText = HostTest;
using StaffName = HostTest;
using MeasureQueries = HostTest;

std::u16string Units(const unsigned short* text) {
  return reinterpret_cast<const char16_t*>(text);
}

} // namespace

TEST_F(RecordAccessors, TagsKeysAndSizes) {
  EDTMeasureSpec2014 measure{};
  EDTStaffSpec2014 staff{};
  EDTGroupSpec group{};
  EDTPageSpec page{};
  EDTTextBlock25_4 block{};
  EDTGeneralPrefs2008 prefs{};
  SXUtilGetMeasureSpec(-2, &measure);
  SXUtilGetStaffSpec(3, &staff);
  SXUtilGetGroupSpec(4, 5, &group);
  SXUtilGetPageSpec(6, &page);
  SXUtilGetTextBlock(7, &block);
  SXUtilGetGeneralPrefs(&prefs);
  struct Expected {
    uint32_t tag;
    uint16_t keys[3];
    uint32_t size;
  } expected[] = {{0x534f4d53, {0xfffe, 0, 0xEEEE}, 30}, {0x534f4953, {3, 0, 0xEEEE}, 136},
                  {0x53444e47, {4, 5, 0}, 36},           {0x534f5053, {6, 0, 0xEEEE}, 22},
                  {0x534f5458, {7, 0, 0xEEEE}, 30},      {0x70666770, {0, 0xEEEE, 0xEEEE}, 66}};
  ASSERT_EQ(host().loadCount, 6);
  for (int i = 0; i < 6; ++i) {
    const utiltest::LoadCall& call = host().loads[i];
    EXPECT_EQ(call.tag, expected[i].tag) << i;
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(call.keys[k], expected[i].keys[k]) << i << " key " << k;
    EXPECT_TRUE(call.withBuffer);
    EXPECT_EQ(call.capacity, expected[i].size) << i;
    EXPECT_EQ(call.version, 0x19500000u);
  }

  measure.keySig = 0x0103;
  ASSERT_NE(SXUtilPutMeasureSpec(9, &measure), 0);
  ASSERT_EQ(host().saveCount, 1);
  EXPECT_EQ(host().saves[0].tag, 0x534f4d53u);
  EXPECT_EQ(host().saves[0].keys[0], 9);
  EXPECT_EQ(host().saves[0].size, 30u);
  short keySig = 0;
  ASSERT_TRUE(SXUtilGetKeySig(9, &keySig)); // reads back what was stored
  EXPECT_EQ(keySig, 0x0103);
}

TEST_F(RecordAccessors, DerivedQueries) {
  EDTMeasureSpec2014 measure{};
  measure.keySig = -3;
  measure.timeSigBeats = 6;
  measure.timeSigBeatValue = 1536;
  Put(0x534f4d53, 12, &measure, sizeof measure);
  EDTStaffSpec2014 staff{};
  staff.staffTrans = 0x20ff;
  std::memset(staff.loadSelector, 0x5A, sizeof staff.loadSelector);
  Put(0x534f4953, 2, &staff, sizeof staff);

  short keySig = 77, trans = 77;
  tTimeSig time{77, 77};
  EXPECT_TRUE(SXUtilGetKeySig(12, &keySig));
  EXPECT_EQ(keySig, -3);
  EXPECT_TRUE(SXUtilGetTimeSig(12, &time));
  EXPECT_EQ(time.beats, 6);
  EXPECT_EQ(time.beatValue, 1536);
  EXPECT_TRUE(SXUtilGetStaffTrans(2, &trans));
  EXPECT_EQ(trans, 0x20ff);
  for (uint8_t b : host().staffSpecSelector)
    EXPECT_EQ(b, 0) << "bytes 102..113 must reach the host cleared";

  // Missing records leave the outputs alone.
  keySig = 77, trans = 77, time = {77, 77};
  EXPECT_FALSE(SXUtilGetKeySig(13, &keySig));
  EXPECT_FALSE(SXUtilGetTimeSig(13, &time));
  EXPECT_FALSE(SXUtilGetStaffTrans(3, &trans));
  EXPECT_EQ(keySig, 77);
  EXPECT_EQ(time.beats, 77);
  EXPECT_EQ(trans, 77);

  // The text block is cleared before the load, so a failed load leaves zeros.
  EDTTextBlock25_4 block;
  std::memset(&block, 0xFF, sizeof block);
  EXPECT_EQ(SXUtilGetTextBlock(40, &block), 0);
  EXPECT_EQ(block.rawText, 0);
}

TEST_F(RecordAccessors, PitchFormattingFromTheDocument) {
  EDTGeneralPrefs2008 prefs{};
  prefs.pitchNames = 1;
  prefs.octaveShift = 12;
  Put(0x70666770, 0, &prefs, sizeof prefs);
  char out[8];
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatFromDocument), 0);
  SXUtilFormatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "C5");

  host().records[0].data[40] = 6; // not a whole octave: refused, state kept
  EXPECT_EQ(SXUtilSetPitchFormatting(kPitchFormatFromDocument), 1);
  SXUtilFormatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "C5");

  const int16_t twoOctavesDown = -24;
  std::memcpy(host().records[0].data + 40, &twoOctavesDown, 2);
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatFromDocument), 0);
  SXUtilFormatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "C2");

  host().records[0].data[38] = 0; // MIDI numbers
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatFromDocument), 0);
  SXUtilFormatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "60");
}

TEST_F(RawText, LoadsAndRefusals) {
  PutText(3, u"Flute");
  unsigned short* text = SXUtilLoadRawTextUTF16(3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(Units(text), u"Flute");
  SXUtilFreeRawText(text);
  ASSERT_EQ(host().loadCount, 2);
  EXPECT_FALSE(host().loads[0].withBuffer);
  EXPECT_EQ(host().loads[1].capacity, 10u);

  PutText(4, u"");
  text = SXUtilLoadRawTextUTF16(4);
  ASSERT_NE(text, nullptr) << "an empty text is a valid empty string";
  EXPECT_EQ(text[0], 0);
  SXUtilFreeRawText(text);

  EXPECT_EQ(SXUtilLoadRawTextUTF16(5), nullptr); // no such text

  // Sizes that would overflow the allocation or exceed any text are refused before allocating.
  host().overrideRawTextSize = true;
  for (uint32_t size : {0xFFFFFFFFu, 0xFFFFFFFEu, kMaxRawTextBytes + 2}) {
    host().rawTextSize = size;
    host().loadCount = 0;
    EXPECT_EQ(SXUtilLoadRawTextUTF16(3), nullptr) << size;
    EXPECT_EQ(host().loadCount, 1) << size;
  }
  // The host claims less the second time: the text ends where the host says.
  host().rawTextSize = 4;
  text = SXUtilLoadRawTextUTF16(3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(Units(text), u"Fl");
  SXUtilFreeRawText(text);
  host().overrideRawTextSize = false;

  host().failBufferedLoads = true; // the buffer is freed again (LeakSanitizer would tell)
  EXPECT_EQ(SXUtilLoadRawTextUTF16(3), nullptr);
}

TEST_F(StaffName, FirstOrSecondNameWithoutTags) {
  auto staffWithNames = [&](uint16_t staff, int16_t first, int16_t second) {
    EDTStaffSpec2014 spec{};
    spec.firstNameBlock = first;
    spec.secondNameBlock = second;
    Put(0x534f4953, staff, &spec, sizeof spec);
  };
  auto block = [&](uint16_t number, int16_t rawText) {
    EDTTextBlock25_4 b{};
    b.rawText = rawText;
    Put(0x534f5458, number, &b, sizeof b);
  };
  staffWithNames(1, 0, 20);
  block(20, 200);
  PutText(200, u"^font(Times)Violin");
  staffWithNames(2, 21, 22); // first block missing: the second is used
  block(22, 202);
  PutText(202, u"B^flat() Clarinet");
  staffWithNames(3, 0, 0);
  staffWithNames(4, 24, 0);
  block(24, 204);
  PutText(204, std::u16string(40, u'x'));

  unsigned short name[64];
  EXPECT_EQ(SXUtilGetStaffName(1, 0, name, 64), 6);
  EXPECT_EQ(Units(name), u"Violin");
  EXPECT_EQ(SXUtilGetStaffName(2, 1, name, 64), 11);
  EXPECT_EQ(Units(name), u"Bb Clarinet");

  name[0] = 'z';
  EXPECT_EQ(SXUtilGetStaffName(3, 0, name, 64), 0);
  EXPECT_EQ(name[0], 0);
  name[0] = 'z';
  EXPECT_EQ(SXUtilGetStaffName(9, 0, name, 64), 0); // no staff spec
  EXPECT_EQ(name[0], 0);

  std::fill(std::begin(name), std::end(name), 0xAAAA);
  EXPECT_EQ(SXUtilGetStaffName(4, 0, name, 32), 31);
  EXPECT_EQ(Units(name), std::u16string(31, u'x'));
  EXPECT_EQ(name[32], 0xAAAA) << "nothing written past nameSize";
  EXPECT_EQ(SXUtilGetStaffName(4, 0, name, 1), 0);
  EXPECT_EQ(SXUtilGetStaffName(4, 0, nullptr, 32), 0);
}

TEST_F(MeasureQueries, EmptyMeasuresAndSlots) {
  const int32_t framesBefore = LoadedTGFCounter;
  EXPECT_TRUE(SXUtilIsEmptyMeasure(1, 1, 1)) << "no frames at all";
  for (int layer = 0; layer < 4; ++layer) {
    host().layers[layer].present = true;
    host().layers[layer].entryCount = 2; // rests only
  }
  EXPECT_TRUE(SXUtilIsEmptyMeasure(-1, 1, 1));
  EXPECT_EQ(host().lastFrameSource, 0xFFFFu) << "the frame source travels as unsigned";
  host().layers[3].flags[1] = kEntryIsNote;
  EXPECT_FALSE(SXUtilIsEmptyMeasure(1, 1, 1));
  host().maxLayers = 3; // layer 3 is not asked for
  EXPECT_TRUE(SXUtilIsEmptyMeasure(1, 1, 1));
  host().maxLayers = 0;
  EXPECT_TRUE(SXUtilIsEmptyMeasure(1, 1, 1));
  EXPECT_EQ(host().framesLoaded, host().framesFreed);
  EXPECT_EQ(host().framesLoaded, 4 + 4 + 3);
  EXPECT_EQ(LoadedTGFCounter, framesBefore);

  EXPECT_EQ(SXUtilCountIUSlots(7), 0);
  EXPECT_EQ(host().slotQueries, 1);
  host().slotsInUse = 5;
  EXPECT_EQ(SXUtilCountIUSlots(-2), 5);
  EXPECT_EQ(host().lastSlotSet, 0xFFFEu);
}
