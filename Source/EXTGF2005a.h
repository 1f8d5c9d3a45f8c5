// Frames and entries: the host's records for the music of one staff, measure and layer.
//
// Shared with the host in memory, bit for bit: little-endian, packed on 2-byte boundaries,
// fields in exactly this order. Frames are allocated, owned and freed by the host; a plug-in
// borrows one from SX_LoadTGF to SX_FreeTGF. Never bind a pointer or reference to a member of
// these records: copy values in and out.
#pragma once

#include <cstddef>
#include <cstdint>

#pragma pack(push, 2)

// One note of an entry, 10 bytes.
struct EXNOTE {
  uint8_t hostData[4]; // host data; the reference engine keeps the pitch here (int16 step, int16
                       // alteration)
  int16_t noteID;      // unique within the entry after CleanTGF (a rest's placeholder keeps 0)
  uint32_t noteFlags;  // bits 16..20: low five bits of noteID; bit 31: placeholder note of a rest
};

constexpr int kMaxNotesPerEntry = 12;

// One entry (note, chord or rest), 146 bytes.
struct EXENTRY {
  uint32_t entryNumber; // host's identifier; key of the entry's detail records; 0: not yet stored
  int16_t duration;     // notated duration, TDU (quarter = 1024)
  uint16_t hostWord6;   // host data; copies made by the subdivision pass clear it
  uint32_t flags;       // entry flag word (kEntry... bits below)
  uint16_t flags2;      // second flag word
  int16_t noteCount;    // note records in use, 0..12, first in `notes`
  EXNOTE notes[kMaxNotesPerEntry];
  int32_t position;       // TDU from the start of the measure
  int32_t actualDuration; // elapsed TDU; differs from `duration` inside tuplets
  uint8_t hostTrailer[2]; // host data
};

// The frame. The host's record continues past `entryCount` with data of its own: never copy a
// frame by value, only use the pointer the host handed out.
struct EXTGF2005a {
  uint8_t hostHeader[14];
  EXENTRY* entries;   // contiguous array, stride 146; may move on insert and delete
  int16_t entryCount; // entries in the array
};

#pragma pack(pop)

static_assert(sizeof(EXNOTE) == 10);
static_assert(offsetof(EXNOTE, hostData) == 0);
static_assert(offsetof(EXNOTE, noteID) == 4);
static_assert(offsetof(EXNOTE, noteFlags) == 6);

static_assert(sizeof(EXENTRY) == 146);
static_assert(offsetof(EXENTRY, entryNumber) == 0);
static_assert(offsetof(EXENTRY, duration) == 4);
static_assert(offsetof(EXENTRY, hostWord6) == 6);
static_assert(offsetof(EXENTRY, flags) == 8);
static_assert(offsetof(EXENTRY, flags2) == 12);
static_assert(offsetof(EXENTRY, noteCount) == 14);
static_assert(offsetof(EXENTRY, notes) == 16);
static_assert(offsetof(EXENTRY, position) == 136);
static_assert(offsetof(EXENTRY, actualDuration) == 140);
static_assert(offsetof(EXENTRY, hostTrailer) == 144);

static_assert(offsetof(EXTGF2005a, hostHeader) == 0);
static_assert(offsetof(EXTGF2005a, entries) == 14);
static_assert(offsetof(EXTGF2005a, entryCount) == 22);
static_assert(sizeof(EXTGF2005a) == 24);

// Bits of EXENTRY::flags.
constexpr uint32_t kEntryTupletStart = 0x00080000; // bit 19: the entry begins a tuplet
constexpr uint32_t kEntryRestPlaceholder =
    0x01000000;                                 // bit 24: CleanTGF gave the rest a note record
constexpr uint32_t kEntryVoiceTwo = 0x10000000; // bit 28: voice-2 entry
constexpr uint32_t kEntryVoiceTwoLaunch = 0x20000000; // bit 29: voice-2 entries follow this entry
constexpr uint32_t kEntryIsNote = 0x40000000;         // bit 30: note entry; clear: rest

// Bits of EXNOTE::noteFlags.
constexpr uint32_t kNoteIDCopyMask = 0x001F0000;      // bits 16..20: low five bits of noteID
constexpr uint32_t kNoteRestPlaceholder = 0x80000000; // bit 31: placeholder note of a rest

// What a copy of an entry keeps when the subdivision pass fills new slots.
constexpr uint32_t kCopyKeepFlags = 0xC080A15F;     // bits 0-4, 6, 8, 13, 15, 23, 30, 31
constexpr uint16_t kCopyKeepFlags2 = 0x00C0;        // bits 6, 7
constexpr uint32_t kCopyKeepNoteFlags = 0x8E000000; // bits 25, 26, 27, 31

// The reference engine's pitch in EXNOTE::hostData: diatonic step from middle C, alteration.
inline int16_t NotePitchStep(const EXNOTE& note) {
  return static_cast<int16_t>(note.hostData[0] | (note.hostData[1] << 8));
}
inline int16_t NotePitchAlteration(const EXNOTE& note) {
  return static_cast<int16_t>(note.hostData[2] | (note.hostData[3] << 8));
}
inline void SetNotePitch(EXNOTE& note, int16_t step, int16_t alteration) {
  note.hostData[0] = static_cast<uint8_t>(step & 0xFF);
  note.hostData[1] = static_cast<uint8_t>((step >> 8) & 0xFF);
  note.hostData[2] = static_cast<uint8_t>(alteration & 0xFF);
  note.hostData[3] = static_cast<uint8_t>((alteration >> 8) & 0xFF);
}
