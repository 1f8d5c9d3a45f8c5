// Frames through the exported host functions: what a host must get right that the subdivision
// command never asks for (frames outside the document, freed or foreign frames, ranges outside
// the frame, full frames, deleted entries, entry numbers a plug-in copied).
#include <dlfcn.h>

#include <cstring>
#include <set>
#include <tuple>

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

} // namespace
