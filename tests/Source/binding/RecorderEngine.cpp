// A host engine for binding tests: exports every host function of the tables under its C name
// and records exactly what reached it. Integer arguments are received as full 64-bit
// registers (stack slots past the sixth), doubles as doubles, so a wrong width shows. Each
// function answers with a value the test sets (default 0), returned as a full 64-bit register.
#include "HostBinding.h"
#include "HostTypes.h"

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

struct Call {
  std::vector<uint64_t> raw; // every argument, doubles by their bit pattern
  long count = 0;
};

std::map<std::string, Call>& Calls() {
  static std::map<std::string, Call> calls;
  return calls;
}
std::map<std::string, uint64_t>& Answers() {
  static std::map<std::string, uint64_t> answers;
  return answers;
}

template <class T> struct RawOf { using type = uint64_t; };
template <> struct RawOf<double> { using type = double; };

template <class T> uint64_t Bits(T value) {
  uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof value);
  return bits;
}

template <class R> struct RawResultOf { using type = uint64_t; };
template <> struct RawResultOf<void> { using type = void; };

template <class R, class... Raw>
typename RawResultOf<R>::type Record(const char* name, Raw... raw) {
  Call& call = Calls()[name];
  call.raw = {Bits(raw)...};
  ++call.count;
  if constexpr (!std::is_void_v<R>)
    return Answers()[name];
}

} // namespace

#define RECORDER_RAW(T) typename RawOf<T>::type
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  extern "C" __attribute__((visibility("default"))) RawResultOf<R>::type NAME(                     \
      SXP_DECLW(RECORDER_RAW, ARGS)) {                                                             \
    return Record<R>(#NAME, SXP_NAMES(ARGS));                                                      \
  }
#include "hostcalls/HostCalls.def"

// Control functions for the tests, found with dlsym.
extern "C" __attribute__((visibility("default"))) void RecorderReset() {
  Calls().clear();
  Answers().clear();
}
extern "C" __attribute__((visibility("default"))) void RecorderSetAnswer(const char* name,
                                                                         uint64_t value) {
  Answers()[name] = value;
}
extern "C" __attribute__((visibility("default"))) long RecorderCallCount(const char* name) {
  auto it = Calls().find(name);
  return it == Calls().end() ? 0 : it->second.count;
}
// Argument `index` (0-based) of the last call, or ~0 when there was none.
extern "C" __attribute__((visibility("default"))) uint64_t RecorderArg(const char* name,
                                                                       int index) {
  auto it = Calls().find(name);
  if (it == Calls().end() || index < 0 || static_cast<size_t>(index) >= it->second.raw.size())
    return ~uint64_t{0};
  return it->second.raw[static_cast<size_t>(index)];
}
