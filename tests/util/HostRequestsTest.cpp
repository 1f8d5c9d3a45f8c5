// What the utilities ask of the host, and how they cope with a host that misreports or
// refuses: against the test host, which logs every request.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "KbdUtil.h"
#include "SXUtilProgress.h"
#include "SXUtilRawText.h"
#include "SXUtilRecords.h"
#include "TestSupport.h"
#include "UtilTestHostState.h"
#include "scribopdk.h"

namespace {

utiltest::State* gHost = nullptr;
int64_t gNowNs = 0;

// Loaded into the global scope before anything binds: the keyboard stand-in finds its
// providers there.
struct HostEnvironment : testing::Environment {
  void SetUp() override {
    void* image = scribotest::LoadBundle(UTIL_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_EQ(InitializeGlobals(), 0);
    gHost = scribotest::Symbol<UtilTestHostStateFn>(image, "UtilTestHost_State")();
  }
};
const auto* const gEnvironment = testing::AddGlobalTestEnvironment(new HostEnvironment);

class HostRequests : public testing::Test {
protected:
  void SetUp() override { std::memset(static_cast<void*>(gHost), 0, sizeof *gHost); }
  utiltest::State& host() { return *gHost; }
  void PutText(uint16_t number, const std::u16string& text) {
    utiltest::Record& r = host().records[host().recordCount++];
    r = {0x7478626c, number, static_cast<uint32_t>(text.size() * 2), {}};
    std::memcpy(r.data, text.data(), r.size);
  }
};

} // namespace

TEST_F(HostRequests, TagsKeysAndSizes) {
  EDTMeasureSpec2014 measure;
  EDTStaffSpec2014 staff;
  std::memset(&staff, 0x5A, sizeof staff);
  EDTGroupSpec group;
  EDTPageSpec page;
  EDTTextBlock25_4 block;
  std::memset(&block, 0x5A, sizeof block);
  EDTGeneralPrefs2008 prefs;
  short keySig = 77, trans = 77;
  SXUtilGetMeasureSpec(-2, &measure);
  SXUtilGetStaffSpec(3, &staff);
  SXUtilGetGroupSpec(4, 5, &group);
  SXUtilGetPageSpec(6, &page);
  SXUtilGetTextBlock(7, &block);
  SXUtilGetGeneralPrefs(&prefs);
  EXPECT_FALSE(SXUtilGetKeySig(8, &keySig));
  EXPECT_FALSE(SXUtilGetStaffTrans(9, &trans));
  const utiltest::LoadCall expected[] = {{0x534f4d53, {0xfffe, 0, 0xEEEE}, true, 30, 0x19500000},
                                         {0x534f4953, {3, 0, 0xEEEE}, true, 136, 0x19500000},
                                         {0x53444e47, {4, 5, 0}, true, 36, 0x19500000},
                                         {0x534f5053, {6, 0, 0xEEEE}, true, 22, 0x19500000},
                                         {0x534f5458, {7, 0, 0xEEEE}, true, 30, 0x19500000},
                                         {0x70666770, {0, 0xEEEE, 0xEEEE}, true, 66, 0x19500000},
                                         {0x534f4d53, {8, 0, 0xEEEE}, true, 30, 0x19500000},
                                         {0x534f4953, {9, 0, 0xEEEE}, true, 136, 0x19500000}};
  ASSERT_EQ(host().loadCount, 8);
  for (int i = 0; i < 8; ++i) {
    const utiltest::LoadCall& call = host().loads[i];
    EXPECT_EQ(call.tag, expected[i].tag) << i;
    EXPECT_EQ(std::memcmp(call.keys, expected[i].keys, sizeof call.keys), 0) << i;
    EXPECT_TRUE(call.withBuffer) << i;
    EXPECT_EQ(call.capacity, expected[i].capacity) << i;
    EXPECT_EQ(call.version, expected[i].version) << i;
  }
  EXPECT_EQ(block.rawText, 0) << "a text block is cleared before its load";
  for (uint8_t b : host().staffSpecTail)
    EXPECT_EQ(b, 0) << "bytes 102..113 reach the host cleared for SXUtilGetStaffTrans";
  EXPECT_EQ(keySig, 77) << "left alone on failure";
  EXPECT_EQ(trans, 77) << "left alone on failure";
}

TEST_F(HostRequests, RawTextSizesTheHostReports) {
  PutText(3, u"Flute");
  PutText(4, u"");
  unsigned short* text = SXUtilLoadRawTextUTF16(3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(text)), u"Flute");
  SXUtilFreeRawText(text);
  ASSERT_EQ(host().loadCount, 2);
  EXPECT_FALSE(host().loads[0].withBuffer);
  EXPECT_EQ(host().loads[1].capacity, 10u);

  text = SXUtilLoadRawTextUTF16(4);
  ASSERT_NE(text, nullptr) << "an empty text is a valid empty string";
  EXPECT_EQ(text[0], 0);
  SXUtilFreeRawText(text);
  EXPECT_EQ(SXUtilLoadRawTextUTF16(5), nullptr) << "no such text";

  // Sizes that would overflow size + 2 or exceed any text: refused before allocating.
  host().misreportSize = true;
  for (uint32_t size : {0xFFFFFFFFu, 0xFFFFFFFEu, kMaxRawTextBytes + 2}) {
    host().reportedSize = size;
    host().loadCount = 0;
    EXPECT_EQ(SXUtilLoadRawTextUTF16(3), nullptr) << size;
    EXPECT_EQ(host().loadCount, 1) << size;
  }
  host().reportedSize = 4; // also after the load: the text ends where the host says
  text = SXUtilLoadRawTextUTF16(3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(text)), u"Fl");
  SXUtilFreeRawText(text);

  host().misreportSize = false;
  host().failBufferedLoads = true; // the buffer is freed again (LeakSanitizer would tell)
  EXPECT_EQ(SXUtilLoadRawTextUTF16(3), nullptr);
}

TEST_F(HostRequests, ProgressWithoutADisplayAndScratchRegions) {
  SXUtilSetProgressClock([] { return gNowNs; });
  host().refuseMassEdit = true;
  tProgressReport report;
  SXUtilPRStart(&report, 100);
  gNowNs = 700'000'000;
  EXPECT_TRUE(SXUtilPRUpdate(&report, 10));
  gNowNs = 740'000'000;
  EXPECT_TRUE(SXUtilPRUpdate(&report, 20));
  EXPECT_EQ(host().massEditStarts, 2) << "each due update tries again";
  const void* display = report.massEdit; // a copy: the field is packed
  EXPECT_EQ(display, nullptr);
  SXUtilPREnd(&report, 0); // no display: nothing to close, nothing sent
  SXUtilSetProgressClock(nullptr);

  EXPECT_EQ(GetRegions(nullptr, nullptr), 1);
  EXPECT_EQ(host().regionQueries, 1);
}

TEST_F(HostRequests, KeyboardIsReadOnlyWhenNeeded) {
  host().keyMap[5] = 0x80;  // period (47)
  host().keyMap[15] = 0x80; // 127
  EXPECT_TRUE(KbdUtilKeyIsDown(47));
  EXPECT_FALSE(KbdUtilKeyIsDown(46));
  EXPECT_FALSE(KbdUtilKeyIsDown(48));
  EXPECT_TRUE(KbdUtilKeyIsDown(127));
  const int reads = host().keyMapReads;
  EXPECT_FALSE(KbdUtilKeyIsDown(-1));
  EXPECT_FALSE(EventUtilCancelInQueue()) << "period without Command";
  EXPECT_EQ(host().keyMapReads, reads) << "not read for negative codes or without Command";
  host().modifierFlags = 1u << 20;
  EXPECT_TRUE(EventUtilCancelInQueue());
  host().keyMap[5] = 0x7F;
  EXPECT_FALSE(EventUtilCancelInQueue()) << "Command without period";
}
