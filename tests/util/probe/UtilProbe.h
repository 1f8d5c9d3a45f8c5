// The utilities' probe plug-in: a bundle built like a plug-in (the SDK, the utilities and
// `main`) whose table hands the engine tests the utilities to call from inside it. Plain
// functions over plain types only, so that the host-side test shares nothing but this header
// and record layouts with the plug-in side.
#pragma once

#include <cstdint>

#include "EREGION.h"
#include "NotationTypes.h"

struct UtilProbeTable {
  int (*getKeySig)(short measure, short* keySig);
  int (*getTimeSig)(short measure, tTimeSig* timeSig);
  int (*getStaffTrans)(short staff, short* staffTrans);
  int (*putKeySig)(short measure, short keySig); // through SXUtilPutMeasureSpec
  long (*getStaffName)(short staff, uint16_t* name, int nameSize);
  int (*isEmptyMeasure)(short source, short staff, short measure);
  short (*countSlots)(short set);
  short (*setPitchFormatting)(short mode);
  void (*formatPitch)(tDiaPitch pitch, char* out, short outSize);
  void (*absToStaff)(tDiaPitch* pitch, short staffTrans, short keySig);
  short (*getRegions)(EREGION* first, EREGION* second);
  short (*calcJobSize)(EREGION* region, short flags);
  // One progress job at a time, kept in the probe; the clock is the test's.
  void (*setClock)(int64_t (*nowNs)());
  void (*progressStart)(unsigned short total);
  int (*progressUpdate)(unsigned short done);
  void (*progressEnd)(short status);
  int (*cancelRequested)();
  const int32_t* loadedFrames; // the SDK's LoadedTGFCounter
};

using UtilProbeTableFn = const UtilProbeTable* (*)();
