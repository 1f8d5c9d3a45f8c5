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

// Each control function is looked up by name in the bundle, whose image is loaded first.
#define TEST_HOST_FUNCTION(member, name)                                                           \
  decltype(&TestHost_##name) member = Resolve<decltype(&TestHost_##name)>(image, "TestHost"        \
                                                                                 "_" #name)

struct TestHost {
  void* image = Bind();
  TEST_HOST_FUNCTION(Reset, Reset);
  TEST_HOST_FUNCTION(PutRecord, PutRecord);
  TEST_HOST_FUNCTION(GetRecord, GetRecord);
  TEST_HOST_FUNCTION(FailLoads, FailLoads);
  TEST_HOST_FUNCTION(CopyLog, Log);
  TEST_HOST_FUNCTION(CopySeenEntries, SeenEntries);

  // The bound host, reset to empty.
  static TestHost& Fresh() {
    static TestHost host;
    host.Reset();
    return host;
  }

  // The calls since the last reset, or only those of `function`, in order.
  std::vector<TestHostCall> Log(const char* function = nullptr) const {
    std::vector<TestHostCall> calls(CopyLog(nullptr, 0));
    CopyLog(calls.data(), static_cast<int>(calls.size()));
    if (function)
      std::erase_if(calls,
                    [&](const TestHostCall& c) { return std::strcmp(c.function, function); });
    return calls;
  }
  int Calls(const char* function) const { return static_cast<int>(Log(function).size()); }

  std::vector<EXENTRY> SeenEntries(const char* function) const {
    std::vector<EXENTRY> entries(CopySeenEntries(function, nullptr, 0));
    CopySeenEntries(function, entries.data(), static_cast<int>(entries.size()));
    return entries;
  }

  // Other records of the document owner.
  void PutOther(const char (&tag)[5], uint16_t index, std::array<uint16_t, 6> words) {
    PutRecord(FourCharTag(tag), kOtherRecordDocumentOwner, index, words.data(), sizeof words);
  }
  std::array<uint16_t, 6> Other(const char (&tag)[5], uint16_t index = 0,
                                uint16_t owner = kOtherRecordDocumentOwner) const {
    std::array<uint16_t, 6> words{};
    EXPECT_EQ(GetRecord(FourCharTag(tag), owner, index, words.data(), sizeof words), 12) << tag;
    return words;
  }
  void SetWord(const char (&tag)[5], int word, uint16_t value) {
    std::array<uint16_t, 6> words = Other(tag);
    words[word] = value;
    PutOther(tag, 0, words);
  }

private:
  static void* Bind() {
    void* image = scribotest::LoadBundle(SCRIBO_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    if (InitializeGlobals() != 0 || !gScriboBundle)
      throw std::runtime_error("the SDK did not bind to the test host");
    return image;
  }

  template <class Fn> static Fn Resolve(void* image, const char* name) {
    if (Fn fn = scribotest::Symbol<Fn>(image, name))
      return fn;
    throw std::runtime_error(std::string("the test host lacks ") + name);
  }
};
