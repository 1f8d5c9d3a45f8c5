#include "LoadedFrame.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace scribo::engine {

namespace {

constexpr int32_t kMinCapacity = 16;
constexpr uint8_t kFrameMagic[4] = {'T', 'G', 'F', 'e'};

void PutWord(uint8_t* at, uint16_t value) {
  at[0] = uint8_t(value & 0xFF);
  at[1] = uint8_t(value >> 8);
}

EXENTRY* AllocateEntries(int32_t capacity) {
  return static_cast<EXENTRY*>(std::malloc(size_t(capacity) * sizeof(EXENTRY)));
}

} // namespace

LoadedFrame* NewLoadedFrame(FrameAddress address, uint16_t frameSource, const EXENTRY* entries,
                            int32_t count, LoadedFrame* spare) {
  LoadedFrame* loaded = spare ? spare : new (std::nothrow) LoadedFrame;
  if (!loaded)
    return nullptr;
  EXENTRY* buffer = loaded->buffer;
  int32_t capacity = loaded->capacity;
  if (!buffer || capacity < count) {
    std::free(buffer);
    capacity = std::max(count, kMinCapacity);
    buffer = AllocateEntries(capacity);
    if (!buffer) {
      delete loaded;
      return nullptr;
    }
  }
  if (count > 0)
    std::memcpy(buffer, entries, size_t(count) * sizeof(EXENTRY));
  // The header records where the frame came from, as a host's would.
  std::memset(loaded->frame.hostHeader, 0, sizeof loaded->frame.hostHeader);
  PutWord(loaded->frame.hostHeader + 0, uint16_t(address.staff));
  PutWord(loaded->frame.hostHeader + 2, uint16_t(address.measure));
  PutWord(loaded->frame.hostHeader + 4, uint16_t(address.layer));
  PutWord(loaded->frame.hostHeader + 6, frameSource);
  std::memcpy(loaded->frame.hostHeader + 8, kFrameMagic, sizeof kFrameMagic);
  loaded->frame.entries = buffer;
  loaded->frame.entryCount = int16_t(count);
  loaded->address = address;
  loaded->buffer = buffer;
  loaded->capacity = capacity;
  return loaded;
}

void DeleteLoadedFrame(LoadedFrame* frame) {
  std::free(frame->buffer);
  delete frame;
}

bool IsIntact(const LoadedFrame& frame) {
  return frame.frame.entries == frame.buffer && frame.frame.entryCount >= 0 &&
         frame.frame.entryCount <= frame.capacity;
}

bool InsertSlots(LoadedFrame& frame, int32_t index, int32_t count) {
  int32_t size = frame.frame.entryCount;
  if (count < 1 || index < 0 || index > size || size + count > kMaxFrameEntries)
    return false;
  int32_t tail = size - index;
  if (size + count <= frame.capacity) {
    std::memmove(frame.buffer + index + count, frame.buffer + index,
                 size_t(tail) * sizeof(EXENTRY));
  } else {
    // Grow geometrically so that a run of insertions costs amortised constant allocations;
    // head and tail are copied straight to their final places, so the tail still moves once.
    int32_t capacity = std::min(std::max(size + count, frame.capacity * 2), kMaxFrameEntries);
    EXENTRY* grown = AllocateEntries(capacity);
    if (!grown)
      return false;
    std::memcpy(grown, frame.buffer, size_t(index) * sizeof(EXENTRY));
    std::memcpy(grown + index + count, frame.buffer + index, size_t(tail) * sizeof(EXENTRY));
    std::free(frame.buffer);
    frame.buffer = grown;
    frame.capacity = capacity;
    frame.frame.entries = grown;
  }
  std::memset(static_cast<void*>(frame.buffer + index), 0, size_t(count) * sizeof(EXENTRY));
  frame.frame.entryCount = int16_t(size + count);
  return true;
}

bool DeleteSlots(LoadedFrame& frame, int32_t index, int32_t count) {
  int32_t size = frame.frame.entryCount;
  if (count < 1 || index < 0 || index >= size || count > size - index)
    return false;
  int32_t tail = size - index - count;
  std::memmove(frame.buffer + index, frame.buffer + index + count, size_t(tail) * sizeof(EXENTRY));
  std::memset(static_cast<void*>(frame.buffer + size - count), 0, size_t(count) * sizeof(EXENTRY));
  frame.frame.entryCount = int16_t(size - count);
  return true;
}

} // namespace scribo::engine
