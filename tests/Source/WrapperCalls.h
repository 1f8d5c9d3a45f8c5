// Calling any SX_ wrapper with a pattern of arguments, for the tests that sweep every row of the
// host-function tables: argument `i` of type T is 16-bit with the top bit set (so that sign and
// zero extension differ), 32-bit with bit 31 set, or a pointer (into a zeroed area: some
// wrappers read through them) or double distinct per position.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace wrappercalls {

alignas(16) inline unsigned char gScratch[64 * 21];

template <class T> T Pattern(size_t i) {
  if constexpr (std::is_pointer_v<T>)
    return reinterpret_cast<T>(gScratch + 64 * i);
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(i) + 0.25;
  else
    return static_cast<T>(0x8000'4000'8080'8080ull + i);
}

// A result (or a value of the result's type) widened to 64 bits by its own signedness.
template <class R> int64_t Widened(R value) {
  if constexpr (std::is_pointer_v<R>)
    return static_cast<int64_t>(reinterpret_cast<uintptr_t>(value));
  else
    return static_cast<int64_t>(value);
}

// Calls the wrapper with the pattern; its result widened, 0 for none.
template <class R, class... A, size_t... I>
int64_t CallWithPattern(R (*wrapper)(A...), std::index_sequence<I...>) {
  std::memset(gScratch, 0, sizeof gScratch);
  if constexpr (std::is_void_v<R>) {
    wrapper(Pattern<A>(I)...);
    return 0;
  } else {
    return Widened(wrapper(Pattern<A>(I)...));
  }
}
template <class R, class... A> int64_t CallWithPattern(R (*wrapper)(A...)) {
  return CallWithPattern(wrapper, std::index_sequence_for<A...>{});
}

} // namespace wrappercalls
