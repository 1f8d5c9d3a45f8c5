// The test side of RecordsTestHost: loads the bundle once per process, binds the SDK to it
// with InitializeGlobals, and resolves its control functions.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "RecordTags.h"
#include "TestHostControl.h"
#include "TestSupport.h"
#include "scribopdk.h"

struct TestHost {
  TestHostResetFn Reset;
  TestHostPutRecordFn PutRecord;
  TestHostGetRecordFn GetRecord;
  TestHostFailLoadsFn FailLoads;
  TestHostCallsFn Calls;
  TestHostLogSizeFn LogSize;
  TestHostLogEntryFn LogEntry;
  TestHostSetFrameFn SetFrame;
  TestHostSeenEntriesFn SeenEntries;
  TestHostLiveFramesFn LiveFrames;
  TestHostSetEndEditResultFn SetEndEditResult;

  // The bound host, reset to empty.
  static TestHost& Fresh() {
    static TestHost host = Load();
    host.Reset();
    return host;
  }

  std::vector<TestHostCall> Log() const {
    std::vector<TestHostCall> calls(LogSize());
    for (int i = 0; i < static_cast<int>(calls.size()); ++i)
      LogEntry(i, &calls[i]);
    return calls;
  }

  // The record calls made to `function`, in order.
  std::vector<TestHostCall> LogOf(const char* function) const {
    std::vector<TestHostCall> calls;
    for (const TestHostCall& call : Log())
      if (std::strcmp(call.function, function) == 0)
        calls.push_back(call);
    return calls;
  }

  void PutOther(const char (&tag)[5], uint16_t owner, uint16_t index,
                std::array<uint16_t, 6> words) {
    PutRecord(FourCharTag(tag), owner, index, words.data(), sizeof words);
  }

  std::array<uint16_t, 6> Other(const char (&tag)[5], uint16_t owner, uint16_t index) const {
    std::array<uint16_t, 6> words{};
    EXPECT_EQ(GetRecord(FourCharTag(tag), owner, index, words.data(), sizeof words), 12) << tag;
    return words;
  }

private:
  static TestHost Load() {
    void* image = scribotest::LoadBundle(SCRIBO_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    if (InitializeGlobals() != 0 || !gScriboBundle)
      throw std::runtime_error("the SDK did not bind to the test host");
    TestHost host;
    host.Reset = Resolve<TestHostResetFn>(image, "TestHost_Reset");
    host.PutRecord = Resolve<TestHostPutRecordFn>(image, "TestHost_PutRecord");
    host.GetRecord = Resolve<TestHostGetRecordFn>(image, "TestHost_GetRecord");
    host.FailLoads = Resolve<TestHostFailLoadsFn>(image, "TestHost_FailLoads");
    host.Calls = Resolve<TestHostCallsFn>(image, "TestHost_Calls");
    host.LogSize = Resolve<TestHostLogSizeFn>(image, "TestHost_LogSize");
    host.LogEntry = Resolve<TestHostLogEntryFn>(image, "TestHost_LogEntry");
    host.SetFrame = Resolve<TestHostSetFrameFn>(image, "TestHost_SetFrame");
    host.SeenEntries = Resolve<TestHostSeenEntriesFn>(image, "TestHost_SeenEntries");
    host.LiveFrames = Resolve<TestHostLiveFramesFn>(image, "TestHost_LiveFrames");
    host.SetEndEditResult = Resolve<TestHostSetEndEditResultFn>(image, "TestHost_SetEndEditResult");
    return host;
  }

  template <class Fn> static Fn Resolve(void* image, const char* name) {
    Fn fn = scribotest::Symbol<Fn>(image, name);
    if (!fn)
      throw std::runtime_error(std::string("the test host lacks ") + name);
    return fn;
  }
};
