// The machinery behind every SX_ wrapper: one-time resolution of a host function by name,
// argument passing at exactly the declared width, and the fixed fallback when the host lacks
// the function.
//
// Widths on the wire: a `short` argument reaches the host sign-extended to 32 bits, an
// `unsigned short` or `unsigned char` zero-extended; every other argument (32-bit integers, the
// version stamp, 64-bit values, pointers, doubles) is passed as it is. A 16-bit host result is
// cut to its 16 bits and sign-extended (`short`) or zero-extended (`unsigned short`).
//
// Thread: the one-time resolution is guarded by the runtime's thread-safe static
// initialisation; everything else runs on the host's main thread.
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

namespace sx::binding {

// How a value of the wrapper's declared type travels to the host.
template <class T> struct WireOf { using type = T; };
template <> struct WireOf<short> { using type = int32_t; };
template <> struct WireOf<unsigned short> { using type = uint32_t; };
template <> struct WireOf<unsigned char> { using type = uint32_t; };
template <class T> using Wire = typename WireOf<T>::type;

// How a result of the wrapper's declared type comes back: 16-bit results are read as the raw
// 32-bit register and cut to 16 bits here, whatever the host left in the upper bits.
template <class T> struct ResultWireOf { using type = T; };
template <> struct ResultWireOf<short> { using type = uint32_t; };
template <> struct ResultWireOf<unsigned short> { using type = uint32_t; };
template <class T> using ResultWire = typename ResultWireOf<T>::type;

static_assert(sizeof(Wire<short>) == 4 && std::is_signed_v<Wire<short>>);
static_assert(sizeof(Wire<unsigned short>) == 4 && std::is_unsigned_v<Wire<unsigned short>>);
static_assert(sizeof(Wire<unsigned char>) == 4 && std::is_unsigned_v<Wire<unsigned char>>);

// Looks the name up in the host engine bundle (gScriboBundle): null when there is no bundle yet
// or the host does not export the name. Called once per wrapper.
void* LookUpHostFunction(const char* name);

template <class Sig> struct Binding;
template <class R, class... A> struct Binding<R(A...)> {
  using HostFn = ResultWire<R> (*)(Wire<A>...);

  static HostFn Resolve(const char* name) {
    return reinterpret_cast<HostFn>(LookUpHostFunction(name));
  }

  static R Invoke(HostFn fn, A... args) {
    if constexpr (std::is_void_v<R>) {
      fn(static_cast<Wire<A>>(args)...);
    } else {
      return static_cast<R>(fn(static_cast<Wire<A>>(args)...));
    }
  }
};

// The value a wrapper gives when the host lacks its function.
template <class R, class V> inline R Fallback(V value) {
  if constexpr (std::is_void_v<R>)
    return;
  else
    return static_cast<R>(value);
}
struct Nothing {};

// The constant one-blank text of SX_GetPartName's fallback.
extern const char kBlankText[2];

} // namespace sx::binding

// Parameter lists of the tables: SXP_DECL((short, int)) gives `short a1, int a2`, SXP_NAMES gives
// `a1, a2`, and SXP_DECLW(W, (short, int)) gives `W(short) a1, W(int) a2` for a type mapping W.
// Up to twenty arguments.
#define SXP_CAT_(a, b) a##b
#define SXP_CAT(a, b) SXP_CAT_(a, b)
#define SXP_EXPAND(...) __VA_ARGS__
#define SXP_COUNT_(_1, _2, _3, _4, _5, _6, _7, _8, _9, _10, _11, _12, _13, _14, _15, _16, _17,     \
                   _18, _19, _20, N, ...)                                                          \
  N
#define SXP_COUNT(...)                                                                             \
  SXP_COUNT_(__VA_ARGS__, 20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0)
#define SXP_SAME(t) t
#define SXP_DECLW_(W, ...) SXP_CAT(SXP_D, SXP_COUNT(__VA_ARGS__))(W, __VA_ARGS__)
#define SXP_DECLW(W, args) SXP_DECLW_(W, SXP_EXPAND args)
#define SXP_DECL(args) SXP_DECLW(SXP_SAME, args)
#define SXP_NAMES_(...) SXP_CAT(SXP_N, SXP_COUNT(__VA_ARGS__))
#define SXP_NAMES(args) SXP_NAMES_ args

#define SXP_D1(W, t1) W(t1) a1
#define SXP_D2(W, t1, t2) SXP_D1(W, t1), W(t2) a2
#define SXP_D3(W, t1, t2, t3) SXP_D2(W, t1, t2), W(t3) a3
#define SXP_D4(W, t1, t2, t3, t4) SXP_D3(W, t1, t2, t3), W(t4) a4
#define SXP_D5(W, t1, t2, t3, t4, t5) SXP_D4(W, t1, t2, t3, t4), W(t5) a5
#define SXP_D6(W, t1, t2, t3, t4, t5, t6) SXP_D5(W, t1, t2, t3, t4, t5), W(t6) a6
#define SXP_D7(W, t1, t2, t3, t4, t5, t6, t7) SXP_D6(W, t1, t2, t3, t4, t5, t6), W(t7) a7
#define SXP_D8(W, t1, t2, t3, t4, t5, t6, t7, t8) SXP_D7(W, t1, t2, t3, t4, t5, t6, t7), W(t8) a8
#define SXP_D9(W, t1, t2, t3, t4, t5, t6, t7, t8, t9)                                              \
  SXP_D8(W, t1, t2, t3, t4, t5, t6, t7, t8), W(t9) a9
#define SXP_D10(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10)                                        \
  SXP_D9(W, t1, t2, t3, t4, t5, t6, t7, t8, t9), W(t10) a10
#define SXP_D11(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11)                                   \
  SXP_D10(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10), W(t11) a11
#define SXP_D12(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12)                              \
  SXP_D11(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11), W(t12) a12
#define SXP_D13(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13)                         \
  SXP_D12(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12), W(t13) a13
#define SXP_D14(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14)                    \
  SXP_D13(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13), W(t14) a14
#define SXP_D15(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15)               \
  SXP_D14(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14), W(t15) a15
#define SXP_D16(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16)          \
  SXP_D15(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15), W(t16) a16
#define SXP_D17(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17)     \
  SXP_D16(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16), W(t17) a17
#define SXP_D18(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17,     \
                t18)                                                                               \
  SXP_D17(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17), W(t18) a18
#define SXP_D19(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17,     \
                t18, t19)                                                                          \
  SXP_D18(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17, t18),     \
      W(t19) a19
#define SXP_D20(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17,     \
                t18, t19, t20)                                                                     \
  SXP_D19(W, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10, t11, t12, t13, t14, t15, t16, t17, t18,      \
          t19),                                                                                    \
      W(t20) a20

#define SXP_N1 a1
#define SXP_N2 SXP_N1, a2
#define SXP_N3 SXP_N2, a3
#define SXP_N4 SXP_N3, a4
#define SXP_N5 SXP_N4, a5
#define SXP_N6 SXP_N5, a6
#define SXP_N7 SXP_N6, a7
#define SXP_N8 SXP_N7, a8
#define SXP_N9 SXP_N8, a9
#define SXP_N10 SXP_N9, a10
#define SXP_N11 SXP_N10, a11
#define SXP_N12 SXP_N11, a12
#define SXP_N13 SXP_N12, a13
#define SXP_N14 SXP_N13, a14
#define SXP_N15 SXP_N14, a15
#define SXP_N16 SXP_N15, a16
#define SXP_N17 SXP_N16, a17
#define SXP_N18 SXP_N17, a18
#define SXP_N19 SXP_N18, a19
#define SXP_N20 SXP_N19, a20
