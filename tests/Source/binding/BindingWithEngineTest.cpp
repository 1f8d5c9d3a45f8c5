// The binding layer against an engine that records every call: start-up, one lookup per
// wrapper, and exact argument and result widths.
#include "RecorderClient.h"
#include "scribopdk.h"

#include <bit>
#include <cstring>
#include <string>

using bindingtest::LoadRecorder;

namespace {
constexpr uint32_t kStamp = kScriboHostVersion;
OpaqueCocoaWindow* const kWindow = reinterpret_cast<OpaqueCocoaWindow*>(0x1000);

std::u16string Units(CFStringRef s) {
  std::u16string units(static_cast<size_t>(CFStringGetLength(s)), u'\0');
  CFStringGetCharacters(s, CFRangeMake(0, CFStringGetLength(s)),
                        reinterpret_cast<UniChar*>(units.data()));
  return units;
}
} // namespace

// Runs first (tests of a file run in the order they are written): the process has not bound
// anything yet.
TEST(BindingStartUp, MainFindsTheEngineAndEarlyLookupsStayFinal) {
  EXPECT_EQ(GetScriboBundleRef(), nullptr);
  // A wrapper called before the engine is bound gives its fallback...
  EXPECT_EQ(SX_GetMaxLayers(kStamp), 4);

  auto& recorder = LoadRecorder();
  recorder.setAnswer("SX_GetMaxLayers", 9);
  int context = 0;
  EXPECT_EQ(ScriboPluginMain(0, &context), 0);
  EXPECT_EQ(ScriboPluginMain(7, nullptr), 0);
  EXPECT_EQ(GetScriboBundleRef(), nullptr) << "a zero argument must not bind anything";

  EXPECT_EQ(ScriboPluginMain(7, &context), 1);
  ASSERT_NE(GetScriboBundleRef(), nullptr);
  EXPECT_EQ(Units(CFBundleGetIdentifier(GetScriboBundleRef())), u"org.scribo.NotationEngine");
  EXPECT_NE(GetScriboBundleRef(), CFBundleGetMainBundle());

  // ...and keeps giving it after the engine is bound: the failed lookup is final.
  EXPECT_EQ(SX_GetMaxLayers(kStamp), 4);
  EXPECT_EQ(recorder.callCount("SX_GetMaxLayers"), 0);

  // A second InitializeGlobals succeeds without looking anything up.
  long lookups = __CFBundleFunctionLookupCount();
  CFBundleRef bound = GetScriboBundleRef();
  EXPECT_EQ(InitializeGlobals(), 0);
  EXPECT_EQ(GetScriboBundleRef(), bound);
  EXPECT_EQ(__CFBundleFunctionLookupCount(), lookups);
}

TEST(Binding, EachWrapperLooksItsHostFunctionUpOnce) {
  auto& recorder = LoadRecorder();
  ASSERT_EQ(ScriboPluginMain(1, &recorder), 1);
  recorder.setAnswer("SX_GetShowLayer", 1);
  long before = __CFBundleFunctionLookupCount();
  EXPECT_EQ(SX_GetShowLayer(0, kStamp), 1);
  EXPECT_EQ(__CFBundleFunctionLookupCount(), before + 1);
  for (short layer = 1; layer < 4; ++layer)
    EXPECT_EQ(SX_GetShowLayer(layer, kStamp), 1);
  EXPECT_EQ(__CFBundleFunctionLookupCount(), before + 1);
  EXPECT_EQ(recorder.callCount("SX_GetShowLayer"), 4);
  EXPECT_EQ(recorder.Arg32("SX_GetShowLayer", 0), 3u);
}

TEST(WireWidths, SixteenBitArgumentsArriveSignOrZeroExtended) {
  auto& r = LoadRecorder();
  ASSERT_EQ(ScriboPluginMain(1, &r), 1);

  SX_SetDlgFocus(kWindow, -1, kStamp); // item: signed 16-bit
  EXPECT_EQ(r.arg("SX_SetDlgFocus", 0), reinterpret_cast<uint64_t>(kWindow));
  EXPECT_EQ(r.Arg32("SX_SetDlgFocus", 1), 0xFFFFFFFFu);

  SX_AlertMessage(nullptr, 0xFFFF, -1, nullptr, kStamp); // kind: unsigned 16-bit
  EXPECT_EQ(r.Arg32("SX_AlertMessage", 1), 65535u);
  EXPECT_EQ(r.Arg32("SX_AlertMessage", 2), 0xFFFFFFFFu);

  SX_RebuildMenuSystem(0xFFFF, kStamp);
  EXPECT_EQ(r.Arg32("SX_RebuildMenuSystem", 0), 65535u);

  SX_SetPlaybackSystem(-2, 0xFF, kStamp); // i16 then u8
  EXPECT_EQ(r.Arg32("SX_SetPlaybackSystem", 0), 0xFFFFFFFEu);
  EXPECT_EQ(r.Arg32("SX_SetPlaybackSystem", 1), 0xFFu);

  SX_CloseTesselDocument(-1, kStamp);
  EXPECT_EQ(r.Arg32("SX_CloseTesselDocument", 0), 0xFFFFFFFFu);

  SX_LoadTGF(0x8001, -3, 32767, -32768, 1, kStamp); // u16 source, then i16s
  EXPECT_EQ(r.Arg32("SX_LoadTGF", 0), 0x8001u);
  EXPECT_EQ(r.Arg32("SX_LoadTGF", 1), 0xFFFFFFFDu);
  EXPECT_EQ(r.Arg32("SX_LoadTGF", 2), 32767u);
  EXPECT_EQ(r.Arg32("SX_LoadTGF", 3), 0xFFFF8000u);
  EXPECT_EQ(r.Arg32("SX_LoadTGF", 5), kStamp);
}

TEST(WireWidths, StampAndDoublesArriveUnchangedInLongCalls) {
  auto& r = LoadRecorder();
  ASSERT_EQ(ScriboPluginMain(1, &r), 1);
  int userData = 0;

  SX_Dialog(20256, nullptr, kWindow, 0x3001, &userData, 0xDEADBEEF); // six arguments
  EXPECT_EQ(r.Arg32("SX_Dialog", 0), 20256u);
  EXPECT_EQ(r.Arg32("SX_Dialog", 3), 0x3001u);
  EXPECT_EQ(r.arg("SX_Dialog", 4), reinterpret_cast<uint64_t>(&userData));
  EXPECT_EQ(r.Arg32("SX_Dialog", 5), 0xDEADBEEFu);

  SX_OpenDocument(&userData, 1, -2, 3, -4, 5, 0x80000001); // the stamp is the seventh argument
  EXPECT_EQ(r.Arg32("SX_OpenDocument", 2), 0xFFFFFFFEu);
  EXPECT_EQ(r.Arg32("SX_OpenDocument", 6), 0x80000001u);
  SX_CreateGraphic(nullptr, -1, 77, nullptr, nullptr, 88, kStamp);
  EXPECT_EQ(r.Arg32("SX_CreateGraphic", 5), 88u);
  EXPECT_EQ(r.Arg32("SX_CreateGraphic", 6), kStamp);

  // Doubles reach the host bit for bit, also on the wrapper's first call.
  SX_SetDlgItemUser(kWindow, 5, -1, 3.25, kStamp);
  EXPECT_EQ(r.arg("SX_SetDlgItemUser", 3), std::bit_cast<uint64_t>(3.25));
  EXPECT_EQ(r.Arg32("SX_SetDlgItemUser", 4), kStamp);

  unsigned char metrics[80];
  std::memset(metrics, 0xAB, sizeof metrics);
  SX_GetTextMetrics_UTF16(nullptr, nullptr, -5, metrics, kStamp, -0.1);
  EXPECT_EQ(r.arg("SX_GetTextMetrics_UTF16", 5), std::bit_cast<uint64_t>(-0.1));
  EXPECT_EQ(r.Arg32("SX_GetTextMetrics_UTF16", 2), 0xFFFFFFFBu);
  for (unsigned char byte : metrics)
    ASSERT_EQ(byte, 0xAB) << "with a host, the wrapper itself writes nothing into the record";

  SX_ExportSvgFromShape(0xFFFF, nullptr, nullptr, kStamp, 1e300);
  EXPECT_EQ(r.Arg32("SX_ExportSvgFromShape", 0), 65535u);
  EXPECT_EQ(r.arg("SX_ExportSvgFromShape", 4), std::bit_cast<uint64_t>(1e300));

  // Twenty arguments, most on the stack: each in its place.
  SX_GetSampleBankSlotInfo(-1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, -12, 13, 14, 15, 16, 17, 18, -19,
                           kStamp);
  EXPECT_EQ(r.Arg32("SX_GetSampleBankSlotInfo", 0), 0xFFFFFFFFu);
  EXPECT_EQ(r.arg("SX_GetSampleBankSlotInfo", 11), static_cast<uint64_t>(-12));
  EXPECT_EQ(r.arg("SX_GetSampleBankSlotInfo", 17), 18u);
  EXPECT_EQ(r.Arg32("SX_GetSampleBankSlotInfo", 18), static_cast<uint32_t>(-19));
  EXPECT_EQ(r.Arg32("SX_GetSampleBankSlotInfo", 19), kStamp);
}

TEST(WireWidths, ResultsAreCutToTheirDeclaredWidth) {
  auto& r = LoadRecorder();
  ASSERT_EQ(ScriboPluginMain(1, &r), 1);

  r.setAnswer("SX_IsTesselDocumentDirty", 0x8000);
  EXPECT_EQ(SX_IsTesselDocumentDirty(1, kStamp), -32768);
  r.setAnswer("SX_IsTesselDocumentDirty", 0xABCD0000FFFFull); // bits above 16 are the host's noise
  EXPECT_EQ(SX_IsTesselDocumentDirty(1, kStamp), -1);

  r.setAnswer("SX_CreatePercMapRefData", 0xFFFF);
  EXPECT_EQ(SX_CreatePercMapRefData(nullptr, nullptr, kStamp), 65535);
  r.setAnswer("SX_CreatePercMapRefData", 0x3FFFF);
  EXPECT_EQ(SX_CreatePercMapRefData(nullptr, nullptr, kStamp), 65535);

  r.setAnswer("SX_CountParts", 0xFFFFFFFE);
  EXPECT_EQ(SX_CountParts(kStamp), -2);
  r.setAnswer("SX_GetTextEncoding", 0x7FFFFFFF);
  EXPECT_EQ(SX_GetTextEncoding(kStamp), 0x7FFFFFFF);

  r.setAnswer("SX_GetCurrentWindow", 0x123456789A0ull);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(SX_GetCurrentWindow(kStamp)), 0x123456789A0ull);
  r.setAnswer("SX_GetTGFDuration", 0x1'0000'0001ull);
  EXPECT_EQ(SX_GetTGFDuration(nullptr, kStamp), 0x1'0000'0001ll);
}
