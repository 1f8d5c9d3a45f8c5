// Every SX_ wrapper as data for table-driven tests: its name and a way to call it with zero
// for every number and a zeroed scratch buffer for every pointer.
#pragma once

#include "HostFunctions.h"

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace bindingtest {

inline unsigned char* Scratch() {
  alignas(8) static unsigned char scratch[512];
  std::memset(scratch, 0, sizeof scratch);
  return scratch;
}

template <class T> T ZeroArgument() {
  if constexpr (std::is_pointer_v<T>)
    return reinterpret_cast<T>(Scratch());
  else
    return T{};
}

// The result widened to 64 bits the way its type says: signed values sign-extended.
template <class R> int64_t Widen(R value) {
  if constexpr (std::is_pointer_v<R>)
    return static_cast<int64_t>(reinterpret_cast<uintptr_t>(value));
  else
    return static_cast<int64_t>(value);
}

template <class R, class... A> int64_t CallWithZeros(R (*wrapper)(A...)) {
  if constexpr (std::is_void_v<R>) {
    wrapper(ZeroArgument<A>()...);
    return 0;
  } else {
    return Widen(wrapper(ZeroArgument<A>()...));
  }
}

struct WrapperRow {
  const char* name;
  int64_t (*callWithZeros)();
  bool returnsValue;
};

inline const std::vector<WrapperRow>& AllWrappers() {
  static const std::vector<WrapperRow> rows = {
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  {#NAME, [] { return CallWithZeros(&NAME); }, !std::is_void_v<R>},
#include "hostcalls/HostCalls.def"
  };
  return rows;
}

} // namespace bindingtest
