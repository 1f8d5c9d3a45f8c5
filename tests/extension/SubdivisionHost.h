// A host for the subdivision pass: the reference engine linked in, and plug-in images (the
// test-only probe, the command without its dialog, or the real bundle) loaded as a host loads
// them. Helpers build small documents and read back what the pass stored.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "Engine.h"
#include "TestSupport.h"
#include "tSubdivideParam.h"

namespace subdivisiontest {

using scribo::engine::Document;
using scribo::engine::Engine;
using scribo::engine::EntrySpec;
using scribo::engine::FrameAddress;
using scribo::engine::HostCall;
using scribo::engine::NoteSpec;

constexpr int32_t kNoUpperBound = 0x7FFFFFFF;
constexpr char kVoiceTwoWarning[] =
    "The current selection contains some voice 2 entries.  These entries will not be changed.";

// Loads an image of a bundle and calls its `main` as the host does after loading.
inline void* LoadAndStart(const std::filesystem::path& bundle) {
  void* image = scribotest::LoadBundle(bundle);
  int context = 0;
  auto bundleMain = scribotest::Symbol<int (*)(int, void*)>(image, "main");
  if (!bundleMain || bundleMain(1, &context) != 1)
    throw std::runtime_error("the bundle could not bind to the engine: " + bundle.string());
  return image;
}

inline tSubdivideParam Divisions(int16_t parts) {
  return {1, kNoUpperBound, 1024, parts, 0, 1};
}
inline tSubdivideParam Target(int32_t target) {
  return {1, kNoUpperBound, target, 0, 0, 0};
}

inline EREGION Region(int16_t startStaff, int16_t startMeasure, int32_t startPosition,
                      int16_t endStaff, int16_t endMeasure, int32_t endPosition) {
  return {0, startStaff, startMeasure, startPosition, {}, endStaff, endMeasure, endPosition};
}
// Whole measures first..last of staves first..last.
inline EREGION Measures(int16_t firstStaff, int16_t lastStaff, int16_t firstMeasure,
                        int16_t lastMeasure) {
  return Region(firstStaff, firstMeasure, 0, lastStaff, lastMeasure, kNoUpperBound);
}

inline EntrySpec Rest(int16_t duration, int32_t position) {
  EntrySpec spec;
  spec.duration = duration;
  spec.position = position;
  return spec;
}
inline EntrySpec Note(int16_t duration, int32_t position, int32_t actualDuration = -1,
                      uint32_t flags = 0) {
  EntrySpec spec = Rest(duration, position);
  spec.actualDuration = actualDuration;
  spec.flags = flags;
  spec.notes = {NoteSpec{2, 0, 0}};
  return spec;
}

// Entry records are packed, so a 32-bit field may sit on a 2-byte boundary: the tests read such
// a field into a value (unary +) before a test macro or container binds a reference to it.
inline bool SameBytes(const EXENTRY& a, const EXENTRY& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Each test starts from an empty document, four layers, all shown, alerts logged but not echoed.
class EngineTest : public ::testing::Test {
protected:
  void SetUp() override { Restart(); }
  void TearDown() override { EXPECT_EQ(engine().LoadedFrames(), 0) << "a frame was left loaded"; }

  static Engine& engine() { return Engine::Instance(); }
  static Document& doc() { return Engine::Instance().document(); }
  static void Restart() {
    engine().Reset();
    engine().SetAlertEcho(false);
  }
  static void Build(int staves, int measures) {
    for (int s = 0; s < staves; ++s)
      doc().AddStaff();
    for (int m = 0; m < measures; ++m)
      doc().AddMeasure();
  }
  static uint32_t Add(int16_t staff, int16_t measure, const EntrySpec& spec, int16_t layer = 0) {
    uint32_t number = doc().AddEntry(FrameAddress{staff, measure, layer}, spec);
    EXPECT_NE(number, 0u);
    return number;
  }
  static std::vector<EXENTRY> Entries(int16_t staff, int16_t measure, int16_t layer = 0) {
    return doc().Entries(FrameAddress{staff, measure, layer});
  }
  static long Calls(HostCall call) { return engine().CallCount(call); }
  static size_t VoiceTwoWarnings() {
    for (const auto& alert : engine().Alerts()) {
      EXPECT_EQ(alert.text, kVoiceTwoWarning);
      EXPECT_EQ(alert.kind, 0);
      EXPECT_EQ(alert.identifier, 0);
    }
    return engine().Alerts().size();
  }
};

#ifdef SUBDIVISION_PROBE_BUNDLE
// The probe image: the pass as an invocation runs it after the dialog (`run` arms the voice-2
// warning first, `proceed` continues the same invocation), bound to the engine once per process.
struct SubdivisionProbe {
  int (*run)(EREGION*, const tSubdivideParam*, short) = nullptr;
  int (*proceed)(EREGION*, const tSubdivideParam*, short) = nullptr;
  const int32_t* loadedTGFCounter = nullptr;
};

inline const SubdivisionProbe& Probe() {
  static const SubdivisionProbe probe = [] {
    void* image = LoadAndStart(SUBDIVISION_PROBE_BUNDLE);
    SubdivisionProbe p;
    p.run = scribotest::Symbol<decltype(p.run)>(image, "ProbeRunSubdivision");
    p.proceed = scribotest::Symbol<decltype(p.proceed)>(image, "ProbeContinueSubdivision");
    p.loadedTGFCounter = scribotest::Symbol<const int32_t*>(image, "LoadedTGFCounter");
    if (!p.run || !p.proceed || !p.loadedTGFCounter)
      throw std::runtime_error("the probe bundle lacks its exports");
    return p;
  }();
  return probe;
}

class SubdivisionTest : public EngineTest {
protected:
  void SetUp() override {
    Probe();
    EngineTest::SetUp();
  }
  void TearDown() override {
    EngineTest::TearDown();
    EXPECT_EQ(*Probe().loadedTGFCounter, 0);
  }
  static int Run(EREGION region, const tSubdivideParam& param, short layers = 4) {
    return Probe().run(&region, &param, layers);
  }
};
#endif

} // namespace subdivisiontest
