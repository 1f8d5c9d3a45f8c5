// The engine as a plug-in reaches it: its exported host functions, called through the
// declarations the host-function tables give them (HostExports.h), so a signature that differs
// from its row does not compile; and its C++ API, which sets up documents and reads results.
#pragma once

#include <gtest/gtest.h>

#include "Engine.h"
#include "HostExports.h"

namespace enginetest {

constexpr uint32_t kStamp = kScriboHostVersion;

class EngineTest : public ::testing::Test {
protected:
  void SetUp() override {
    engine().Reset();
    engine().SetAlertEcho(false);
  }
  void TearDown() override { EXPECT_EQ(engine().LoadedFrames(), 0) << "a test left frames loaded"; }

  static scribo::engine::Engine& engine() { return scribo::engine::Engine::Instance(); }
  static scribo::engine::Document& doc() { return engine().document(); }
};

// A note entry of `duration` TDU.
inline scribo::engine::EntrySpec Note(int16_t duration) {
  scribo::engine::EntrySpec spec;
  spec.duration = duration;
  spec.notes = {{0, 0, 0}};
  return spec;
}

} // namespace enginetest
