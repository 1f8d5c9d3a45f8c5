// The host records the engine keeps, and how it finds them. Layouts and tags are the SDK's own
// record headers; what the engine adds is the number of key words each family of tags is found
// by:
//   preference records ("pf..")           {number}
//   entry-detail records ('E' first)      {entryNumber low word, entryNumber high word, index}
//   staff-group specs (kTagGroupSpec)     {first, second, 0}
//   everything else ("ot..", specs, texts) {main key, second key}
// Record bodies are little-endian byte strings in the host's layouts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "EDTDocumentSpecs.h"
#include "EDTGeneralPrefs2008.h"
#include "EDTTextBlock25_4.h"
#include "EDTTuplet.h"
#include "RecordTags.h"

namespace scribo::engine {

// Tag families, by their leading characters.
constexpr bool IsPreferenceTag(uint32_t tag) {
  return (tag & 0xFFFF0000) == FourCharTag("pf\0\0");
}
constexpr bool IsEntryDetailTag(uint32_t tag) {
  return (tag & 0xFF000000) == FourCharTag("E\0\0\0");
}
constexpr bool IsOtherRecordTag(uint32_t tag) {
  return (tag & 0xFFFF0000) == OtherRecordTag(0, 0);
}
static_assert(IsPreferenceTag(kTupletPrefsTag) && IsEntryDetailTag(kTupletDetailTag));

// Number of key words a tag's records are found by (see the table above).
constexpr size_t KeyWordsForTag(uint32_t tag) {
  if (IsPreferenceTag(tag))
    return 1;
  if (IsEntryDetailTag(tag) || tag == kTagGroupSpec)
    return 3;
  return 2;
}

// A record body read as the host's layout R: nullopt when there is none or its size differs.
template <class R> std::optional<R> LayoutOf(std::span<const uint8_t> bytes) {
  if (bytes.size() != sizeof(R))
    return std::nullopt;
  R record;
  std::memcpy(&record, bytes.data(), sizeof record);
  return record;
}
template <class R> std::optional<R> LayoutOf(const std::vector<uint8_t>* bytes) {
  return bytes ? LayoutOf<R>(std::span<const uint8_t>(*bytes)) : std::nullopt;
}

// The body of a record in the host's layout.
template <class R> std::vector<uint8_t> BytesOf(const R& record) {
  std::vector<uint8_t> bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

} // namespace scribo::engine
