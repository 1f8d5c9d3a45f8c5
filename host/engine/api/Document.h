// The engine's document: staves x measures x layers of entries, and the host's records.
//
// Staves and measures are numbered from 1, layers from 0 (at most four). Each frame (staff,
// measure, layer) is a contiguous array of EXENTRY in the order the entries were stored; entry
// numbers are unique in the document and never 0. A note's pitch lives in the first four bytes
// of its note record (SetNotePitch / NotePitchStep in EXTGF2005a.h); ties in kNoteTieStart and
// kNoteTieEnd of noteFlags.
//
// Staff names are stored the host's way: a raw text ("txbl"), a text block ("SOTX") naming it,
// and the staff spec ("SOIS") naming the block as its first or second name. Measures carry a
// measure spec ("SOMS") with the key-signature word and the time signature.
//
// Thread: host's main thread, like the host functions that act on the same document.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "EXTGF2005a.h"
#include "EngineApi.h"
#include "Records.h"

namespace scribo::engine {

struct DocumentData;

constexpr int16_t kMaxLayerCount = 4;

// Where the engine keeps ties: host bits of EXNOTE::noteFlags outside the SDK's copy mask.
constexpr uint32_t kNoteTieStart = 0x40000000; // bit 30: tied to the same pitch in the next entry
constexpr uint32_t kNoteTieEnd = 0x20000000;   // bit 29: tied from the same pitch in the previous
constexpr int kMaxFrameEntries = 32767;

// Time signature as the measure spec keeps it: `beats` beats of `beatValue` TDU each
// (4/4: 4, 1024; 6/8: 2, 1536; 3/8: 3, 512). Beams are grouped by this beat.
struct TimeSignature {
  int16_t beats = 4;
  int16_t beatValue = 1024;
  friend bool operator==(const TimeSignature&, const TimeSignature&) = default;
};

struct NoteSpec {
  int16_t step = 0;       // diatonic steps from middle C
  int16_t alteration = 0; // semitones: -1 flat, +1 sharp
  uint32_t noteFlags = 0; // kNoteTieStart, kNoteTieEnd, other host bits
};

// An entry to add. `flags` gets kEntryIsNote when `notes` is not empty and loses it when empty.
struct EntrySpec {
  int16_t duration = 1024;     // notated, TDU
  int32_t actualDuration = -1; // elapsed TDU; -1: the notated duration
  int32_t position = -1;       // TDU from the measure start; -1: where the layer's last entry ends
  uint32_t flags = 0;
  uint16_t flags2 = 0;
  std::vector<NoteSpec> notes; // at most 12; empty: a rest
};

struct FrameAddress {
  int16_t staff = 1;
  int16_t measure = 1;
  int16_t layer = 0;
  friend bool operator==(const FrameAddress&, const FrameAddress&) = default;
};

// Beam role of an entry, as the last rebeam (SX_RebeamRegion or Document::Rebeam) left it.
enum class BeamRole : uint8_t { None, Start, Continue, End };

// Records as the document holds them, read in place: valid until the document next changes.
// Converts to a vector for a copy that outlives changes.
template <class T> struct DocumentSpan : std::span<const T> {
  using std::span<const T>::span;
  DocumentSpan(std::span<const T> records) : std::span<const T>(records) {}
  operator std::vector<T>() const { return {this->begin(), this->end()}; }
};

// One entry-detail record of the document: its tag, key words and body (read in place, as a
// DocumentSpan).
struct RecordView {
  uint32_t tag = 0;
  std::array<uint16_t, 3> keys{};
  std::span<const uint8_t> bytes;
};

class SCRIBO_ENGINE_API Document {
public:
  explicit Document(DocumentData& data) : data_(&data) {}

  // An empty document: no staves, measures, entries or texts; the default preference records
  // ("pfTP" 0, 30 bytes; "pfgp" 0, 66 bytes, all zero) are present.
  void Clear();

  // --- Staves and measures -------------------------------------------------------------------
  // Adds a staff named `name` (and `secondName`, e.g. an abbreviation; empty: none). Returns its
  // number (1, 2, ...); -1 when the document already holds 32767 staves.
  int16_t AddStaff(std::u16string_view name = {}, std::u16string_view secondName = {});
  // Adds a measure; returns its number (1, 2, ...) or -1.
  int16_t AddMeasure(int16_t keySig = 0, TimeSignature time = {});
  // From the measure spec; 0 / {4, 1024} when the measure does not exist.
  int16_t KeySignature(int16_t measure) const;
  TimeSignature TimeSig(int16_t measure) const;
  // The staff spec's staff-transposition word.
  bool SetStaffTransposition(int16_t staff, int16_t word);

  // --- Entries -----------------------------------------------------------------------------
  // Appends an entry to the frame and gives it a new entry number, which it returns; 0 when the
  // frame does not exist, the frame is full or the entry is invalid (more than 12 notes).
  uint32_t AddEntry(FrameAddress frame, const EntrySpec& spec);
  // Appends a ready entry. Its entryNumber is kept when non-zero and unused, else a new one is
  // given. Returns the number, or 0.
  uint32_t AddEntry(FrameAddress frame, const EXENTRY& entry);
  // All entries of the frame as stored (empty for a frame without entries or outside the document).
  DocumentSpan<EXENTRY> Entries(FrameAddress frame) const;
  // Beam roles beside Entries(frame), same length and order.
  DocumentSpan<BeamRole> Beams(FrameAddress frame) const;
  // Where an entry lives; nullopt for an unknown number.
  std::optional<FrameAddress> FindEntry(uint32_t entryNumber) const;
  // Replaces all entries of a frame (numbers given as by SX_SaveTGF). False when refused.
  bool ReplaceEntries(FrameAddress frame, std::span<const EXENTRY> entries);
  size_t EntryCount() const; // in the whole document
  // Recomputes beam groups by beat for measures first..last, staves firstStaff..lastStaff.
  void Rebeam(int16_t firstStaff, int16_t firstMeasure, int16_t lastStaff, int16_t lastMeasure);

  // --- Records -----------------------------------------------------------------------------
  // The record of the tag found by `keys` (KeyWordsForTag(tag) words).
  std::optional<std::vector<uint8_t>> Record(uint32_t tag, std::span<const uint16_t> keys) const;

  // Entry-detail records (tag with 'E' first, keys {entryNumber, index}); creates or replaces.
  bool PutEntryDetail(uint32_t tag, uint32_t entryNumber, uint16_t index,
                      std::span<const uint8_t> bytes);
  // Every detail record attached to the entry, all tags, in (tag, index) order; the bodies are
  // read in place.
  std::vector<RecordView> EntryDetails(uint32_t entryNumber) const;
  // The tuplet record at the entry (index 0), if any.
  std::optional<EDTTuplet> Tuplet(uint32_t entryNumber) const;

  // Preference records ("pf.." tags, key {number}). The tuplet preferences "pfTP" 0 exist by
  // default; tests remove or replace them. Put creates or replaces.
  bool PutPreference(uint32_t tag, uint16_t number, std::span<const uint8_t> bytes);
  bool RemovePreference(uint32_t tag, uint16_t number);

private:
  DocumentData* data_;
};

} // namespace scribo::engine
