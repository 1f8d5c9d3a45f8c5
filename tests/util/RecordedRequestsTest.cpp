// What the utilities ask of the host, and how they cope with answers the reference engine never
// gives: against the recording host.
#include <gtest/gtest.h>

#include <cstring>

#include "RecordingHost.h"
#include "SXUtilProgress.h"
#include "SXUtilRawText.h"
#include "SXUtilRecords.h"
#include "scribopdk.h"

namespace {

recordinghost::Host& BoundHost() {
  recordinghost::Host& host = recordinghost::Fresh();
  static const short bound = InitializeGlobals();
  EXPECT_EQ(bound, 0);
  return host;
}

// The accessors the engine test cannot reach, and what no host shows: the stamp, and buffers
// cleared before they reach the host.
TEST(UtilRequests, AccessorsAskForTheirRecordsTagKeysAndSize) {
  recordinghost::Host& host = BoundHost(); // which has no records: every load fails
  EDTGroupSpec group;
  EDTPageSpec page;
  EDTTextBlock25_4 block;
  std::memset(&block, 0x5A, sizeof block);
  short keySig = 77, trans = 77;
  SXUtilGetGroupSpec(4, 5, &group);
  SXUtilGetPageSpec(-2, &page);
  SXUtilGetTextBlock(7, &block);
  EXPECT_FALSE(SXUtilGetKeySig(8, &keySig) || SXUtilGetStaffTrans(9, &trans));
  const struct {
    char tag[5];
    uint16_t keys[3];
    uint32_t size;
  } kExpected[] = {{"SDNG", {4, 5, 0}, 36},
                   {"SOPS", {0xFFFE, 0, 0}, 22},
                   {"SOTX", {7, 0, 0}, 30},
                   {"SOMS", {8, 0, 0}, 30},
                   {"SOIS", {9, 0, 0}, 136}};
  const std::vector<RecordedEDataCall> calls = host.RecordCalls();
  ASSERT_EQ(calls.size(), std::size(kExpected));
  for (size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(calls[i].tag, FourCharTag(kExpected[i].tag)) << i;
    EXPECT_EQ(std::memcmp(calls[i].keys, kExpected[i].keys, sizeof calls[i].keys), 0) << i;
    EXPECT_EQ(calls[i].size, kExpected[i].size) << i;
    EXPECT_EQ(calls[i].version, kScriboHostVersion) << i;
  }
  for (int byte = 102; byte < 114; ++byte)
    EXPECT_EQ(calls[4].arrived[byte], 0) << "the staff spec reached the host cleared: " << byte;
  EXPECT_EQ(block.rawText, 0) << "a text block is cleared before its load";
  EXPECT_EQ(keySig + trans, 2 * 77) << "left alone on failure";
}

// A raw text is loaded into a buffer of the size the host reported first: a size near 4 GiB,
// or a second load that wants more room, gives no text and leaves nothing allocated.
TEST(UtilRequests, RawTextsTrustNoSizeBeyondTheirBuffer) {
  recordinghost::Host& host = BoundHost();
  host.PutRecord(kTagRawText, 4, 0, nullptr, 0, 0);
  unsigned short* text = SXUtilLoadRawTextUTF16(4);
  ASSERT_NE(text, nullptr) << "an empty text is a valid empty string";
  EXPECT_EQ(text[0], 0);
  SXUtilFreeRawText(text);
  EXPECT_EQ(host.RecordCalls().size(), 1u) << "with nothing to load";

  const char16_t flute[] = u"Flute";
  for (uint32_t reported : {0xFFFFFFFFu, 0xFFFFFFFEu, kMaxRawTextBytes + 2, 4u}) {
    host.Reset();
    host.PutRecord(kTagRawText, 3, 0, flute, 10, reported);
    EXPECT_EQ(SXUtilLoadRawTextUTF16(3), nullptr) << reported;
    EXPECT_EQ(host.RecordCalls().size(), reported == 4 ? 2u : 1u) << reported;
  }
}

TEST(UtilRequests, ProgressGoesOnWithoutADisplay) {
  recordinghost::Host& host = BoundHost(); // SX_StartMassEdit answers null
  static int64_t now = 0;
  SXUtilSetProgressClock([] { return now; });
  tProgressReport report;
  SXUtilPRStart(&report, 100);
  now = 700'000'000;
  EXPECT_TRUE(SXUtilPRUpdate(&report, 10));
  now = 740'000'000;
  EXPECT_TRUE(SXUtilPRUpdate(&report, 20));
  EXPECT_EQ(host.CallCount("SX_StartMassEdit"), 2) << "each due update tries again";
  SXUtilPREnd(&report, 0);
  EXPECT_EQ(host.CallCount("SX_MassEditProgress") + host.CallCount("SX_EndMassEdit"), 0);
  SXUtilSetProgressClock(nullptr);
}

} // namespace
