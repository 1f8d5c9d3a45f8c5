// The probe's table: each entry runs one utility inside this plug-in image.
#include "UtilProbe.h"

#include "KbdUtil.h"
#include "SXUtilPitch.h"
#include "SXUtilProgress.h"
#include "SXUtilRecords.h"

namespace {

tProgressReport sReport;

const UtilProbeTable kTable = {
    SXUtilGetKeySig,
    SXUtilGetTimeSig,
    SXUtilGetStaffTrans,
    [](short m, short keySig) -> short {
      EDTMeasureSpec2014 spec;
      if (!SXUtilGetMeasureSpec(m, &spec))
        return 0;
      spec.keySig = keySig;
      return SXUtilPutMeasureSpec(m, &spec);
    },
    SXUtilGetStaffName,
    SXUtilIsEmptyMeasure,
    SXUtilCountIUSlots,
    SXUtilSetPitchFormatting,
    SXUtilFormatPitch,
    GetRegions,
    SXUtilPRCalcJobSize,
    SXUtilSetProgressClock,
    [](unsigned short total) { SXUtilPRStart(&sReport, total); },
    [](unsigned short done) { return SXUtilPRUpdate(&sReport, done); },
    [](short status) { SXUtilPREnd(&sReport, status); },
    EventUtilCancelInQueue,
    KbdUtilKeyIsDown,
};

} // namespace

extern "C" __attribute__((visibility("default"))) const UtilProbeTable* UtilProbe_Table() {
  return &kTable;
}
