// The control functions that RecordsTestHost exports next to its host functions, and the
// record of one host call that it logs. Shared by the test host, which defines them, and the
// tests, which look them up in the loaded bundle; plain C types only, since the two live in
// separate images.
#pragma once

#include <cstdint>

#include "EXTGF2005a.h"

// One host call, as the host saw it.
struct TestHostCall {
  char function[24]; // host function name, e.g. "SX_LoadEData"
  uint32_t tag;      // record tag; 0 for calls that take none
  uint16_t key0;     // first key, 0xFFFF when the key list was null
  uint16_t key1;     // second key of an "ot" tag, else 0
  uint32_t size;     // size passed (*size on entry for loads)
  uint32_t version;  // the version stamp as it arrived
};

extern "C" {
// Forget every record, failure, logged call and seen frame.
void TestHost_Reset();
// Store a record under (tag, key0, key1); key1 is ignored unless the tag starts with "ot".
void TestHost_PutRecord(uint32_t tag, uint16_t key0, uint16_t key1, const void* data,
                        uint32_t size);
// Copy a record out; its size, or -1 when there is no such record.
int TestHost_GetRecord(uint32_t tag, uint16_t key0, uint16_t key1, void* out, uint32_t capacity);
// Loads of `tag` fail (return 0) from now on; the host first writes `scribbleBytes` bytes of
// 0xAB into the caller's buffer, as a host that gives up half-way would.
void TestHost_FailLoads(uint32_t tag, uint32_t scribbleBytes);
// Copies up to `capacity` of the calls made since the last reset, in order; their count.
int TestHost_Log(TestHostCall* out, int capacity);
// Copies up to `capacity` entries of the frame as the host saw it at the last call of
// `function`; their count.
int TestHost_SeenEntries(const char* function, EXENTRY* out, int capacity);
}
