#include "SubdivisionPass.h"

#include <cstdint>
#include <cstring>
#include <limits>

#include "HostFunctions.h"
#include "UnevenSplitTuplet.h"

namespace {

// The one fixed, unlocalised text of the command, shown at most once per invocation when the
// selection holds voice-2 material (which is never changed).
const char kVoiceTwoWarningText[] =
    "The current selection contains some voice 2 entries.  These entries will not be changed.";

bool bVoiceTwoWarning = true;

// Target mode accepts a whole number of parts that misses the real duration by this much.
constexpr int64_t kTargetFitTolerance = 10;

// The loaded-frame option the command always asks for.
constexpr short kLoadOption = 1;

void WarnVoiceTwoOnce() {
  if (!bVoiceTwoWarning)
    return;
  SX_AlertMessage(nullptr, kAlertPlain, 0, kVoiceTwoWarningText, kScriboHostVersion);
  bVoiceTwoWarning = false;
}

// Fills slots index+1 .. index+parts-1 with copies of the already divided entry at `index`,
// each starting where the previous part ends.
void FillRunCopies(EXENTRY* entries, int index, int parts) {
  EXENTRY copy;
  std::memcpy(&copy, &entries[index], sizeof copy);
  copy.flags = copy.flags & kCopyKeepFlags;
  copy.flags2 = static_cast<uint16_t>(copy.flags2 & kCopyKeepFlags2);
  const int noteCount = copy.noteCount < 0                   ? 0
                        : copy.noteCount > kMaxNotesPerEntry ? kMaxNotesPerEntry
                                                             : copy.noteCount;
  for (int j = 0; j < noteCount; ++j)
    copy.notes[j].noteFlags = copy.notes[j].noteFlags & kCopyKeepNoteFlags;
  copy.entryNumber = 0; // the host numbers new entries when it stores them
  copy.hostWord6 = 0;

  const int32_t partDuration = copy.actualDuration;
  for (int k = 1; k < parts; ++k) {
    // Added as the host's 32-bit registers add: a corrupt position wraps instead of trapping.
    copy.position = static_cast<int32_t>(static_cast<uint32_t>(copy.position) +
                                         static_cast<uint32_t>(partDuration));
    std::memcpy(&entries[index + k], &copy, sizeof copy);
  }
}

// How many parts an entry of `actualDuration` TDU is split into under `param`, or 0 when it is
// not split (outside the duration range, or no whole number of target parts within 10 TDU).
int PartsForEntry(int32_t actualDuration, const tSubdivideParam& param) {
  if (actualDuration < param.minDuration || actualDuration > param.maxDuration)
    return 0;
  if (param.byDivisions != 0)
    return param.divisions >= 2 ? param.divisions : 0; // fewer than two parts splits nothing

  const int32_t target = param.targetDuration;
  if (target <= 0 || target == actualDuration)
    return 0;
  const int64_t parts = actualDuration / target;
  const int64_t covered = parts * target;
  if (parts < 2 || covered > int64_t{actualDuration} + kTargetFitTolerance ||
      covered < int64_t{actualDuration} - kTargetFitTolerance)
    return 0;
  return static_cast<int>(parts);
}

// Splits the qualifying notes of one loaded frame whose positions lie in
// [rangeStart, rangeEnd]; the scan stops at the first entry past rangeEnd. Entries created by a
// split are not examined again. Returns whether any entry was split (the frame needs saving).
bool SubdivideFrame(EXTGF2005a* frame, int32_t rangeStart, int32_t rangeEnd,
                    const tSubdivideParam& param) {
  bool changed = false;
  // `entries` and `entryCount` are read afresh at every step: an insertion may move the array.
  for (int i = 0; i < frame->entryCount;) {
    EXENTRY* entries = frame->entries;
    const uint32_t flags = entries[i].flags;

    // Voice-2 material is never touched, wherever it lies in the frame.
    if ((flags & kEntryVoiceTwo) != 0) {
      WarnVoiceTwoOnce();
      ++i;
      continue;
    }
    if (i < frame->entryCount - 1 && (flags & kEntryVoiceTwoLaunch) != 0 &&
        (entries[i + 1].flags & kEntryVoiceTwo) != 0) {
      WarnVoiceTwoOnce();
      ++i;
      continue;
    }

    const int32_t position = entries[i].position;
    if (position < rangeStart) {
      ++i;
      continue;
    }
    if (position > rangeEnd)
      break;
    if ((flags & kEntryIsNote) == 0) { // a rest
      ++i;
      continue;
    }

    const int parts = PartsForEntry(entries[i].actualDuration, param);
    // The host counts slots and indexes in 16 bits; a run that cannot be inserted is refused.
    constexpr int kMaxIndex = std::numeric_limits<int16_t>::max();
    if (parts < 2 || i + 1 > kMaxIndex || parts - 1 > kMaxIndex) {
      ++i;
      continue;
    }
    if (SX_InsertEXENTRY(frame, static_cast<short>(i + 1), static_cast<short>(parts - 1),
                         kScriboHostVersion) == 0) {
      ++i;
      continue;
    }

    entries = frame->entries;
    EXENTRY* entry = &entries[i];
    if (entry->duration % parts != 0)
      MakeUnevenSplitTuplet(entry, parts);
    entry->duration = static_cast<int16_t>(entry->duration / parts);
    entry->actualDuration = entry->actualDuration / parts;
    FillRunCopies(entries, i, parts);

    changed = true;
    i += parts;
  }
  return changed;
}

} // namespace

void ArmVoiceTwoWarning() {
  bVoiceTwoWarning = true;
}

short RunSubdivisionPass(EREGION* region, const tSubdivideParam& param, short layerCount) {
  const uint16_t frameSource = region->frameSource;
  const int firstStaff = region->startStaff;
  const int lastStaff = region->endStaff;
  const int firstMeasure = region->startMeasure;
  const int lastMeasure = region->endMeasure;
  const int32_t startPosition = region->startPosition;
  const int32_t endPosition = region->endPosition;
  if (firstMeasure > lastMeasure)
    return 0;

  bool saved = false;
  for (int measure = firstMeasure; measure <= lastMeasure; ++measure) {
    const int32_t rangeStart = measure == firstMeasure ? startPosition : 0;
    const int32_t rangeEnd =
        measure == lastMeasure ? endPosition : std::numeric_limits<int32_t>::max();
    for (int staff = firstStaff; staff <= lastStaff; ++staff) {
      for (int layer = 0; layer < layerCount; ++layer) {
        if (SX_GetShowLayer(static_cast<short>(layer), kScriboHostVersion) == 0)
          continue;
        EXTGF2005a* frame =
            SX_LoadTGF(frameSource, static_cast<short>(staff), static_cast<short>(measure),
                       static_cast<short>(layer), kLoadOption, kScriboHostVersion);
        if (!frame)
          continue;
        if (SubdivideFrame(frame, rangeStart, rangeEnd, param) &&
            SX_SaveTGF(frame, kScriboHostVersion) != 0)
          saved = true;
        SX_FreeTGF(frame, kScriboHostVersion);
      }
    }
  }

  if (!saved)
    return 0;
  SX_RebeamRegion(region, nullptr, kScriboHostVersion);
  return 1;
}
