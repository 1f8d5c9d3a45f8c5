// A host engine for the record tests: keeps records in memory, logs every call and keeps the
// entries of each frame it is handed. Exports the host functions with their wire signatures (16-bit
// arguments arrive widened to 32 bits, 16-bit results leave as int) and the control functions of
// TestHostControl.h.
#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "TestHostControl.h"

#define HOST_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

using RecordKey = std::tuple<uint32_t, uint16_t, uint16_t>;

struct HostState {
  std::map<RecordKey, std::vector<unsigned char>> records;
  std::map<uint32_t, uint32_t> failingLoads; // tag -> bytes scribbled before failing
  std::vector<TestHostCall> log;
  std::map<std::string, std::vector<EXENTRY>> seenEntries;
};

HostState& State() {
  static HostState state;
  return state;
}

bool IsOtherTag(uint32_t tag) {
  return (tag >> 16) == 0x6F74;
}

RecordKey KeyOf(uint32_t tag, uint16_t key0, uint16_t key1) {
  return {tag, key0, IsOtherTag(tag) ? key1 : uint16_t{0}};
}

// Only "ot" tags have a second key; other key lists may hold just one.
RecordKey KeyOf(uint32_t tag, const unsigned short* keys) {
  if (!keys)
    return {tag, 0xFFFF, 0};
  return KeyOf(tag, keys[0], IsOtherTag(tag) ? keys[1] : uint16_t{0});
}

void Log(const char* function, uint32_t tag = 0, const unsigned short* keys = nullptr,
         uint32_t size = 0, uint32_t version = 0) {
  TestHostCall call{};
  std::strncpy(call.function, function, sizeof call.function - 1);
  std::tie(call.tag, call.key0, call.key1) = KeyOf(tag, keys);
  call.size = size;
  call.version = version;
  State().log.push_back(call);
}

// Frame calls hand their result on unchanged: what counts is what the host saw.
int SeeEntries(const char* function, const EXTGF2005a* frame) {
  Log(function);
  State().seenEntries[function].assign(frame->entries, frame->entries + frame->entryCount);
  return 1;
}

} // namespace

// Control functions.

HOST_EXPORT void TestHost_Reset() {
  State() = HostState{};
}

HOST_EXPORT void TestHost_PutRecord(uint32_t tag, uint16_t key0, uint16_t key1, const void* data,
                                    uint32_t size) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  State().records[KeyOf(tag, key0, key1)].assign(bytes, bytes + size);
}

HOST_EXPORT int TestHost_GetRecord(uint32_t tag, uint16_t key0, uint16_t key1, void* out,
                                   uint32_t capacity) {
  auto found = State().records.find(KeyOf(tag, key0, key1));
  if (found == State().records.end())
    return -1;
  std::memcpy(out, found->second.data(), std::min<size_t>(capacity, found->second.size()));
  return static_cast<int>(found->second.size());
}

HOST_EXPORT void TestHost_FailLoads(uint32_t tag, uint32_t scribbleBytes) {
  State().failingLoads[tag] = scribbleBytes;
}

HOST_EXPORT int TestHost_Log(TestHostCall* out, int capacity) {
  const std::vector<TestHostCall>& log = State().log;
  std::copy_n(log.begin(), std::min<size_t>(std::max(capacity, 0), log.size()), out);
  return static_cast<int>(log.size());
}

HOST_EXPORT int TestHost_SeenEntries(const char* function, EXENTRY* out, int capacity) {
  const std::vector<EXENTRY>& seen = State().seenEntries[function];
  std::copy_n(seen.begin(), std::min<size_t>(std::max(capacity, 0), seen.size()), out);
  return static_cast<int>(seen.size());
}

// Records.

HOST_EXPORT int SX_LoadEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size,
                             uint32_t version) {
  Log("SX_LoadEData", tag, keys, size ? *size : 0, version);
  if (!size)
    return 0;
  auto failing = State().failingLoads.find(tag);
  if (failing != State().failingLoads.end()) {
    if (buffer)
      std::memset(buffer, 0xAB, std::min(failing->second, *size));
    return 0;
  }
  auto found = State().records.find(KeyOf(tag, keys));
  if (found == State().records.end())
    return 0;
  const uint32_t recordSize = static_cast<uint32_t>(found->second.size());
  if (buffer) {
    if (*size < recordSize)
      return 0;
    std::memcpy(buffer, found->second.data(), recordSize);
  }
  *size = recordSize;
  return 1;
}

HOST_EXPORT int SX_SaveEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t size,
                             uint32_t version) {
  Log("SX_SaveEData", tag, keys, size, version);
  auto found = State().records.find(KeyOf(tag, keys));
  if (found == State().records.end() || !buffer)
    return 0;
  const auto* bytes = static_cast<const unsigned char*>(buffer);
  found->second.assign(bytes, bytes + size);
  return 1;
}

// Frames. Measure 0 is one the host refuses to load.

HOST_EXPORT EXTGF2005a* SX_LoadTGF(uint32_t, int, int measure, int, int, uint32_t) {
  Log("SX_LoadTGF");
  return measure != 0 ? new EXTGF2005a{} : nullptr;
}

HOST_EXPORT int SX_FreeTGF(EXTGF2005a* frame, uint32_t) {
  Log("SX_FreeTGF");
  if (!frame)
    return 0;
  delete frame;
  return 1;
}

HOST_EXPORT int SX_InsertEXENTRY(EXTGF2005a* frame, int, int, uint32_t) {
  return SeeEntries("SX_InsertEXENTRY", frame);
}

HOST_EXPORT int SX_DeleteEXENTRY(EXTGF2005a* frame, int, int, uint32_t) {
  return SeeEntries("SX_DeleteEXENTRY", frame);
}

HOST_EXPORT int SX_SaveTGF(EXTGF2005a* frame, uint32_t) {
  return SeeEntries("SX_SaveTGF", frame);
}

HOST_EXPORT void SX_ReduceEntries(EXTGF2005a* frame, uint32_t) {
  SeeEntries("SX_ReduceEntries", frame);
}

// Edits and mass edits.

HOST_EXPORT intptr_t SX_StartScriboEdit(const char*, uint32_t) {
  Log("SX_StartScriboEdit");
  return 0x5EED;
}

HOST_EXPORT intptr_t SX_StartScriboEdit_UTF16(const unsigned short*, uint32_t) {
  Log("SX_StartScriboEdit_UTF16");
  return 0x5EEE;
}

// Not the wrappers' fallback or "nothing open" answer, so a test sees who answered.
HOST_EXPORT int SX_EndScriboEdit(uint32_t) {
  Log("SX_EndScriboEdit");
  return 7;
}

HOST_EXPORT void SX_CancelScriboEdit(uint32_t) {
  Log("SX_CancelScriboEdit");
}

HOST_EXPORT void* SX_StartMassEdit(void*, uint32_t, uint32_t) {
  static int sMassEdit;
  Log("SX_StartMassEdit");
  return &sMassEdit;
}

HOST_EXPORT void SX_EndMassEdit(void*, int, uint32_t) {
  Log("SX_EndMassEdit");
}
