// Record tags and the host's 12-byte other records, as the entry-detail wrappers and the
// legacy preference translation name them.
#pragma once

#include <cstdint>

// A tag from its four characters, the first in the most significant byte: "pfTP" is 0x70665450.
constexpr uint32_t FourCharTag(const char (&text)[5]) {
  return (static_cast<uint32_t>(static_cast<unsigned char>(text[0])) << 24) |
         (static_cast<uint32_t>(static_cast<unsigned char>(text[1])) << 16) |
         (static_cast<uint32_t>(static_cast<unsigned char>(text[2])) << 8) |
         static_cast<uint32_t>(static_cast<unsigned char>(text[3]));
}
static_assert(FourCharTag("pfTP") == 0x70665450);

// The tag of an other record: "ot" followed by its two code characters ("21" gives "ot21"; with
// two zero characters, the family's common part).
constexpr uint32_t OtherRecordTag(char first, char second) {
  const char tag[5] = {'o', 't', first, second, 0};
  return FourCharTag(tag);
}
static_assert(OtherRecordTag('2', '1') == FourCharTag("ot21"));

// Whether two tags share their first two characters ("pf" preferences, "ot" other records).
constexpr bool SameTagFamily(uint32_t tag, uint32_t other) {
  return (tag >> 16) == (other >> 16);
}

// Other records: six 16-bit words, keyed by {owner, index}.
constexpr uint32_t kOtherRecordSize = 12;
constexpr int kOtherRecordWords = 6;
// The owner key that stands for "the document" where a mapping names owner 0.
constexpr uint16_t kOtherRecordDocumentOwner = 65534;

// The fret-instrument record EDTFretInstrument25_3: 252 bytes. Its tag's bytes are not four
// printable characters.
constexpr uint32_t kFretInstrumentTag = 0x4F156649;
constexpr uint32_t kFretInstrumentRecordSize = 252;

// Preference translation applies only to calls stamped with this version or later.
constexpr uint32_t kFirstTranslatedVersion = 0x08000000;
