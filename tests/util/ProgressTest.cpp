// Progress reporting with a clock the test moves, the cancel gesture, regions and the keyboard,
// against the test host.
#include "KbdUtil.h"
#include "SDKCounters.h"
#include "SXUtilProgress.h"
#include "UtilHostFixture.h"

namespace {

int64_t gNowNs = 0;
int64_t FakeClock() {
  return gNowNs;
}

class Progress : public utiltest::HostTest {
protected:
  void SetUp() override {
    HostTest::SetUp();
    gNowNs = 5'000'000'000; // any starting point
    SXUtilSetProgressClock(FakeClock);
  }
  void TearDown() override { SXUtilSetProgressClock(nullptr); }
  void At(int64_t ms, int64_t extraNs = 0) { gNowNs = start_ + ms * 1'000'000 + extraNs; }
  void Start(unsigned short total) {
    start_ = gNowNs;
    SXUtilPRStart(&report_, total);
  }
  void HoldCommandPeriod(bool command, bool period) {
    host().modifierFlags = command ? (1u << 20) | 0x20000 : 0x20000; // Shift is held throughout
    host().keyMap[5] = period ? 0x80 : 0;
  }
  tProgressReport report_{};
  int64_t start_ = 0;
};

using Keyboard = utiltest::HostTest;
using Regions = utiltest::HostTest;

} // namespace

TEST_F(Progress, FirstGateThenAtMostOnePer33ms) {
  Start(100);
  EXPECT_EQ(report_.nextCheckMs, 667);
  At(0);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 5));
  At(666, 999'999); // still 666 whole milliseconds
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 8));
  EXPECT_EQ(host().massEditStarts, 0);

  At(700);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 10));
  ASSERT_EQ(host().massEditStarts, 1);
  EXPECT_EQ(host().massEditTotal, 100u);
  ASSERT_EQ(host().progressCount, 1);
  EXPECT_EQ(host().progress[0], 10);
  At(710);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 20));
  EXPECT_EQ(host().progressCount, 1);
  At(740);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 25));
  ASSERT_EQ(host().progressCount, 2);
  EXPECT_EQ(host().progress[1], 15);
  At(800);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 25)); // no progress, nothing sent, gate not moved
  EXPECT_EQ(report_.nextCheckMs, 773);
  At(900);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 60));
  EXPECT_EQ(host().progress[2], 35);

  const int32_t depth = MassEditDepth;
  SXUtilPREnd(&report_, 0);
  ASSERT_EQ(host().progressCount, 4);
  EXPECT_EQ(host().progress[3], 40) << "the display is filled to its end";
  EXPECT_EQ(host().massEditEnds, 1);
  EXPECT_EQ(host().massEditEndStatus, 0);
  EXPECT_EQ(MassEditDepth, depth - 1);
  EXPECT_EQ(host().massEditStarts, 1) << "one display for the whole job";
}

TEST_F(Progress, DoneBeyondTotalAndEndWithoutRemainder) {
  Start(50);
  At(700);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 80));
  EXPECT_EQ(host().progress[0], 50);
  SXUtilPREnd(&report_, 0);
  EXPECT_EQ(host().progressCount, 1) << "nothing left to send";
  EXPECT_EQ(host().massEditEnds, 1);
}

TEST_F(Progress, CancelStopsFirstAndEndClosesWithoutFilling) {
  Start(100);
  At(10);
  HoldCommandPeriod(true, true);
  EXPECT_FALSE(SXUtilPRUpdate(&report_, 1)) << "cancel is tested before the first gate";
  HoldCommandPeriod(false, false);
  At(700);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 60));
  HoldCommandPeriod(true, true);
  At(800);
  EXPECT_FALSE(SXUtilPRUpdate(&report_, 90));
  EXPECT_EQ(report_.reported, 60);
  SXUtilPREnd(&report_, 1);
  EXPECT_EQ(host().progressCount, 1);
  EXPECT_EQ(host().massEditEnds, 1);
  EXPECT_EQ(host().massEditEndStatus, 1);
}

TEST_F(Progress, NoDisplayFromTheHost) {
  host().refuseMassEdit = true;
  Start(100);
  At(700);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 10));
  At(740);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 20));
  EXPECT_EQ(host().massEditStarts, 2) << "each due update tries again";
  EXPECT_EQ(report_.reported, 0);
  SXUtilPREnd(&report_, 0); // no display: nothing to close
  EXPECT_EQ(host().massEditEnds, 0);

  host().refuseMassEdit = false;
  Start(10); // a job that ends within 667 ms never shows a display
  At(300);
  EXPECT_TRUE(SXUtilPRUpdate(&report_, 10));
  SXUtilPREnd(&report_, 0);
  EXPECT_EQ(host().massEditStarts, 2);
}

TEST_F(Progress, JobSize) {
  EREGION region{};
  region.startStaff = 2;
  region.endStaff = 4;
  region.startMeasure = 10;
  region.endMeasure = 19;
  EXPECT_EQ(SXUtilPRCalcJobSize(&region, 3), 30);
  EXPECT_EQ(SXUtilPRCalcJobSize(&region, 7), 120);
  EXPECT_EQ(SXUtilPRCalcJobSize(&region, 0), 1);
  EXPECT_EQ(SXUtilPRCalcJobSize(&region, 4), 4);
  region.endMeasure = 300;
  region.endStaff = 200;
  EXPECT_EQ(SXUtilPRCalcJobSize(&region, 3), static_cast<short>(291 * 199));
  EXPECT_EQ(SXUtilPRCalcJobSize(nullptr, 1), 0);
}

TEST_F(Regions, ScratchRecordsForMissingArguments) {
  host().regionResult = 1;
  host().intoSecondArgument.startStaff = 2;
  host().intoThirdArgument.startStaff = 3;
  EREGION first{}, second{};
  EXPECT_EQ(GetRegions(&first, &second), 1);
  EXPECT_EQ(first.startStaff, 3);
  EXPECT_EQ(second.startStaff, 2);
  host().regionResult = 0;
  EXPECT_EQ(GetRegions(nullptr, nullptr), 0);
  EXPECT_EQ(host().regionQueries, 2);
}

TEST_F(Keyboard, KeysAndCommandPeriod) {
  host().keyMap[5] = 0x80; // period (47)
  host().keyMap[6] = 0x01; // key 48
  EXPECT_TRUE(KbdUtilKeyIsDown(47));
  EXPECT_TRUE(KbdUtilKeyIsDown(48));
  EXPECT_FALSE(KbdUtilKeyIsDown(46));
  EXPECT_FALSE(KbdUtilKeyIsDown(49));
  host().keyMap[15] = 0x80;
  EXPECT_TRUE(KbdUtilKeyIsDown(127));
  const int reads = host().keyMapReads;
  EXPECT_FALSE(KbdUtilKeyIsDown(-1));
  EXPECT_FALSE(KbdUtilKeyIsDown(static_cast<char>(0x80)));
  EXPECT_EQ(host().keyMapReads, reads) << "negative codes do not read the keyboard";

  EXPECT_FALSE(EventUtilCancelInQueue()) << "period without Command";
  EXPECT_EQ(host().keyMapReads, reads) << "the map is read only with Command down";
  host().modifierFlags = 1u << 20;
  EXPECT_TRUE(EventUtilCancelInQueue());
  host().keyMap[5] = 0x7F; // every other key of the byte, not the period
  EXPECT_FALSE(EventUtilCancelInQueue()) << "Command without period";
}
