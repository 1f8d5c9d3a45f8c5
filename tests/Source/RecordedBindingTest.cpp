// The binding layer against the recording host: what exactly reaches the host and comes back
// for every wrapper, and host answers the reference engine never gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

#include "RecordTags.h"
#include "RecordingHost.h"
#include "SDKCounters.h"
#include "WrapperCalls.h"
#include "scribopdk.h"

namespace {

using namespace wrappercalls;
constexpr uint32_t kStamp = kScriboHostVersion;

// The 64-bit register the host reads for a value of type T. A value narrower than 32 bits is
// widened by its own signedness; of a 32-bit value only the low half is defined.
template <class T> uint64_t OnTheWire(T value) {
  if constexpr (std::is_pointer_v<T>)
    return reinterpret_cast<uintptr_t>(value);
  else if constexpr (std::is_floating_point_v<T> || sizeof(T) == 8)
    return std::bit_cast<uint64_t>(value);
  else
    return static_cast<uint32_t>(static_cast<int32_t>(value));
}
template <class T> uint64_t Defined(uint64_t raw) {
  return std::is_integral_v<T> && sizeof(T) < 8 ? static_cast<uint32_t>(raw) : raw;
}

template <class T> void CheckArgument(recordinghost::Host& host, const char* name, size_t i) {
  EXPECT_EQ(Defined<T>(host.Arg(name, static_cast<int>(i))), OnTheWire(Pattern<T>(i)))
      << name << " argument " << i;
}

// Calls the wrapper twice and checks each argument as the host saw it, the result cut to its
// declared width, and that the name was looked up once.
template <class R, class... A, size_t... I>
void CheckWire(const char* name, R (*wrapper)(A...), std::index_sequence<I...>) {
  constexpr uint64_t kAnswer = 0xA5A5'A5A5'8080'8081; // bits above every result width set
  recordinghost::Host& host = recordinghost::Fresh();
  host.SetAnswer(name, kAnswer);
  const long lookups = __CFBundleFunctionLookupCount();
  int64_t expected = 0;
  if constexpr (std::is_pointer_v<R>)
    expected = static_cast<int64_t>(kAnswer);
  else if constexpr (!std::is_void_v<R>)
    expected = Widened(static_cast<R>(kAnswer));
  for (int round = 0; round < 2; ++round)
    EXPECT_EQ(CallWithPattern(wrapper), expected) << name;
  EXPECT_EQ(__CFBundleFunctionLookupCount(), lookups + 1) << name;
  EXPECT_EQ(host.CallCount(name), 2) << name;
  (CheckArgument<A>(host, name, I), ...);
}
template <class R, class... A> void CheckWire(const char* name, R (*wrapper)(A...)) {
  CheckWire(name, wrapper, std::index_sequence_for<A...>{});
}

// Runs first: the host is bound before any wrapper's first call. SX_LoadEData and SX_SaveEData,
// whose arguments are all 32-bit values and pointers, work on the record store instead.
TEST(RecordedBinding, EveryWrapperPassesEachArgumentAtItsWidthAndCutsItsResult) {
  int context = 0;
  ASSERT_EQ(ScriboPluginMain(1, &context), 1);
  ScriboEditDepth = 1000; // open edits, so that ends and cancels reach the host
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  if (std::strcmp(#NAME, "SX_LoadEData") && std::strcmp(#NAME, "SX_SaveEData"))                    \
    CheckWire(#NAME, &NAME);
#include "hostcalls/HostCalls.def"
  ScriboEditDepth = 0;
}

TEST(RecordedBinding, DialogHandlerHandlesWarnAHostThatIsNotMachO) {
  recordinghost::Host& host = recordinghost::Fresh(); // SX_IsMachO answers 0
  SF_DialogHandlerProcPtr handler = [](OpaqueCocoaWindow*, unsigned, long, long, void*) {
    return static_cast<unsigned char>(0);
  };
  EXPECT_EQ(NewSF_DialogHandlerProc(handler), handler);
  DisposeSF_DialogHandlerProc(handler);
  ASSERT_EQ(host.CallCount("SX_AlertMessage"), 2);
  EXPECT_EQ(host.Arg("SX_AlertMessage", 0), 0u);
  EXPECT_EQ(host.Arg32("SX_AlertMessage", 1), 48u);
  EXPECT_EQ(host.Arg32("SX_AlertMessage", 2), 0u);
  EXPECT_STREQ(reinterpret_cast<const char*>(host.Arg("SX_AlertMessage", 3)),
               "Should not get here!");
  EXPECT_EQ(host.Arg32("SX_AlertMessage", 4), kStamp);
}

// The fret-instrument record is cleared before the host fills it; a host that fills part of it
// and reports failure has still loaded it, and a successful load is asked once more.
TEST(RecordedBinding, FretInstrumentLoadCountsWhatTheHostWrote) {
  const struct {
    uint32_t stored; // bytes of the host's record, 0: none
    uint64_t answer; // the host's result
    short result;    // the wrapper's
    size_t hostCalls;
  } kCases[] = {{kFretInstrumentRecordSize, 1, 1, 2}, {10, 0, 1, 1}, {0, 0, 0, 1}};
  std::vector<unsigned char> stored(kFretInstrumentRecordSize);
  std::iota(stored.begin(), stored.end(), 1);
  unsigned short keys[] = {3, 0};
  std::vector<unsigned char> buffer(kFretInstrumentRecordSize + 1);
  uint32_t size = 0;
  for (const auto& c : kCases) {
    size = kFretInstrumentRecordSize;
    recordinghost::Host& host = recordinghost::Fresh();
    if (c.stored)
      host.PutRecord(kFretInstrumentTag, 3, 0, stored.data(), c.stored, c.stored);
    host.SetAnswer("SX_LoadEData", c.answer);
    std::fill(buffer.begin(), buffer.end(), 0xCC);
    EXPECT_EQ(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kStamp), c.result);
    EXPECT_EQ(host.RecordCalls().size(), c.hostCalls) << c.stored;
    EXPECT_EQ(host.RecordCalls()[0].arrived[100], 0) << "the buffer reached the host cleared";
    EXPECT_TRUE(std::equal(stored.begin(), stored.begin() + c.stored, buffer.begin()));
    EXPECT_EQ(std::count(buffer.begin() + c.stored, buffer.end() - 1, 0),
              kFretInstrumentRecordSize - c.stored);
    EXPECT_EQ(buffer.back(), 0xCC);
  }

  size = kFretInstrumentRecordSize - 1;
  EXPECT_DEATH(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kStamp),
               "Assertion failed: \\(\\*size >= sizeof\\(EDTFretInstrument25_3\\)\\), function "
               "SX_LoadEData, file Source/scribopdk, line 1442\\.");
}

} // namespace
