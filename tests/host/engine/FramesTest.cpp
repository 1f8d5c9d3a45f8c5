// Frames through the exported host functions: load, insert, fill, save, free, reload.
#include <cstring>
#include <set>
#include <vector>

#include "EngineTestSupport.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class FramesTest : public EngineTest {
protected:
  void SetUp() override {
    EngineTest::SetUp();
    doc().AddStaff(u"Violin");
    doc().AddStaff(u"Cello");
    doc().AddMeasure();
    doc().AddMeasure(0, {6, 512}); // 6/8 written as six eighth-note beats
  }

  // Loads, lets `change` work on the frame, saves when asked, frees.
  template <class Fn> int WithFrame(FrameAddress a, Fn change) {
    EXTGF2005a* frame = host.LoadTGF(0, a.staff, a.measure, a.layer, 1, kStamp);
    EXPECT_NE(frame, nullptr);
    if (!frame)
      return 0;
    int saved = change(frame) ? host.SaveTGF(frame, kStamp) : -1;
    EXPECT_EQ(host.FreeTGF(frame, kStamp), 1);
    return saved;
  }
};

std::vector<int32_t> Positions(const std::vector<EXENTRY>& entries) {
  std::vector<int32_t> out;
  for (const EXENTRY& e : entries)
    out.push_back(int32_t(e.position));
  return out;
}

TEST_F(FramesTest, LoadGivesACopyAndNothingOutsideTheDocument) {
  doc().AddEntry({1, 1, 0}, Note(1024, 3));
  EXTGF2005a* frame = host.LoadTGF(0, 1, 1, 0, 1, kStamp);
  ASSERT_NE(frame, nullptr);
  ASSERT_EQ(frame->entryCount, 1);
  EXENTRY first;
  std::memcpy(&first, frame->entries, sizeof first);
  EXPECT_EQ(NotePitchStep(first.notes[0]), 3);
  // Changes reach the document only through a save.
  frame->entries[0].duration = 512;
  EXPECT_EQ(host.FreeTGF(frame, kStamp), 1);
  EXPECT_EQ(doc().Entries({1, 1, 0})[0].duration, 1024);

  // An empty frame inside the document loads with no entries; outside it, nothing loads.
  EXTGF2005a* empty = host.LoadTGF(0, 2, 2, 3, 1, kStamp);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->entryCount, 0);
  EXPECT_EQ(host.FreeTGF(empty, kStamp), 1);
  for (auto [staff, measure, layer] :
       {std::tuple{0, 1, 0}, {3, 1, 0}, {1, 0, 0}, {1, 3, 0}, {1, 1, 4}, {1, 1, -1}})
    EXPECT_EQ(host.LoadTGF(0, staff, measure, layer, 1, kStamp), nullptr)
        << staff << "/" << measure << "/" << layer;

  // A frame is freed once; a second free or a foreign pointer is refused.
  EXTGF2005a* again = host.LoadTGF(0, 1, 1, 0, 1, kStamp);
  EXPECT_EQ(engine().LoadedFrames(), 1);
  EXPECT_EQ(host.FreeTGF(again, kStamp), 1);
  EXPECT_EQ(host.FreeTGF(again, kStamp), 0);
  EXTGF2005a foreign{};
  EXPECT_EQ(host.FreeTGF(&foreign, kStamp), 0);
  EXPECT_EQ(engine().CallCount(HostCall::LoadTGF), 9);
}

TEST_F(FramesTest, InsertAtStartMiddleAndEndThenSaveAndReload) {
  for (int i = 0; i < 4; ++i)
    doc().AddEntry({1, 1, 0}, Note(1024, int16_t(i)));
  std::vector<EXENTRY> before = doc().Entries({1, 1, 0});

  int saved = WithFrame({1, 1, 0}, [&](EXTGF2005a* frame) {
    // End, middle, start: each new slot is zeroed and the tail keeps its order.
    EXPECT_EQ(host.InsertEXENTRY(frame, 4, 1, kStamp), 1);
    EXPECT_EQ(host.InsertEXENTRY(frame, 2, 2, kStamp), 1);
    EXPECT_EQ(host.InsertEXENTRY(frame, 0, 1, kStamp), 1);
    EXPECT_EQ(frame->entryCount, 8);
    const std::vector<int> original = {-1, 0, 1, -1,
                                       -1, 2, 3, -1}; // index into `before`, -1: new slot
    for (int i = 0; i < 8; ++i) {
      EXENTRY e;
      std::memcpy(&e, frame->entries + i, sizeof e);
      if (original[size_t(i)] < 0) {
        EXENTRY zero{};
        EXPECT_EQ(std::memcmp(&e, &zero, sizeof e), 0) << "slot " << i << " is not zeroed";
        // Fill the slot as the subdivision pass does: a copy with number 0, a position of its own.
        e = before[0];
        e.entryNumber = 0;
        e.position = 5000 + i;
        std::memcpy(frame->entries + i, &e, sizeof e);
      } else {
        EXPECT_EQ(uint32_t(e.entryNumber),
                  uint32_t(before[size_t(original[size_t(i)])].entryNumber))
            << "slot " << i;
      }
    }
    // Indexes outside 0..count and counts below 1 are refused and change nothing.
    EXPECT_EQ(host.InsertEXENTRY(frame, 9, 1, kStamp), 0);
    EXPECT_EQ(host.InsertEXENTRY(frame, -1, 1, kStamp), 0);
    EXPECT_EQ(host.InsertEXENTRY(frame, 0, 0, kStamp), 0);
    EXPECT_EQ(frame->entryCount, 8);
    return true;
  });
  EXPECT_EQ(saved, 1);

  std::vector<EXENTRY> after = doc().Entries({1, 1, 0});
  ASSERT_EQ(after.size(), 8u);
  // Positions are kept as given, not sorted; new entries got new document-unique numbers.
  EXPECT_EQ(Positions(after), (std::vector<int32_t>{5000, 0, 1024, 5003, 5004, 2048, 3072, 5007}));
  std::set<uint32_t> numbers;
  for (const EXENTRY& e : after) {
    EXPECT_NE(uint32_t(e.entryNumber), 0u);
    numbers.insert(uint32_t(e.entryNumber));
  }
  EXPECT_EQ(numbers.size(), 8u);
  EXPECT_EQ(doc().EntryCount(), 8u);

  // Reloading shows what was saved, numbers included.
  WithFrame({1, 1, 0}, [&](EXTGF2005a* frame) {
    EXPECT_EQ(frame->entryCount, 8);
    EXPECT_EQ(std::memcmp(frame->entries, after.data(), after.size() * sizeof(EXENTRY)), 0);
    return false;
  });
}

TEST_F(FramesTest, SaveNumbersEntriesUniquelyAcrossTheDocument) {
  uint32_t elsewhere = doc().AddEntry({2, 1, 0}, Note(1024));
  uint32_t here = doc().AddEntry({1, 1, 0}, Note(1024));
  WithFrame({1, 1, 0}, [&](EXTGF2005a* frame) {
    EXPECT_EQ(host.InsertEXENTRY(frame, 1, 3, kStamp), 1);
    frame->entries[1].entryNumber = here;      // a copy that kept its source's number
    frame->entries[2].entryNumber = elsewhere; // a number owned by another frame
    frame->entries[3].entryNumber = 0;
    EXPECT_EQ(host.SaveTGF(frame, kStamp), 1);
    // The numbers given are written back into the frame the plug-in still holds.
    EXPECT_EQ(uint32_t(frame->entries[0].entryNumber), here);
    for (int i = 1; i < 4; ++i)
      EXPECT_GT(uint32_t(frame->entries[i].entryNumber), std::max(here, elsewhere)) << i;
    return false;
  });
  std::vector<EXENTRY> saved = doc().Entries({1, 1, 0});
  std::set<uint32_t> numbers{elsewhere};
  for (const EXENTRY& e : saved)
    numbers.insert(uint32_t(e.entryNumber));
  EXPECT_EQ(numbers.size(), 5u);
  EXPECT_EQ(doc().FindEntry(elsewhere), (FrameAddress{2, 1, 0}));
}

TEST_F(FramesTest, InsertionStopsAt32767AndGrowsWithoutPerEntryReallocation) {
  std::vector<EXENTRY> many(32760);
  for (size_t i = 0; i < many.size(); ++i) {
    many[i].duration = 4;
    many[i].position = int32_t(i * 4);
  }
  ASSERT_TRUE(doc().ReplaceEntries({1, 1, 0}, many));
  WithFrame({1, 1, 0}, [&](EXTGF2005a* frame) {
    EXPECT_EQ(host.InsertEXENTRY(frame, 100, 7, kStamp), 1);
    EXPECT_EQ(frame->entryCount, 32767);
    EXPECT_EQ(host.InsertEXENTRY(frame, 0, 1, kStamp), 0);
    EXPECT_EQ(frame->entryCount, 32767);
    EXPECT_EQ(int32_t(frame->entries[107].position), 400); // the tail moved by seven slots
    return false;
  });

  // A thousand single insertions at the front move the array only a handful of times.
  WithFrame({2, 2, 1}, [&](EXTGF2005a* frame) {
    int moves = 0;
    for (int i = 0; i < 1000; ++i) {
      EXENTRY* before = frame->entries;
      EXPECT_EQ(host.InsertEXENTRY(frame, 0, 1, kStamp), 1);
      frame->entries[0].position = 1000 - i;
      moves += frame->entries != before;
    }
    EXPECT_LE(moves, 10);
    EXPECT_EQ(int32_t(frame->entries[0].position), 1);
    EXPECT_EQ(int32_t(frame->entries[999].position), 1000);
    return false;
  });
}

TEST_F(FramesTest, DeleteAndFailingSavesAndInsertions) {
  for (int i = 0; i < 5; ++i)
    doc().AddEntry({1, 1, 0}, Note(512));
  std::vector<EXENTRY> before = doc().Entries({1, 1, 0});
  doc().PutEntryDetail(kTupletDetailTag, before[2].entryNumber, 0, std::vector<uint8_t>(30, 7));

  engine().SetFailing(HostCall::SaveTGF, true);
  engine().SetFailing(HostCall::InsertEXENTRY, true);
  EXPECT_EQ(WithFrame({1, 1, 0},
                      [&](EXTGF2005a* frame) {
                        EXPECT_EQ(host.InsertEXENTRY(frame, 0, 1, kStamp), 0);
                        EXPECT_EQ(frame->entryCount, 5);
                        frame->entries[0].duration = 1;
                        return true;
                      }),
            0);
  EXPECT_EQ(doc().Entries({1, 1, 0})[0].duration, 512);
  engine().SetFailing(HostCall::SaveTGF, false);
  engine().SetFailing(HostCall::InsertEXENTRY, false);

  EXPECT_EQ(WithFrame({1, 1, 0},
                      [&](EXTGF2005a* frame) {
                        EXPECT_EQ(host.DeleteEXENTRY(frame, 3, 3, kStamp), 0); // past the end
                        EXPECT_EQ(host.DeleteEXENTRY(frame, 1, 2, kStamp), 1);
                        EXPECT_EQ(frame->entryCount, 3);
                        return true;
                      }),
            1);
  std::vector<EXENTRY> after = doc().Entries({1, 1, 0});
  ASSERT_EQ(after.size(), 3u);
  EXPECT_EQ(uint32_t(after[1].entryNumber), uint32_t(before[3].entryNumber));
  // The deleted entries are gone from the document, their detail records with them.
  EXPECT_FALSE(doc().FindEntry(before[2].entryNumber));
  EXPECT_TRUE(doc().EntryDetails(before[2].entryNumber).empty());

  // A frame whose staff vanished (the document was cleared) cannot be saved.
  EXTGF2005a* frame = host.LoadTGF(0, 1, 1, 0, 1, kStamp);
  doc().Clear();
  EXPECT_EQ(host.SaveTGF(frame, kStamp), 0);
  EXPECT_EQ(host.FreeTGF(frame, kStamp), 1);
}

TEST_F(FramesTest, RebeamGroupsEighthsByBeat) {
  // 4/4: eighths pair up by quarter beat; a rest and a quarter break groups; a lone eighth
  // is not beamed.
  for (int i = 0; i < 3; ++i)
    doc().AddEntry({1, 1, 0}, Note(512));
  doc().AddEntry({1, 1, 0}, Rest(512));
  doc().AddEntry({1, 1, 0}, Note(1024));
  doc().AddEntry({1, 1, 0}, Note(256));
  doc().AddEntry({1, 1, 0}, Note(256));
  doc().AddEntry({1, 1, 0}, Note(512));
  // 6/8 as two dotted-quarter beats: notes within one dotted quarter share a beam, the fourth
  // eighth starts the second beat.
  doc().AddEntry({1, 2, 0}, Note(512));
  doc().AddEntry({1, 2, 0}, Note(256));
  doc().AddEntry({1, 2, 0}, Note(256));
  doc().AddEntry({1, 2, 0}, Note(512));
  doc().SetTimeSig(2, {2, 1536});
  doc().AddEntry({1, 2, 1}, Note(512, 0, 0));
  doc().AddEntry({1, 2, 1}, Note(512));
  doc().AddEntry({1, 2, 1}, Note(512));
  doc().AddEntry({1, 2, 1}, Note(512));

  EREGION region{};
  region.startStaff = 1;
  region.startMeasure = 1;
  region.endStaff = 1;
  region.endMeasure = 2;
  EXPECT_EQ(host.RebeamRegion(&region, nullptr, kStamp), 1);
  EXPECT_EQ(host.RebeamRegion(nullptr, nullptr, kStamp), 0);
  EXPECT_EQ(engine().CallCount(HostCall::RebeamRegion), 2);

  using B = BeamRole;
  EXPECT_EQ(doc().Beams({1, 1, 0}), (std::vector<B>{B::Start, B::End, B::None, B::None, B::None,
                                                    B::Start, B::Continue, B::End}));
  EXPECT_EQ(doc().Beams({1, 2, 0}), (std::vector<B>{B::Start, B::Continue, B::Continue, B::End}));
  EXPECT_EQ(doc().Beams({1, 2, 1}), (std::vector<B>{B::Start, B::Continue, B::End, B::None}));
}

} // namespace
