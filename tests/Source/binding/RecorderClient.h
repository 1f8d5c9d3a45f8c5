// The test side of RecorderEngine.bundle: loads it like a host engine and reads what reached it.
#pragma once

#include "TestSupport.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace bindingtest {

struct Recorder {
  void (*reset)();
  void (*setAnswer)(const char*, uint64_t);
  long (*callCount)(const char*);
  uint64_t (*arg)(const char*, int);

  uint32_t Arg32(const char* name, int index) const {
    return static_cast<uint32_t>(arg(name, index));
  }
};

// Loaded once, globally, so that the engine is among the process's images from then on.
inline Recorder& LoadRecorder() {
  static Recorder recorder = [] {
    void* handle = scribotest::LoadBundle(scribotest::BuildDir() /
                                              "tests/Source/binding/RecorderEngine.bundle",
                                          RTLD_NOW | RTLD_GLOBAL);
    Recorder r{};
    r.reset = scribotest::Symbol<void (*)()>(handle, "RecorderReset");
    r.setAnswer = scribotest::Symbol<void (*)(const char*, uint64_t)>(handle, "RecorderSetAnswer");
    r.callCount = scribotest::Symbol<long (*)(const char*)>(handle, "RecorderCallCount");
    r.arg = scribotest::Symbol<uint64_t (*)(const char*, int)>(handle, "RecorderArg");
    return r;
  }();
  return recorder;
}

} // namespace bindingtest
