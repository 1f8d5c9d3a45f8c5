// Frames through the exported host functions: what a host must get right that the subdivision
// command never asks for (frames outside the document, freed or foreign frames, ranges outside
// the frame, full frames, deleted entries, entry numbers a plug-in copied), and a seeded run of
// saves and detail records checked against a plain model of the document.
#include <dlfcn.h>

#include <cstring>
#include <map>
#include <random>
#include <set>
#include <tuple>
#include <vector>

#include "EngineTestSupport.h"
#include "TestSupport.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class FramesTest : public EngineTest {
protected:
  void SetUp() override {
    EngineTest::SetUp();
    doc().AddStaff();
    doc().AddStaff();
    doc().AddMeasure();
    doc().AddMeasure();
  }
};

TEST(EngineImage, ExportsOnlyTheHostFunctionsItImplements) {
  void* image = scribotest::LoadBundle(scribotest::BuildDir() / "NotationEngine.bundle");
  EXPECT_NE(dlsym(image, "SX_LoadTGF"), nullptr);
  for (const char* absent : {"SX_RebarRegion", "SX_GetPartName", "SX_FontDialog", "main"})
    EXPECT_EQ(dlsym(image, absent), nullptr) << absent;
  dlclose(image);
}

TEST_F(FramesTest, OnlyFramesOfTheDocumentLoadAndEachIsFreedOnce) {
  for (auto [staff, measure, layer] :
       {std::tuple{0, 1, 0}, {3, 1, 0}, {1, 0, 0}, {1, 3, 0}, {1, 1, 4}, {1, 1, -1}})
    EXPECT_EQ(SX_LoadTGF(0, staff, measure, layer, 1, kStamp), nullptr)
        << staff << "/" << measure << "/" << layer;
  EXTGF2005a* frame = SX_LoadTGF(0, 2, 2, 3, 1, kStamp);
  ASSERT_NE(frame, nullptr);
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 0);
  EXTGF2005a foreign{};
  EXPECT_EQ(SX_FreeTGF(&foreign, kStamp), 0);
}

TEST_F(FramesTest, InsertionsAndDeletionsStayInsideTheFrame) {
  for (int i = 0; i < 3; ++i)
    doc().AddEntry({1, 1, 0}, Note(512));
  std::vector<EXENTRY> before = doc().Entries({1, 1, 0});
  ASSERT_TRUE(
      doc().PutEntryDetail(kTupletDetailTag, before[1].entryNumber, 0, BytesOf(EDTTuplet{})));
  EXTGF2005a* frame = SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
  for (auto [index, count] : {std::pair{4, 1}, {-1, 1}, {0, 0}})
    EXPECT_EQ(SX_InsertEXENTRY(frame, index, count, kStamp), 0) << index << "+" << count;
  for (auto [index, count] : {std::pair{3, 1}, {1, 3}, {0, 0}, {-1, 1}})
    EXPECT_EQ(SX_DeleteEXENTRY(frame, index, count, kStamp), 0) << index << "+" << count;
  EXPECT_EQ(frame->entryCount, 3);

  // A zeroed slot before the first entry, then the first two entries deleted.
  ASSERT_EQ(SX_InsertEXENTRY(frame, 0, 1, kStamp), 1);
  const EXENTRY zero{};
  EXPECT_EQ(std::memcmp(frame->entries, &zero, sizeof zero), 0);
  EXPECT_EQ(uint32_t(frame->entries[1].entryNumber), uint32_t(before[0].entryNumber));
  ASSERT_EQ(SX_DeleteEXENTRY(frame, 1, 2, kStamp), 1);
  EXPECT_EQ(SX_SaveTGF(frame, kStamp), 1);
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);
  std::vector<EXENTRY> after = doc().Entries({1, 1, 0});
  ASSERT_EQ(after.size(), 2u);
  EXPECT_EQ(uint32_t(after[1].entryNumber), uint32_t(before[2].entryNumber));
  EXPECT_FALSE(doc().FindEntry(before[1].entryNumber));
  EXPECT_TRUE(doc().EntryDetails(before[1].entryNumber).empty()) << "its tuplet went with it";

  // A frame holds at most 32767 entries; the tail moves past the inserted slots.
  std::vector<EXENTRY> many(32760);
  for (size_t i = 0; i < many.size(); ++i)
    many[i].position = int32_t(i);
  ASSERT_TRUE(doc().ReplaceEntries({2, 1, 0}, many));
  frame = SX_LoadTGF(0, 2, 1, 0, 1, kStamp);
  EXPECT_EQ(SX_InsertEXENTRY(frame, 100, 7, kStamp), 1);
  EXPECT_EQ(SX_InsertEXENTRY(frame, 0, 1, kStamp), 0);
  EXPECT_EQ(frame->entryCount, 32767);
  EXPECT_EQ(int32_t(frame->entries[107].position), 100);
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);
}

TEST_F(FramesTest, SavesGiveCopiedAndForeignEntryNumbersNewOnes) {
  uint32_t elsewhere = doc().AddEntry({2, 1, 0}, Note(1024));
  uint32_t here = doc().AddEntry({1, 1, 0}, Note(1024));
  EXTGF2005a* frame = SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
  ASSERT_EQ(SX_InsertEXENTRY(frame, 1, 2, kStamp), 1);
  frame->entries[1].entryNumber = here;      // a copy that kept its source's number
  frame->entries[2].entryNumber = elsewhere; // a number another frame owns
  EXPECT_EQ(SX_SaveTGF(frame, kStamp), 1);
  // The numbers given are written back into the frame the plug-in still holds.
  EXPECT_EQ(uint32_t(frame->entries[0].entryNumber), here);
  std::set<uint32_t> numbers{elsewhere};
  for (int i = 0; i < 3; ++i)
    numbers.insert(uint32_t(frame->entries[i].entryNumber));
  EXPECT_EQ(numbers.size(), 4u);
  EXPECT_EQ(doc().FindEntry(elsewhere), (FrameAddress{2, 1, 0}));
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);

  // A frame whose staff has gone (the document was cleared) has nowhere to be saved.
  frame = SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
  doc().Clear();
  EXPECT_EQ(SX_SaveTGF(frame, kStamp), 0);
  EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);
}

// The i-th sixteenth of a frame: beamed by the beat on a rebeam.
EXENTRY Sixteenth(uint32_t number, size_t i) {
  EXENTRY e{};
  e.entryNumber = number;
  e.flags = kEntryIsNote;
  e.duration = 256;
  e.actualDuration = 256;
  e.position = int32_t(256 * i);
  return e;
}

// Saves of random frames whose entry numbers are picked to collide (0, repeats, numbers other
// frames own, numbers that share a place in the engine's tables or take its last places,
// numbers at the top of the range so that new ones start again from 1), with entries added,
// detail records put, created at the next free index and deleted, and rebeams, in between. After
// every step the document answers as a plain model does: which frame holds each number, the beam
// role each entry keeps, each entry's records, and the walk over every tag both ways.
TEST_F(FramesTest, SeededSavesKeepNumbersRolesAndDetailsAsAModelDoes) {
  std::mt19937 rng(1609);
  auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); };
  std::vector<FrameAddress> frames;
  for (int16_t n = 0; n < 16; ++n)
    frames.push_back({int16_t(n % 2 + 1), int16_t(n / 2 % 2 + 1), int16_t(n / 4)});
  const uint32_t tags[] = {FourCharTag("EAAA"), FourCharTag("EBBB"), FourCharTag("ECCC")};
  std::vector<std::vector<uint32_t>> lists(frames.size());
  std::map<uint32_t, size_t> owner; // entry number -> its frame
  std::map<uint32_t, BeamRole> roles;
  using DetailKey = std::tuple<uint32_t, uint32_t, uint16_t>; // tag, entry, index
  std::map<DetailKey, std::vector<uint8_t>> details;
  auto anyEntry = [&] { return std::next(owner.begin(), pick(0, int(owner.size()) - 1))->first; };
  // Details go to a few entries, so that their chains grow long.
  auto fewEntry = [&] {
    return std::next(owner.begin(), pick(0, std::min(int(owner.size()), 6) - 1))->first;
  };
  auto number = [&] {
    const uint32_t low = uint32_t(pick(0, 70));
    const uint32_t choices[] = {0,
                                owner.empty() ? 0 : anyEntry(),
                                low + 1,
                                (uint32_t(pick(1, 6)) << 16) | low,
                                0xFFFFu - low % 9,
                                0xFFFFFFFFu - low % 4,
                                uint32_t(pick(1, 8)) * 0x10001u};
    return choices[pick(0, 6)];
  };

  for (int step = 0; step < 500; ++step) {
    SCOPED_TRACE(step);
    const int action = pick(0, 11);
    const uint32_t tag = tags[pick(0, 2)];
    if (action < 5) {
      const size_t f = size_t(pick(0, int(frames.size()) - 1));
      std::vector<EXENTRY> asked(size_t(pick(0, 9) ? pick(0, 14) : pick(50, 200)));
      for (size_t i = 0; i < asked.size(); ++i)
        asked[i] = Sixteenth(number(), i);
      ASSERT_TRUE(doc().ReplaceEntries(frames[f], asked));
      auto stored = doc().Entries(frames[f]);
      auto beams = doc().Beams(frames[f]);
      ASSERT_EQ(stored.size(), asked.size());
      std::set<uint32_t> seen;
      for (size_t i = 0; i < asked.size(); ++i) {
        const uint32_t wanted = asked[i].entryNumber, got = stored[i].entryNumber;
        const auto held = owner.find(wanted);
        if (wanted != 0 && !seen.count(wanted) && (held == owner.end() || held->second == f))
          EXPECT_EQ(got, wanted) << i;
        else
          EXPECT_TRUE(got != 0 && !owner.count(got) && !seen.count(got)) << i << ": " << got;
        EXPECT_EQ(beams[i], owner.count(got) ? roles[got] : BeamRole::None) << i;
        roles[got] = beams[i];
        seen.insert(got);
      }
      for (uint32_t gone : lists[f]) {
        if (seen.count(gone))
          continue;
        owner.erase(gone);
        roles.erase(gone);
        std::erase_if(details, [&](const auto& d) { return std::get<1>(d.first) == gone; });
      }
      lists[f].assign(seen.begin(), seen.end());
      for (uint32_t kept : seen)
        owner[kept] = f;
    } else if (action == 5) {
      doc().Rebeam(1, 1, 2, 2);
      for (const FrameAddress& frame : frames)
        for (size_t i = 0; i < doc().Entries(frame).size(); ++i)
          roles[uint32_t(doc().Entries(frame)[i].entryNumber)] = doc().Beams(frame)[i];
    } else if (action == 6) {
      const size_t f = size_t(pick(0, int(frames.size()) - 1));
      const EXENTRY added = Sixteenth(number(), lists[f].size());
      const uint32_t wanted = added.entryNumber, got = doc().AddEntry(frames[f], added);
      if (wanted != 0 && !owner.count(wanted))
        EXPECT_EQ(got, wanted);
      else
        EXPECT_TRUE(got != 0 && !owner.count(got)) << got;
      owner[got] = f;
      roles[got] = BeamRole::None;
      lists[f].push_back(got);
      auto entries = doc().Entries(frames[f]);
      for (size_t i = 0; i < entries.size(); ++i)
        EXPECT_EQ(doc().Beams(frames[f])[i], roles[uint32_t(entries[i].entryNumber)]) << i;
    } else if (action < 9 && !owner.empty()) {
      const uint32_t entry = fewEntry();
      const uint16_t index = pick(0, 4) ? uint16_t(pick(0, 3)) : kNextFreeDetailIndex;
      std::vector<uint8_t> body(size_t(pick(1, 300)), uint8_t(pick(0, 255)));
      ASSERT_TRUE(doc().PutEntryDetail(tag, entry, index, body));
      details[{tag, entry, index}] = body;
    } else if (action < 11 && !owner.empty()) {
      const uint32_t entry = fewEntry();
      uint16_t key[3] = {uint16_t(entry), uint16_t(entry >> 16), kNextFreeDetailIndex};
      std::vector<uint8_t> body(size_t(pick(0, 40)), uint8_t(pick(0, 255)));
      uint16_t next = 0;
      for (const auto& [k, b] : details)
        if (std::get<0>(k) == tag && std::get<1>(k) == entry && std::get<2>(k) != 0xFFFF)
          next = uint16_t(std::get<2>(k) + 1);
      ASSERT_EQ(SX_CreateEData(tag, key, body.data(), uint32_t(body.size()), kStamp), 1);
      EXPECT_EQ(key[2], next);
      details[{tag, entry, next}] = body;
    } else if (!details.empty()) {
      const auto it = std::next(details.begin(), pick(0, int(details.size()) - 1));
      const auto [t, entry, index] = it->first;
      uint16_t key[3] = {uint16_t(entry), uint16_t(entry >> 16), index};
      EXPECT_EQ(SX_DeleteEData(t, key, kStamp), 1);
      details.erase(it);
    }

    ASSERT_EQ(doc().EntryCount(), owner.size());
    using Record = std::tuple<uint32_t, uint16_t, std::vector<uint8_t>>;
    std::map<uint32_t, std::vector<Record>> expected, found;
    for (const auto& [k, b] : details)
      expected[std::get<1>(k)].emplace_back(std::get<0>(k), std::get<2>(k), b);
    for (const auto& [n, f] : owner) {
      ASSERT_EQ(doc().FindEntry(n), frames[f]) << n;
      for (const RecordView& r : doc().EntryDetails(n))
        found[n].emplace_back(r.tag, r.keys[2],
                              std::vector<uint8_t>(r.bytes.begin(), r.bytes.end()));
    }
    ASSERT_EQ(found, expected);
    for (uint32_t t : tags) {
      std::vector<std::pair<uint32_t, uint16_t>> walk, forward, backward;
      for (const auto& [k, b] : details)
        if (std::get<0>(k) == t)
          walk.emplace_back(std::get<1>(k), std::get<2>(k));
      uint16_t key[3] = {0, 0, 0};
      while (SX_NextEData(t, key, nullptr, 0, kStamp))
        forward.emplace_back(key[0] | (uint32_t(key[1]) << 16), key[2]);
      uint16_t last[3] = {0xFFFF, 0xFFFF, 0xFFFF};
      while (SX_PreviousEData(t, last, nullptr, 0, kStamp))
        backward.emplace(backward.begin(), last[0] | (uint32_t(last[1]) << 16), last[2]);
      ASSERT_EQ(forward, walk);
      ASSERT_EQ(backward, walk);
    }
  }
}

} // namespace
