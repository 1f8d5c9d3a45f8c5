// Progress of long operations over a region: the host's mass-edit progress display shown only
// when a job runs long enough to need it, at most about thirty updates a second, with the
// user's Command-period as the way to stop.
//
// Calling order: SXUtilPRCalcJobSize (optional), SXUtilPRStart, any number of SXUtilPRUpdate with
// growing `done`, SXUtilPREnd once. Thread: host's main thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "EREGION.h"

#pragma pack(push, 2)

// One job's progress state, owned by the caller (usually on its stack).
struct tProgressReport {
  void* massEdit;      // the host's progress display; null until an update opens it
  uint16_t total;      // size of the job, in the caller's units
  uint16_t reported;   // amount already passed to the display
  int64_t startTime;   // when the job started: steady (monotonic) clock, nanoseconds
  int64_t nextCheckMs; // milliseconds after startTime before which an update does nothing
};

#pragma pack(pop)

static_assert(sizeof(tProgressReport) == 28);
static_assert(offsetof(tProgressReport, massEdit) == 0);
static_assert(offsetof(tProgressReport, total) == 8);
static_assert(offsetof(tProgressReport, reported) == 10);
static_assert(offsetof(tProgressReport, startTime) == 12);
static_assert(offsetof(tProgressReport, nextCheckMs) == 20);

// The first update can act no sooner than this after the start; later ones no more often than
// once per kProgressIntervalMs.
constexpr int64_t kProgressFirstUpdateMs = 667;
constexpr int64_t kProgressIntervalMs = 33;

// Job-size flags of SXUtilPRCalcJobSize.
constexpr short kJobSizeMeasures = 1; // endMeasure - startMeasure + 1
constexpr short kJobSizeStaves = 2;   // endStaff - startStaff + 1
constexpr short kJobSizeLayers = 4;   // SX_GetMaxLayers

// The product of 1 and the factors whose flags are set, in 16-bit arithmetic (flags 0 give 1).
// A null region gives 0 when a flag needs it.
short SXUtilPRCalcJobSize(EREGION* region, short flags);

// Starts a job of `total` units: no display yet, the clock started.
void SXUtilPRStart(tProgressReport* report, unsigned short total);

// Reports that `done` units are finished (at most `total` is shown). False when the user holds
// Command-period, tested first on every call, and then nothing else happens; true otherwise.
// Opens the display at the first update that is due and shows progress; when the host cannot
// open it the job goes on without one and a later update tries again.
bool SXUtilPRUpdate(tProgressReport* report, unsigned short done);

// Closes the display, if one was opened. `status` 0 (the job ran to its end) first fills the
// display with what was not yet reported; any other status closes it as it is.
void SXUtilPREnd(tProgressReport* report, short status);

// The current selection regions, through SX_GetCurERegions; its result. A null argument is
// replaced by a scratch region.
short GetRegions(EREGION* first, EREGION* second);

// The clock that progress timing reads: nanoseconds of a monotonic clock. Tests set their own
// to run a job's timing without waiting; null restores the steady clock.
using SXUtilProgressClock = int64_t (*)();
void SXUtilSetProgressClock(SXUtilProgressClock clock);
