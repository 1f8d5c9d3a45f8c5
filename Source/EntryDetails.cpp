// Entry-detail, preference and other records. SX_LoadEData and SX_SaveEData add the size-query
// protocol, the guarded fret-instrument load and the translation of older preference records
// into the host's other records; the other four record wrappers forward as they are.
#include <assert_rtn.h>

#include <cstring>

#include "HostFunctions.h"
#include "LegacyPrefMapping.h"
#include "MapPrefTag.h"
#include "RecordTags.h"

namespace {

// Whether `tag` can only be answered from a preference number, which a null key list lacks.
bool NeedsPreferenceNumber(uint32_t tag) {
  return FindPrefTagRule(tag) != nullptr;
}

// The fret-instrument record is cleared before the host fills it, and a host that fills part
// of it but reports failure still counts as having loaded it.
// Returns true when the load is decided here (result in `result`), false when it carries on.
bool LoadFretInstrument(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size,
                        uint32_t version, short& result) {
  if (!size || *size < kFretInstrumentRecordSize)
    __assert_rtn("SX_LoadEData", "Source/scribopdk", 1442,
                 "*size >= sizeof(EDTFretInstrument25_3)");
  std::memset(buffer, 0, kFretInstrumentRecordSize);
  if (sxhost::SX_LoadEData(tag, keys, buffer, size, version) != 0)
    return false; // loaded: the request goes to the host once more below
  const auto* bytes = static_cast<const unsigned char*>(buffer);
  result = 0;
  for (uint32_t i = 0; i < kFretInstrumentRecordSize; ++i)
    if (bytes[i] != 0) {
      result = 1;
      break;
    }
  return true;
}

// A preference record kept as `count` consecutive other records from index `first`.
short LoadOtherRecordArray(uint32_t otherTag, int16_t count, int16_t first, void* buffer,
                           uint32_t* size) {
  if (!size)
    return 0;
  const uint32_t bytes = static_cast<uint32_t>(count) * kOtherRecordSize;
  if (!buffer) {
    *size = bytes;
    return 1;
  }
  if (*size < bytes)
    return 0;
  auto* out = static_cast<unsigned char*>(buffer);
  for (int i = 0; i < count; ++i) {
    // Cleared for every record: one that the host cannot supply reads as zeros rather than as
    // a copy of its predecessor.
    unsigned char scratch[kOtherRecordSize] = {};
    unsigned short keys[2] = {kOtherRecordDocumentOwner, static_cast<unsigned short>(first + i)};
    uint32_t scratchSize = kOtherRecordSize;
    SX_LoadEData(otherTag, keys, scratch, &scratchSize, kScriboHostVersion);
    std::memcpy(out + kOtherRecordSize * i, scratch, kOtherRecordSize);
  }
  *size = bytes;
  return 1;
}

short SaveOtherRecordArray(uint32_t otherTag, int16_t count, int16_t first, const void* buffer,
                           uint32_t size) {
  if (!buffer)
    return 0;
  if (static_cast<uint32_t>(count) * kOtherRecordSize > size)
    return 0;
  const auto* in = static_cast<const unsigned char*>(buffer);
  for (int i = 0; i < count; ++i) {
    unsigned char scratch[kOtherRecordSize];
    std::memcpy(scratch, in + kOtherRecordSize * i, kOtherRecordSize);
    unsigned short keys[2] = {kOtherRecordDocumentOwner, static_cast<unsigned short>(first + i)};
    SX_SaveEData(otherTag, keys, scratch, kOtherRecordSize, kScriboHostVersion);
  }
  return 1;
}

// The run of other records that a preference tag stands for. False when the tag needs a
// preference number that is missing or refused; `run.otherTag` 0 when no mapping applies.
struct OtherRecordRun {
  uint32_t otherTag = 0;
  int16_t count = 0;
  int16_t first = 0;
};

bool FindOtherRecordRun(uint32_t tag, unsigned short* keys, OtherRecordRun& run) {
  if (!keys)
    return !NeedsPreferenceNumber(tag);
  return mapPrefTag(tag, static_cast<int16_t>(keys[0]), &run.otherTag, &run.count, &run.first);
}

} // namespace

short SX_LoadEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size,
                   uint32_t version) {
  if (tag == kFretInstrumentTag && buffer) {
    short result = 0;
    if (LoadFretInstrument(tag, keys, buffer, size, version, result))
      return result;
  }

  if (tPrefMapTable* table = FindPrefMapTable(tag, keys))
    return LoadPrefTable(*table, buffer, size);

  OtherRecordRun run;
  if (!FindOtherRecordRun(tag, keys, run))
    return 0;
  if (run.otherTag == 0)
    return sxhost::SX_LoadEData(tag, keys, buffer, size, version);
  return LoadOtherRecordArray(run.otherTag, run.count, run.first, buffer, size);
}

short SX_SaveEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t size,
                   uint32_t version) {
  // Callers built for hosts older than the other records speak to the host directly.
  if (version < kFirstTranslatedVersion)
    return sxhost::SX_SaveEData(tag, keys, buffer, size, version);

  if (tPrefMapTable* table = FindPrefMapTable(tag, keys))
    return SavePrefTable(*table, buffer, size);

  OtherRecordRun run;
  if (!FindOtherRecordRun(tag, keys, run))
    return 0;
  if (run.otherTag == 0)
    return sxhost::SX_SaveEData(tag, keys, buffer, size, version);
  return SaveOtherRecordArray(run.otherTag, run.count, run.first, buffer, size);
}
