// Key signature, time signature and staff transposition, read out of their spec records.
#include "SXUtilRecords.h"
#include "StaffSpecLoad.h"

short LoadClearedStaffSpec(short staff, EDTStaffSpec2014* spec) {
  *spec = EDTStaffSpec2014{};
  return SXUtilGetStaffSpec(staff, spec);
}

bool SXUtilGetKeySig(short measure, short* keySig) {
  EDTMeasureSpec2014 spec{};
  if (!SXUtilGetMeasureSpec(measure, &spec))
    return false;
  *keySig = spec.keySig;
  return true;
}

bool SXUtilGetTimeSig(short measure, tTimeSig* timeSig) {
  EDTMeasureSpec2014 spec{};
  if (!SXUtilGetMeasureSpec(measure, &spec))
    return false;
  timeSig->beats = spec.timeSigBeats;
  timeSig->beatValue = spec.timeSigBeatValue;
  return true;
}

bool SXUtilGetStaffTrans(short staff, short* staffTrans) {
  EDTStaffSpec2014 spec;
  if (!LoadClearedStaffSpec(staff, &spec))
    return false;
  *staffTrans = spec.staffTrans;
  return true;
}
