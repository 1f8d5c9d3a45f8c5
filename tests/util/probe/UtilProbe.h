// The utilities' probe plug-in: a bundle built like a plug-in (the SDK, the utilities and
// `main`) whose table hands the engine tests the utilities to call from inside it. Plain
// functions over plain types only, so that the host-side test shares nothing but this header
// and record layouts with the plug-in side.
#pragma once

#include <cstdint>

#include "EREGION.h"
#include "NotationTypes.h"

struct UtilProbeTable {
  bool (*getKeySig)(short measure, short* keySig);
  bool (*getTimeSig)(short measure, tTimeSig* timeSig);
  bool (*getStaffTrans)(short staff, short* staffTrans);
  short (*putKeySig)(short measure, short keySig); // through SXUtilPutMeasureSpec
  long (*getStaffName)(short staff, short which, unsigned short* name, int nameSize);
  bool (*isEmptyMeasure)(short source, short staff, short measure);
  short (*countSlots)(short set);
  short (*setPitchFormatting)(short mode);
  void (*formatPitch)(tDiaPitch pitch, char* out, short outSize);
  short (*getRegions)(EREGION* first, EREGION* second);
  short (*calcJobSize)(EREGION* region, short flags);
  // One progress job at a time, kept in the probe; the clock is the test's.
  void (*setClock)(int64_t (*nowNs)());
  void (*progressStart)(unsigned short total);
  bool (*progressUpdate)(unsigned short done);
  void (*progressEnd)(short status);
  bool (*cancelRequested)();
  bool (*keyIsDown)(char keyCode);
};

using UtilProbeTableFn = const UtilProbeTable* (*)();
