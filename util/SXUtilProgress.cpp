// Progress reporting, rate-limited so that an update costs one keyboard query and one clock
// read when nothing is due.
#include "SXUtilProgress.h"

#include <chrono>

#include "HostFunctions.h"
#include "KbdUtil.h"

namespace {

int64_t SteadyNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

SXUtilProgressClock sProgressClock = SteadyNanoseconds;

void SendProgress(void* massEdit, int amount) {
  SX_MassEditProgress(massEdit, static_cast<short>(amount), 0, 0, -1, kScriboHostVersion);
}

} // namespace

void SXUtilSetProgressClock(SXUtilProgressClock clock) {
  sProgressClock = clock ? clock : SteadyNanoseconds;
}

short SXUtilPRCalcJobSize(EREGION* region, short flags) {
  if (!region && (flags & (kJobSizeMeasures | kJobSizeStaves)))
    return 0;
  short size = 1;
  if (flags & kJobSizeMeasures)
    size = static_cast<short>(size *
                              static_cast<short>(region->endMeasure - region->startMeasure + 1));
  if (flags & kJobSizeStaves)
    size = static_cast<short>(size * static_cast<short>(region->endStaff - region->startStaff + 1));
  if (flags & kJobSizeLayers)
    size = static_cast<short>(size * SX_GetMaxLayers(kScriboHostVersion));
  return size;
}

void SXUtilPRStart(tProgressReport* report, unsigned short total) {
  report->massEdit = nullptr;
  report->startTime = sProgressClock();
  report->nextCheckMs = kProgressFirstUpdateMs;
  report->total = total;
  report->reported = 0;
}

bool SXUtilPRUpdate(tProgressReport* report, unsigned short done) {
  if (EventUtilCancelInQueue())
    return false;
  const int64_t elapsedMs = (sProgressClock() - report->startTime) / 1000000;
  if (elapsedMs < report->nextCheckMs)
    return true;
  if (report->reported >= done)
    return true;
  report->nextCheckMs = elapsedMs + kProgressIntervalMs;
  const uint16_t current = report->total < done ? report->total : done;
  if (!report->massEdit) {
    report->massEdit = SX_StartMassEdit(nullptr, report->total, kScriboHostVersion);
    if (!report->massEdit)
      return true;
  }
  SendProgress(report->massEdit, current - report->reported);
  report->reported = current;
  return true;
}

void SXUtilPREnd(tProgressReport* report, short status) {
  if (!report->massEdit)
    return;
  const short remainder = static_cast<short>(report->total - report->reported);
  if (status == 0 && remainder > 0)
    SendProgress(report->massEdit, remainder);
  SX_EndMassEdit(report->massEdit, status, kScriboHostVersion);
}

short GetRegions(EREGION* first, EREGION* second) {
  EREGION scratchFirst{}, scratchSecond{};
  unsigned char place[8] = {};
  return SX_GetCurERegions(place, second ? second : &scratchSecond, first ? first : &scratchFirst,
                           kScriboHostVersion);
}
