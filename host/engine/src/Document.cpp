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

std::u16string TextOf(const std::vector<uint8_t>& bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  for (size_t i = 0; i < text.size(); ++i)
    text[i] = char16_t(bytes[2 * i] | (bytes[2 * i + 1] << 8));
  return text;
}

RecordKey TwoWordKey(uint32_t tag, int16_t first) {
  const uint16_t keys[2] = {uint16_t(first), 0};
  return MakeRecordKey(tag, keys);
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

} // namespace

void Document::Clear() {
  data_->ResetToEmpty();
}

int16_t Document::AddStaff(std::u16string_view name, std::u16string_view secondName) {
  if (data_->staffCount == INT16_MAX)
    return -1;
  EDTStaffSpec2014 spec{};
  if (!name.empty())
    spec.firstNameBlock = AddTextBlock(AddRawText(name));
  if (!secondName.empty())
    spec.secondNameBlock = AddTextBlock(AddRawText(secondName));
  int16_t staff = ++data_->staffCount;
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
  int16_t measure = ++data_->measureCount;
  data_->records[TwoWordKey(kTagMeasureSpec, measure)] = BytesOf(spec);
  return measure;
}

int16_t Document::StaffCount() const {
  return data_->staffCount;
}
int16_t Document::MeasureCount() const {
  return data_->measureCount;
}

std::u16string Document::StaffName(int16_t staff) const {
  auto spec = LayoutOf<EDTStaffSpec2014>(data_->FindRecord(TwoWordKey(kTagStaffSpec, staff)));
  if (!spec)
    return {};
  for (int16_t block : {spec->firstNameBlock, spec->secondNameBlock}) {
    if (block == 0)
      continue;
    auto text = LayoutOf<EDTTextBlock25_4>(data_->FindRecord(TwoWordKey(kTagTextBlock, block)));
    if (!text)
      continue;
    if (auto characters = RawText(text->rawText))
      return *characters;
  }
  return {};
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

bool Document::SetKeySignature(int16_t measure, int16_t keySig) {
  return Change<EDTMeasureSpec2014>(*data_, TwoWordKey(kTagMeasureSpec, measure),
                                    [&](EDTMeasureSpec2014& spec) { spec.keySig = keySig; });
}

bool Document::SetTimeSig(int16_t measure, TimeSignature time) {
  return Change<EDTMeasureSpec2014>(*data_, TwoWordKey(kTagMeasureSpec, measure),
                                    [&](EDTMeasureSpec2014& spec) {
                                      spec.timeSigBeats = time.beats;
                                      spec.timeSigBeatValue = time.beatValue;
                                    });
}

bool Document::SetStaffTransposition(int16_t staff, int16_t word) {
  return Change<EDTStaffSpec2014>(*data_, TwoWordKey(kTagStaffSpec, staff),
                                  [&](EDTStaffSpec2014& spec) { spec.staffTrans = word; });
}

bool Document::IsValid(FrameAddress frame) const {
  return data_->IsValid(frame);
}

uint32_t Document::AddEntry(FrameAddress frame, const EntrySpec& spec) {
  if (!data_->IsValid(frame) || spec.notes.size() > size_t(kMaxNotesPerEntry))
    return 0;
  EXENTRY e{};
  e.duration = spec.duration;
  e.actualDuration = spec.actualDuration < 0 ? spec.duration : spec.actualDuration;
  if (spec.position >= 0) {
    e.position = spec.position;
  } else {
    auto it = data_->frames.find(MakeFrameId(frame));
    if (it != data_->frames.end() && !it->second.entries.empty()) {
      const EXENTRY& last = it->second.entries.back();
      e.position = last.position + last.actualDuration;
    }
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
  if (!data_->IsValid(frame) || entry.noteCount < 0 || entry.noteCount > kMaxNotesPerEntry)
    return 0;
  FrameId id = MakeFrameId(frame);
  FrameData& f = data_->frames[id];
  if (f.entries.size() >= size_t(kMaxFrameEntries))
    return 0;
  // Packed fields are copied out, never bound to references.
  uint32_t number = entry.entryNumber;
  if (number == 0 || data_->entryIndex.count(number))
    number = data_->NewEntryNumber();
  else if (number > data_->lastEntryNumber)
    data_->lastEntryNumber = number;
  f.entries.push_back(entry);
  f.entries.back().entryNumber = number;
  f.beams.push_back(BeamRole::None);
  data_->entryIndex[number] = id;
  return number;
}

std::vector<EXENTRY> Document::Entries(FrameAddress frame) const {
  auto it = data_->frames.find(MakeFrameId(frame));
  if (it == data_->frames.end() || !data_->IsValid(frame))
    return {};
  return it->second.entries;
}

std::vector<BeamRole> Document::Beams(FrameAddress frame) const {
  auto it = data_->frames.find(MakeFrameId(frame));
  if (it == data_->frames.end() || !data_->IsValid(frame))
    return {};
  return it->second.beams;
}

std::optional<FrameAddress> Document::FindEntry(uint32_t entryNumber) const {
  auto it = data_->entryIndex.find(entryNumber);
  if (it == data_->entryIndex.end())
    return std::nullopt;
  return FrameAddressOf(it->second);
}

std::optional<EXENTRY> Document::Entry(uint32_t entryNumber) const {
  auto it = data_->entryIndex.find(entryNumber);
  if (it == data_->entryIndex.end())
    return std::nullopt;
  for (const EXENTRY& e : data_->frames.at(it->second).entries)
    if (e.entryNumber == entryNumber)
      return e;
  return std::nullopt;
}

bool Document::ReplaceEntries(FrameAddress frame, std::span<const EXENTRY> entries) {
  if (!data_->IsValid(frame) || entries.size() > size_t(kMaxFrameEntries))
    return false;
  for (const EXENTRY& e : entries)
    if (e.noteCount < 0 || e.noteCount > kMaxNotesPerEntry)
      return false;
  std::vector<EXENTRY> copy(entries.begin(), entries.end());
  data_->StoreFrame(MakeFrameId(frame), copy);
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
        auto it = data_->frames.find(MakeFrameId({int16_t(staff), int16_t(measure), layer}));
        if (it != data_->frames.end())
          it->second.beams = ComputeBeams(it->second.entries, beat);
      }
    }
  }
}

bool Document::PutRecord(uint32_t tag, std::span<const uint16_t> keys,
                         std::span<const uint8_t> bytes) {
  if (keys.size() < KeyWordsForTag(tag))
    return false;
  data_->records[MakeRecordKey(tag, keys.data())].assign(bytes.begin(), bytes.end());
  return true;
}

std::optional<std::vector<uint8_t>> Document::Record(uint32_t tag,
                                                     std::span<const uint16_t> keys) const {
  if (keys.size() < KeyWordsForTag(tag))
    return std::nullopt;
  if (const auto* bytes = data_->FindRecord(MakeRecordKey(tag, keys.data())))
    return *bytes;
  return std::nullopt;
}

bool Document::RemoveRecord(uint32_t tag, std::span<const uint16_t> keys) {
  if (keys.size() < KeyWordsForTag(tag))
    return false;
  return data_->records.erase(MakeRecordKey(tag, keys.data())) != 0;
}

std::vector<RecordView> Document::Records(uint32_t tag) const {
  std::vector<RecordView> out;
  for (auto it = data_->records.lower_bound({tag, 0});
       it != data_->records.end() && it->first.tag == tag; ++it)
    out.push_back({tag, KeyWords(it->first), it->second});
  return out;
}

bool Document::PutEntryDetail(uint32_t tag, uint32_t entryNumber, uint16_t index,
                              std::span<const uint8_t> bytes) {
  if (!IsEntryDetailTag(tag) || !data_->entryIndex.count(entryNumber))
    return false;
  data_->records[EntryDetailKey(tag, entryNumber, index)].assign(bytes.begin(), bytes.end());
  return true;
}

std::optional<std::vector<uint8_t>> Document::EntryDetail(uint32_t tag, uint32_t entryNumber,
                                                          uint16_t index) const {
  if (!IsEntryDetailTag(tag))
    return std::nullopt;
  if (const auto* bytes = data_->FindRecord(EntryDetailKey(tag, entryNumber, index)))
    return *bytes;
  return std::nullopt;
}

std::vector<RecordView> Document::EntryDetails(uint32_t entryNumber) const {
  std::vector<RecordView> out;
  ForEachDetailRange(data_->records, entryNumber, [&](auto first, auto last) {
    for (; first != last; ++first)
      out.push_back({first->first.tag, KeyWords(first->first), first->second});
  });
  return out;
}

std::optional<EDTTuplet> Document::Tuplet(uint32_t entryNumber) const {
  return LayoutOf<EDTTuplet>(data_->FindRecord(EntryDetailKey(kTupletDetailTag, entryNumber, 0)));
}

bool Document::PutPreference(uint32_t tag, uint16_t number, std::span<const uint8_t> bytes) {
  if (!IsPreferenceTag(tag))
    return false;
  const uint16_t keys[1] = {number};
  return PutRecord(tag, keys, bytes);
}

bool Document::RemovePreference(uint32_t tag, uint16_t number) {
  const uint16_t keys[1] = {number};
  return IsPreferenceTag(tag) && RemoveRecord(tag, keys);
}

bool Document::PutOtherRecord(uint32_t tag, uint16_t owner, uint16_t index,
                              std::span<const uint8_t> bytes) {
  if (!IsOtherRecordTag(tag) || bytes.size() != kOtherRecordSize)
    return false;
  const uint16_t keys[2] = {owner, index};
  return PutRecord(tag, keys, bytes);
}

std::optional<std::vector<uint8_t>> Document::OtherRecord(uint32_t tag, uint16_t owner,
                                                          uint16_t index) const {
  const uint16_t keys[2] = {owner, index};
  return IsOtherRecordTag(tag) ? Record(tag, keys) : std::nullopt;
}

int16_t Document::AddRawText(std::u16string_view text) {
  int16_t number = data_->rawTextCount;
  do {
    if (number == INT16_MAX)
      return 0;
    ++number;
  } while (data_->FindRecord(TwoWordKey(kTagRawText, number)));
  data_->rawTextCount = number;
  data_->records[TwoWordKey(kTagRawText, number)] = TextBytes(text);
  return number;
}

std::optional<std::u16string> Document::RawText(int16_t text) const {
  if (const auto* bytes = data_->FindRecord(TwoWordKey(kTagRawText, text)))
    return TextOf(*bytes);
  return std::nullopt;
}

int16_t Document::AddTextBlock(int16_t rawText) {
  int16_t number = data_->textBlockCount;
  do {
    if (number == INT16_MAX)
      return 0;
    ++number;
  } while (data_->FindRecord(TwoWordKey(kTagTextBlock, number)));
  data_->textBlockCount = number;
  EDTTextBlock25_4 block{};
  block.rawText = rawText;
  data_->records[TwoWordKey(kTagTextBlock, number)] = BytesOf(block);
  return number;
}

} // namespace scribo::engine
