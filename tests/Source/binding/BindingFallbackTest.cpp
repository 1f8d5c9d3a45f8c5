// The binding layer in a process without an engine bundle: it binds to the main program, finds
// what that exports, and every other wrapper gives its fixed fallback.
#include "MainProgramHost.h"
#include "SDKCounters.h"
#include "WrapperTable.h"
#include "scribopdk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

namespace {
constexpr uint32_t kStamp = kScriboHostVersion;

unsigned char DummyHandler(OpaqueCocoaWindow*, unsigned int, long, long, void*) {
  return 0;
}
} // namespace

TEST(MainProgramBinding, BindsToTheMainProgramAndFindsItsExports) {
  ASSERT_EQ(InitializeGlobals(), 0);
  EXPECT_EQ(GetScriboBundleRef(), CFBundleGetMainBundle());
  EXPECT_EQ(SX_GetWindowCount(kStamp), 9);
}

TEST(MainProgramBinding, EveryMissingFunctionGivesItsFallbackAndIsLookedUpOnce) {
  ASSERT_EQ(InitializeGlobals(), 0);
  // Everything is 0, null or nothing, except these.
  const std::map<std::string, int64_t> special = {
      {"SX_GetMaxLayers", 4},      {"SX_FontNameToNum", -1},   {"SX_FontNameToNum_UTF16", -1},
      {"SX_GetCurrentPartID", -1}, {"SX_GetNextPartID", -1},   {"SX_GetPlaybackSystem", -1},
      {"SX_CountParts", -1},       {"SX_ProcessMidiData", -1}, {"SX_ProcessMidiDataNoSplit", -1},
      {"SX_GetTextEncoding", -2}, /* the main program has these two: */
      {"SX_GetWindowCount", 9},    {"SX_AlertMessage", 1},
  };
  const auto& rows = bindingtest::AllWrappers();
  EXPECT_GE(rows.size(), 160u);
  for (int round = 0; round < 2; ++round) {
    long lookups = __CFBundleFunctionLookupCount();
    for (const auto& row : rows) {
      std::string name = row.name;
      if (name == "SX_EndScriboEdit")
        ScriboEditDepth = 1; // with an edit open, the end reaches the (missing) host function
      int64_t result = row.callWithZeros();
      if (name == "SX_GetPartName")
        EXPECT_STREQ(reinterpret_cast<const char*>(result), " ");
      else if (auto it = special.find(name); it != special.end())
        EXPECT_EQ(result, it->second) << name;
      else
        EXPECT_EQ(result, 0) << name;
    }
    if (round == 1)
      EXPECT_EQ(__CFBundleFunctionLookupCount(), lookups) << "a failed lookup must not be repeated";
  }
  // The blank part name is one constant text.
  EXPECT_EQ(SX_GetPartName(1, kStamp), SX_GetPartName(-1, kStamp));
}

TEST(MainProgramBinding, MissingFunctionsLeaveBuffersAloneExceptTextMetrics) {
  ASSERT_EQ(InitializeGlobals(), 0);
  char text[16];
  std::memset(text, 'x', sizeof text);
  SX_GetDlgString(nullptr, 3, text, sizeof text, kStamp);
  EXPECT_EQ(std::string(text, sizeof text), std::string(sizeof text, 'x'));
  double value = 2.5;
  SX_GetDlgItemUser(nullptr, 3, 0, &value, kStamp);
  EXPECT_EQ(value, 2.5);
  EREGION first{}, second{};
  first.startMeasure = 12;
  EXPECT_EQ(SX_GetCurERegions(nullptr, &first, &second, kStamp), 0);
  EXPECT_EQ(first.startMeasure, 12);

  unsigned char metrics[88];
  std::memset(metrics, 0xAB, sizeof metrics);
  SX_GetTextMetrics_UTF16(nullptr, nullptr, 0, metrics, kStamp, 12.0);
  for (int i = 0; i < 80; ++i)
    ASSERT_EQ(metrics[i], 0) << "byte " << i;
  EXPECT_EQ(metrics[80], 0xAB) << "only the 80-byte record is cleared";
}

TEST(MainProgramBinding, DialogHandlerHandlesWarnOutsideAMachOHost) {
  ASSERT_EQ(InitializeGlobals(), 0);
  int before = MainHostAlertCount();
  EXPECT_EQ(NewSF_DialogHandlerProc(DummyHandler), &DummyHandler);
  ASSERT_EQ(MainHostAlertCount(), before + 1);
  const MainHostAlert& alert = LastMainHostAlert();
  EXPECT_EQ(alert.owner, nullptr);
  EXPECT_EQ(alert.kind, 48u);
  EXPECT_EQ(alert.id, 0);
  EXPECT_EQ(alert.text, "Should not get here!");
  EXPECT_EQ(alert.version, kStamp);
  DisposeSF_DialogHandlerProc(DummyHandler);
  EXPECT_EQ(MainHostAlertCount(), before + 2);
}
