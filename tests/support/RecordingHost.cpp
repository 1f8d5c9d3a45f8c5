// The recording host (see RecordingHost.h): every row of the host-function tables exported with
// raw 64-bit arguments, generated from the tables, plus the record store behind SX_LoadEData and
// SX_SaveEData.
#include "RecordingHost.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "HostBinding.h"
#include "HostTypes.h"
#include "RecordTags.h"

#define RECORDING_HOST_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

struct Call {
  std::vector<uint64_t> raw; // the last call's arguments, doubles by their bit patterns
  long count = 0;
};
using RecordKey = std::tuple<uint32_t, uint16_t, uint16_t>;
struct StoredRecord {
  std::vector<uint8_t> bytes;
  uint32_t reportedSize;
};

struct State {
  std::map<std::string, Call> calls;
  std::map<std::string, uint64_t> answers;
  std::map<RecordKey, StoredRecord> records;
  std::vector<RecordedEDataCall> log;
};
State& S() {
  static State state;
  return state;
}

uint64_t AnswerOr(const char* function, uint64_t otherwise) {
  auto it = S().answers.find(function);
  return it == S().answers.end() ? otherwise : it->second;
}

// Logs a record call and gives the key of the record it names.
RecordKey LogRecordCall(bool save, const uint64_t* raw, uint32_t size, const void* buffer) {
  RecordedEDataCall call{save, static_cast<uint32_t>(raw[0]), {},
                         size, static_cast<uint32_t>(raw[4]), {}};
  const auto* keys = reinterpret_cast<const uint16_t*>(raw[1]);
  const int words = SameTagFamily(call.tag, FourCharTag("pfTP")) ? 1
                    : call.tag == FourCharTag("SDNG")            ? 3
                                                                 : 2;
  for (int i = 0; keys && i < words; ++i)
    call.keys[i] = keys[i];
  if (buffer)
    std::memcpy(call.arrived, buffer, std::min<size_t>(size, sizeof call.arrived));
  S().log.push_back(call);
  return {call.tag, call.keys[0], call.keys[1]};
}

uint64_t LoadEData(const uint64_t* raw) {
  auto* buffer = reinterpret_cast<uint8_t*>(raw[2]);
  auto* size = reinterpret_cast<uint32_t*>(raw[3]);
  auto found = S().records.find(LogRecordCall(false, raw, size ? *size : 0, buffer));
  if (found == S().records.end() || !size)
    return AnswerOr("SX_LoadEData", 0);
  const std::vector<uint8_t>& bytes = found->second.bytes;
  if (buffer && *size < bytes.size())
    return 0;
  if (buffer)
    std::copy(bytes.begin(), bytes.end(), buffer);
  *size = found->second.reportedSize;
  return AnswerOr("SX_LoadEData", 1);
}

uint64_t SaveEData(const uint64_t* raw) {
  const auto* buffer = reinterpret_cast<const uint8_t*>(raw[2]);
  const auto size = static_cast<uint32_t>(raw[3]);
  const RecordKey key = LogRecordCall(true, raw, size, buffer);
  if (buffer)
    S().records[key] = {std::vector<uint8_t>(buffer, buffer + size), size};
  return AnswerOr("SX_SaveEData", 1);
}

template <class T> struct RawOf { using type = uint64_t; };
template <> struct RawOf<double> { using type = double; };
template <class R> struct RawResultOf { using type = uint64_t; };
template <> struct RawResultOf<void> { using type = void; };

template <class T> uint64_t Bits(T value) {
  uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof value);
  return bits;
}

template <class R, class... Raw>
typename RawResultOf<R>::type Record(const char* function, Raw... raw) {
  Call& call = S().calls[function];
  call.raw = {Bits(raw)...};
  ++call.count;
  if constexpr (!std::is_void_v<R>) {
    if (std::string_view(function) == "SX_LoadEData")
      return LoadEData(call.raw.data());
    if (std::string_view(function) == "SX_SaveEData")
      return SaveEData(call.raw.data());
    return AnswerOr(function, 0);
  }
}

} // namespace

#define RECORDING_HOST_RAW(T) typename RawOf<T>::type
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  RECORDING_HOST_EXPORT RawResultOf<R>::type NAME(SXP_DECLW(RECORDING_HOST_RAW, ARGS)) {           \
    return Record<R>(#NAME, SXP_NAMES(ARGS));                                                      \
  }
#include "hostcalls/HostCalls.def"

RECORDING_HOST_EXPORT void RecordingHostReset() {
  S() = State{};
}

RECORDING_HOST_EXPORT void RecordingHostSetAnswer(const char* function, uint64_t value) {
  S().answers[function] = value;
}

RECORDING_HOST_EXPORT long RecordingHostCallCount(const char* function) {
  auto it = S().calls.find(function);
  return it == S().calls.end() ? 0 : it->second.count;
}

RECORDING_HOST_EXPORT uint64_t RecordingHostArg(const char* function, int index) {
  auto it = S().calls.find(function);
  if (it == S().calls.end() || index < 0 || static_cast<size_t>(index) >= it->second.raw.size())
    return ~uint64_t{0};
  return it->second.raw[static_cast<size_t>(index)];
}

RECORDING_HOST_EXPORT void RecordingHostPutRecord(uint32_t tag, uint16_t key0, uint16_t key1,
                                                  const void* bytes, uint32_t size,
                                                  uint32_t reportedSize) {
  const auto* data = static_cast<const uint8_t*>(bytes);
  S().records[{tag, key0, key1}] = {std::vector<uint8_t>(data, data + size), reportedSize};
}

RECORDING_HOST_EXPORT int RecordingHostEDataCalls(RecordedEDataCall* out, int capacity) {
  const std::vector<RecordedEDataCall>& log = S().log;
  std::copy_n(log.begin(), std::min<size_t>(static_cast<size_t>(std::max(capacity, 0)), log.size()),
              out);
  return static_cast<int>(log.size());
}
