// The Document API over DocumentData.
#include "Document.h"

#include <algorithm>

#include "Beaming.h"
#include "DocumentData.h"

namespace scribo::engine {

namespace {

std::vector<uint8_t> TextBytes(std::u16string_view text) {
  std::vector<uint8_t> bytes(text.size() * 2);
  for (size_t i = 0; i < text.size(); ++i) {
    bytes[2 * i] = uint8_t(text[i] & 0xFF);
    bytes[2 * i + 1] = uint8_t(text[i] >> 8);
  }
  return bytes;
}

RecordKey TwoWordKey(uint32_t tag, int16_t first) {
  const uint16_t keys[2] = {uint16_t(first), 0};
  return MakeRecordKey(tag, keys);
}

// Stores `bytes` as the tag's record under the first free number after `last`, which moves
// there. Returns the number; 0 when none is left.
int16_t AddNumbered(DocumentData& data, uint32_t tag, int16_t& last, std::vector<uint8_t> bytes) {
  int16_t number = last;
  do {
    if (number == INT16_MAX)
      return 0;
    ++number;
  } while (data.FindRecord(TwoWordKey(tag, number)));
  last = number;
  data.records[TwoWordKey(tag, number)] = std::move(bytes);
  return number;
}

// A staff name the host's way: a raw text and a text block naming it. Returns the block.
int16_t AddStaffName(DocumentData& data, std::u16string_view name) {
  EDTTextBlock25_4 block{};
  block.rawText = AddNumbered(data, kTagRawText, data.rawTextCount, TextBytes(name));
  return AddNumbered(data, kTagTextBlock, data.textBlockCount, BytesOf(block));
}

// Rewrites the record at `key` in the layout R; false when there is none of that size.
template <class R, class Fn> bool Change(DocumentData& data, const RecordKey& key, Fn change) {
  auto it = data.records.find(key);
  auto record = it == data.records.end() ? std::nullopt : LayoutOf<R>(&it->second);
  if (!record)
    return false;
  change(*record);
  it->second = BytesOf(*record);
  return true;
}

// The tuplet detail records of an entry in index order: the outermost tuplet first.
std::vector<EDTTuplet> TupletsOf(const DocumentData& data, uint32_t entryNumber) {
  std::vector<EDTTuplet> tuplets;
  data.entryIndex.ForEachDetail(entryNumber,
                                [&](uint32_t tag, uint16_t, std::span<const uint8_t> bytes) {
                                  if (tag == kTupletDetailTag)
                                    if (auto record = LayoutOf<EDTTuplet>(bytes))
                                      tuplets.push_back(*record);
                                });
  return tuplets;
}

} // namespace

void Document::Clear() {
  data_->ResetToEmpty();
}

int16_t Document::AddStaff(std::u16string_view name, std::u16string_view secondName) {
  if (data_->staffCount == INT16_MAX)
    return -1;
  EDTStaffSpec2014 spec{};
  if (!name.empty())
    spec.firstNameBlock = AddStaffName(*data_, name);
  if (!secondName.empty())
    spec.secondNameBlock = AddStaffName(*data_, secondName);
  int16_t staff = data_->NewStaff();
  data_->records[TwoWordKey(kTagStaffSpec, staff)] = BytesOf(spec);
  return staff;
}

int16_t Document::AddMeasure(int16_t keySig, TimeSignature time) {
  if (data_->measureCount == INT16_MAX)
    return -1;
  EDTMeasureSpec2014 spec{};
  spec.keySig = keySig;
  spec.timeSigBeats = time.beats;
  spec.timeSigBeatValue = time.beatValue;
  int16_t measure = data_->NewMeasure();
  data_->records[TwoWordKey(kTagMeasureSpec, measure)] = BytesOf(spec);
  return measure;
}

int16_t Document::KeySignature(int16_t measure) const {
  auto spec = LayoutOf<EDTMeasureSpec2014>(data_->FindRecord(TwoWordKey(kTagMeasureSpec, measure)));
  return spec ? spec->keySig : 0;
}

TimeSignature Document::TimeSig(int16_t measure) const {
  auto spec = LayoutOf<EDTMeasureSpec2014>(data_->FindRecord(TwoWordKey(kTagMeasureSpec, measure)));
  if (!spec)
    return {};
  return {spec->timeSigBeats, spec->timeSigBeatValue};
}

bool Document::SetStaffTransposition(int16_t staff, int16_t word) {
  return Change<EDTStaffSpec2014>(*data_, TwoWordKey(kTagStaffSpec, staff),
                                  [&](EDTStaffSpec2014& spec) { spec.staffTrans = word; });
}

uint32_t Document::AddEntry(FrameAddress frame, const EntrySpec& spec) {
  if (!data_->IsValid(frame) || spec.notes.size() > size_t(kMaxNotesPerEntry))
    return 0;
  EXENTRY e{};
  e.duration = spec.duration;
  e.actualDuration = spec.actualDuration < 0 ? spec.duration : spec.actualDuration;
  if (spec.position >= 0) {
    e.position = spec.position;
  } else if (auto entries = data_->Entries(frame); !entries.empty()) {
    e.position = entries.back().position + entries.back().actualDuration;
  }
  e.flags = spec.notes.empty() ? (spec.flags & ~kEntryIsNote) : (spec.flags | kEntryIsNote);
  e.flags2 = spec.flags2;
  e.noteCount = int16_t(spec.notes.size());
  for (size_t j = 0; j < spec.notes.size(); ++j) {
    EXNOTE& note = e.notes[j];
    SetNotePitch(note, spec.notes[j].step, spec.notes[j].alteration);
    note.noteID = int16_t(j + 1);
    note.noteFlags =
        (spec.notes[j].noteFlags & ~kNoteIDCopyMask) | (uint32_t(note.noteID & 0x1F) << 16);
  }
  return AddEntry(frame, e);
}

uint32_t Document::AddEntry(FrameAddress frame, const EXENTRY& entry) {
  if (entry.noteCount < 0 || entry.noteCount > kMaxNotesPerEntry)
    return 0;
  return data_->AppendEntry(frame, entry);
}

DocumentSpan<EXENTRY> Document::Entries(FrameAddress frame) const {
  return data_->Entries(frame);
}

DocumentSpan<BeamRole> Document::Beams(FrameAddress frame) const {
  return data_->Beams(frame);
}

std::optional<FrameAddress> Document::FindEntry(uint32_t entryNumber) const {
  const auto* entry = data_->entryIndex.Find(entryNumber);
  if (!entry)
    return std::nullopt;
  return FrameAddressOf(entry->frame);
}

bool Document::ReplaceEntries(FrameAddress frame, std::span<const EXENTRY> entries) {
  if (!data_->IsValid(frame) || entries.size() > size_t(kMaxFrameEntries))
    return false;
  for (const EXENTRY& e : entries)
    if (e.noteCount < 0 || e.noteCount > kMaxNotesPerEntry)
      return false;
  // A copy: the numbers given are written into it, and `entries` may lie in the document.
  std::vector<EXENTRY> copy(entries.begin(), entries.end());
  data_->StoreFrame(frame, copy);
  return true;
}

size_t Document::EntryCount() const {
  return data_->entryIndex.size();
}

void Document::Rebeam(int16_t firstStaff, int16_t firstMeasure, int16_t lastStaff,
                      int16_t lastMeasure) {
  firstStaff = std::max<int16_t>(firstStaff, 1);
  firstMeasure = std::max<int16_t>(firstMeasure, 1);
  lastStaff = std::min(lastStaff, data_->staffCount);
  lastMeasure = std::min(lastMeasure, data_->measureCount);
  for (int measure = firstMeasure; measure <= lastMeasure; ++measure) {
    int beat = TimeSig(int16_t(measure)).beatValue;
    for (int staff = firstStaff; staff <= lastStaff; ++staff) {
      for (int16_t layer = 0; layer < kMaxLayerCount; ++layer) {
        const FrameAddress frame{int16_t(staff), int16_t(measure), layer};
        auto entries = data_->Entries(frame);
        if (entries.empty())
          continue;
        std::vector<std::vector<EDTTuplet>> tuplets(entries.size());
        for (size_t i = 0; i < entries.size(); ++i)
          if (entries[i].flags & kEntryTupletStart)
            tuplets[i] = TupletsOf(*data_, entries[i].entryNumber);
        std::ranges::copy(ComputeBeams(entries, beat, tuplets), data_->Beams(frame).begin());
      }
    }
  }
}

std::optional<std::vector<uint8_t>> Document::Record(uint32_t tag,
                                                     std::span<const uint16_t> keys) const {
  if (keys.size() < KeyWordsForTag(tag))
    return std::nullopt;
  if (const auto* bytes = data_->FindRecord(MakeRecordKey(tag, keys.data())))
    return *bytes;
  return std::nullopt;
}

bool Document::PutEntryDetail(uint32_t tag, uint32_t entryNumber, uint16_t index,
                              std::span<const uint8_t> bytes) {
  return IsEntryDetailTag(tag) && data_->entryIndex.PutDetail(tag, entryNumber, index, bytes);
}

std::vector<RecordView> Document::EntryDetails(uint32_t entryNumber) const {
  std::vector<RecordView> out;
  data_->entryIndex.ForEachDetail(
      entryNumber, [&](uint32_t tag, uint16_t index, std::span<const uint8_t> bytes) {
        out.push_back({tag, {uint16_t(entryNumber), uint16_t(entryNumber >> 16), index}, bytes});
      });
  return out;
}

std::optional<EDTTuplet> Document::Tuplet(uint32_t entryNumber) const {
  auto bytes = data_->entryIndex.Detail(kTupletDetailTag, entryNumber, 0);
  return bytes ? LayoutOf<EDTTuplet>(*bytes) : std::nullopt;
}

bool Document::PutPreference(uint32_t tag, uint16_t number, std::span<const uint8_t> bytes) {
  if (!IsPreferenceTag(tag))
    return false;
  const uint16_t keys[1] = {number};
  data_->records[MakeRecordKey(tag, keys)].assign(bytes.begin(), bytes.end());
  return true;
}

bool Document::RemovePreference(uint32_t tag, uint16_t number) {
  const uint16_t keys[1] = {number};
  return IsPreferenceTag(tag) && data_->records.erase(MakeRecordKey(tag, keys)) != 0;
}

} // namespace scribo::engine
