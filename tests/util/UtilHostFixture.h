// The utilities' test host, loaded once per test process before anything binds to it, and a
// fixture that gives every test a clean host state.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "TestSupport.h"
#include "UtilTestHostState.h"
#include "scribopdk.h"

namespace utiltest {

inline State* gHost = nullptr;

// Loaded into the global scope: the keyboard stand-in finds its providers there.
struct HostEnvironment : testing::Environment {
  void SetUp() override {
    void* image = scribotest::LoadBundle(UTIL_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_EQ(InitializeGlobals(), 0);
    auto stateFn = scribotest::Symbol<UtilTestHostStateFn>(image, "UtilTestHost_State");
    ASSERT_NE(stateFn, nullptr);
    gHost = stateFn();
  }
};

class HostTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(gHost, nullptr) << "the test host did not load";
    std::memset(static_cast<void*>(gHost), 0, sizeof(State));
    gHost->maxLayers = 4;
  }
  State& host() { return *gHost; }

  // Stores a record the way the host keeps it.
  void Put(uint32_t tag, uint16_t key0, const void* data, uint32_t size, uint16_t key1 = 0) {
    Record& r = host().records[host().recordCount++];
    r.tag = tag;
    r.keys[0] = key0;
    r.keys[1] = key1;
    r.size = size;
    std::memcpy(r.data, data, size);
  }
  void PutText(uint16_t number, const std::u16string& text) {
    Put(0x7478626c, number, text.data(), static_cast<uint32_t>(text.size() * 2));
  }
};

} // namespace utiltest
