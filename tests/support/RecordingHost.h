// The recording host: a host engine generated from the host-function tables and built as
// RecordingHost.bundle with the engine's identifier, so that the SDK binds to it as it binds
// to the reference engine. It is for what the reference engine cannot show: the exact bits
// that reach the host, host answers the engine never gives, and the order of record requests.
//
// Every row of the tables is exported under its C name. A call records its arguments as the
// host receives them, integers as full 64-bit registers (a wrong width shows in the bits
// above the declared ones) and doubles by their bit patterns, and answers with the value the
// test set for that function (0 by default), returned as a full 64-bit register.
//
// SX_LoadEData and SX_SaveEData also work on a record store and log every call. A load finds
// the record by tag and keys, refuses a buffer smaller than the record, copies the record and
// reports its size; it returns 1 when the record exists and 0 otherwise, unless the test set
// an answer. A save stores the record (creating it) and returns 1, or the answer.
//
// The test loads the bundle before anything binds and reaches it through the C functions below,
// found by name: host and plug-in side share only this header's plain records.
#pragma once

#include <cstdint>
#include <vector>

#include "TestSupport.h"

// One SX_LoadEData or SX_SaveEData call as it reached the host.
struct RecordedEDataCall {
  bool save;
  uint32_t tag;
  uint16_t keys[3];     // the words of the tag's key list ("pf": 1, "SDNG": 3, else 2), then 0
  uint32_t size;        // a load's *size on entry (its capacity), a save's size
  uint32_t version;     // the stamp as it arrived
  uint8_t arrived[136]; // the buffer's first `size` bytes as they arrived, zeros beyond
};

extern "C" {
void RecordingHostReset(); // forgets every call, answer and record
void RecordingHostSetAnswer(const char* function, uint64_t value);
long RecordingHostCallCount(const char* function);
// Argument `index` (0-based) of the function's last call; ~0 when there was none.
uint64_t RecordingHostArg(const char* function, int index);
// A record under (tag, key0, key1) whose loads report `reportedSize` as its size.
void RecordingHostPutRecord(uint32_t tag, uint16_t key0, uint16_t key1, const void* bytes,
                            uint32_t size, uint32_t reportedSize);
// Copies up to `capacity` of the logged record calls, oldest first; their number.
int RecordingHostEDataCalls(RecordedEDataCall* out, int capacity);
}

namespace recordinghost {

// The test side: the bundle loaded once into the global scope, its control functions resolved.
struct Host {
#define RECORDING_HOST_FUNCTION(name)                                                              \
  decltype(&RecordingHost##name) name =                                                            \
      scribotest::Symbol<decltype(&RecordingHost##name)>(image, "RecordingHost" #name)
  void* image = scribotest::LoadBundle(
      scribotest::BuildDir() / "tests/support/RecordingHost.bundle", RTLD_NOW | RTLD_GLOBAL);
  RECORDING_HOST_FUNCTION(Reset);
  RECORDING_HOST_FUNCTION(SetAnswer);
  RECORDING_HOST_FUNCTION(CallCount);
  RECORDING_HOST_FUNCTION(Arg);
  RECORDING_HOST_FUNCTION(PutRecord);
  RECORDING_HOST_FUNCTION(EDataCalls);
#undef RECORDING_HOST_FUNCTION

  uint32_t Arg32(const char* function, int index) const {
    return static_cast<uint32_t>(Arg(function, index));
  }
  std::vector<RecordedEDataCall> RecordCalls() const {
    std::vector<RecordedEDataCall> calls(static_cast<size_t>(EDataCalls(nullptr, 0)));
    EDataCalls(calls.data(), static_cast<int>(calls.size()));
    return calls;
  }
};

// The host, reset to an empty state.
inline Host& Fresh() {
  static Host host;
  host.Reset();
  return host;
}

} // namespace recordinghost
