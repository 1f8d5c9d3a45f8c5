// The binding layer in a host application without an engine bundle: the SDK, inside the probe
// plug-in, binds to the application itself, finds the one host function it exports and gives
// every other wrapper's fixed fallback, while its own logic around the calls still runs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "HostExports.h"
#include "ProbeBundle.h"
#include "WrapperCalls.h"
#include "probe/SdkProbe.h"

int32_t SX_GetWindowCount(uint32_t) {
  return 9;
}

namespace {

constexpr uint32_t kStamp = kScriboHostVersion;
constexpr long kWrappers = 0
#define SX_HOST(R, NAME, FALLBACK, ARGS) +1
#include "hostcalls/HostCalls.def"
    ;

const scribotest::ProbeBundle<SdkProbe>& Probe() {
  static const auto probe = [] {
    auto loaded = scribotest::LoadProbe<SdkProbe>(
        scribotest::BuildDir() / "tests/Source/SdkProbe.bundle", "SdkProbe_Table");
    int context = 0;
    if (loaded.main(1, &context) != 1)
      throw std::runtime_error("the probe did not bind to the application");
    return loaded;
  }();
  return probe;
}
const SdkProbe& Sdk() {
  return *Probe().table;
}

TEST(WithoutEngine, EveryMissingFunctionGivesItsFallbackAndIsLookedUpOnce) {
  const SdkProbe& sdk = Sdk();
  EXPECT_TRUE(sdk.boundToMainBundle());
  // Everything is 0, null or nothing, except these.
  const std::map<std::string, int64_t> special = {
      {"SX_GetMaxLayers", 4},      {"SX_FontNameToNum", -1},   {"SX_FontNameToNum_UTF16", -1},
      {"SX_GetCurrentPartID", -1}, {"SX_GetNextPartID", -1},   {"SX_GetPlaybackSystem", -1},
      {"SX_CountParts", -1},       {"SX_ProcessMidiData", -1}, {"SX_ProcessMidiDataNoSplit", -1},
      {"SX_GetTextEncoding", -2},  {"SX_GetWindowCount", 9}, // the application's own
  };
  int32_t& editDepth = Probe().Exported<int32_t>("ScriboEditDepth");
  for (int round = 0; round < 2; ++round) {
    const long lookups = sdk.lookups();
    editDepth = 1; // with an edit open, the end reaches the (missing) host function
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  {                                                                                                \
    const int64_t result = wrappercalls::CallWithPattern(sdk.NAME);                                \
    if (std::string(#NAME) == "SX_GetPartName") {                                                  \
      EXPECT_STREQ(reinterpret_cast<const char*>(result), " ");                                    \
    } else {                                                                                       \
      EXPECT_EQ(result, special.count(#NAME) ? special.at(#NAME) : 0) << #NAME;                    \
    }                                                                                              \
  }
#include "hostcalls/HostCalls.def"
    EXPECT_EQ(sdk.lookups(), lookups + (round == 0 ? kWrappers : 0)) << "each looked up once";
  }
  EXPECT_EQ(sdk.SX_GetPartName(1, kStamp), sdk.SX_GetPartName(-1, kStamp)) << "one constant text";
}

TEST(WithoutEngine, MissingTextMetricsClearTheCallersRecordOnly) {
  const SdkProbe& sdk = Sdk();
  unsigned char metrics[88];
  std::memset(metrics, 0xAB, sizeof metrics);
  sdk.SX_GetTextMetrics_UTF16(nullptr, nullptr, 0, metrics, kStamp, 12.0);
  EXPECT_EQ(std::count(metrics, metrics + 80, 0), 80);
  EXPECT_EQ(metrics[80], 0xAB);
  sdk.SX_GetTextMetrics_UTF16(nullptr, nullptr, 0, nullptr, kStamp, 12.0); // nothing to clear
}

TEST(WithoutEngine, CountersCleaningAndEditDepthDoNotNeedTheHost) {
  const SdkProbe& sdk = Sdk();
  int32_t& frames = Probe().Exported<int32_t>("LoadedTGFCounter");
  const int32_t before = frames;
  EXPECT_EQ(sdk.SX_LoadTGF(0, 1, 1, 0, 1, kStamp), nullptr);
  EXPECT_EQ(frames, before + 1);
  sdk.SX_FreeTGF(nullptr, kStamp);
  EXPECT_EQ(frames, before);

  // Each call that hands entries to the host cleans them first, also when the host lacks it.
  void (*const frameCalls[])(EXTGF2005a*) = {
      [](EXTGF2005a* f) { Sdk().SX_InsertEXENTRY(f, 1, 1, kStamp); },
      [](EXTGF2005a* f) { Sdk().SX_DeleteEXENTRY(f, 1, 1, kStamp); },
      [](EXTGF2005a* f) { Sdk().SX_SaveTGF(f, kStamp); },
      [](EXTGF2005a* f) { Sdk().SX_ReduceEntries(f, kStamp); },
  };
  for (auto call : frameCalls) {
    EXENTRY entries[2] = {};
    entries[0].noteCount = 2;
    entries[0].notes[0].noteID = entries[0].notes[1].noteID = 4;
    EXTGF2005a frame{};
    frame.entries = entries;
    frame.entryCount = 2;
    call(&frame);
    EXPECT_EQ(int{entries[0].notes[0].noteID}, 5);
    EXPECT_EQ(uint32_t{entries[1].notes[0].noteFlags}, kNoteRestPlaceholder);
  }

  int32_t& editDepth = Probe().Exported<int32_t>("ScriboEditDepth");
  editDepth = 0;
  EXPECT_EQ(sdk.SX_StartScriboEdit("edit", kStamp), 0);
  EXPECT_EQ(editDepth, 1) << "a refused start still counts as open";
  EXPECT_EQ(sdk.SX_EndScriboEdit(kStamp), 0) << "the open edit went to the fallback";
  EXPECT_EQ(editDepth, 0);
}

} // namespace
