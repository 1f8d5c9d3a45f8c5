// The probe's table: each entry runs one utility inside this plug-in image.
#include "UtilProbe.h"

#include "KbdUtil.h"
#include "SDKCounters.h"
#include "SXUtilPitch.h"
#include "SXUtilProgress.h"
#include "SXUtilRecords.h"
#include "SXUtilTranspose.h"

namespace {

tProgressReport sReport;

const UtilProbeTable kTable = {
    [](short m, short* k) -> int { return SXUtilGetKeySig(m, k); },
    [](short m, tTimeSig* t) -> int { return SXUtilGetTimeSig(m, t); },
    [](short s, short* t) -> int { return SXUtilGetStaffTrans(s, t); },
    [](short m, short keySig) -> int {
      EDTMeasureSpec2014 spec;
      if (!SXUtilGetMeasureSpec(m, &spec))
        return 0;
      spec.keySig = keySig;
      return SXUtilPutMeasureSpec(m, &spec);
    },
    [](short s, uint16_t* name, int size) { return SXUtilGetStaffName(s, 0, name, size); },
    [](short source, short s, short m) -> int { return SXUtilIsEmptyMeasure(source, s, m); },
    SXUtilCountIUSlots,
    SXUtilSetPitchFormatting,
    SXUtilFormatPitch,
    SXUtilAbsToStaffTCD,
    GetRegions,
    SXUtilPRCalcJobSize,
    SXUtilSetProgressClock,
    [](unsigned short total) { SXUtilPRStart(&sReport, total); },
    [](unsigned short done) -> int { return SXUtilPRUpdate(&sReport, done); },
    [](short status) { SXUtilPREnd(&sReport, status); },
    []() -> int { return EventUtilCancelInQueue(); },
    &LoadedTGFCounter,
};

} // namespace

extern "C" __attribute__((visibility("default"))) const UtilProbeTable* UtilProbe_Table() {
  return &kTable;
}
