// Edit brackets through the exported host functions: the outermost start takes a snapshot,
// cancel restores it, end keeps it as the one undo step. Mass edits know their own handles.
#include "EngineTestSupport.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class EditsTest : public EngineTest {
protected:
  void SetUp() override {
    EngineTest::SetUp();
    doc().AddStaff();
    doc().AddMeasure();
    original_ = doc().AddEntry({1, 1, 0}, Note(2048));
  }

  // What the subdivision pass does to a frame: a second entry after the first.
  void SplitFirstEntry() {
    EXTGF2005a* frame = SX_LoadTGF(0, 1, 1, 0, 1, kStamp);
    ASSERT_EQ(SX_InsertEXENTRY(frame, 1, 1, kStamp), 1);
    frame->entries[1].position = 1024;
    EXPECT_EQ(SX_SaveTGF(frame, kStamp), 1);
    EXPECT_EQ(SX_FreeTGF(frame, kStamp), 1);
  }

  uint32_t original_ = 0;
};

TEST_F(EditsTest, CancelRestoresAndUndoRevertsTheLastEndedEdit) {
  EXPECT_EQ(SX_StartScriboEdit("Subdivide", kStamp), 1);
  SplitFirstEntry();
  EXPECT_EQ(doc().EntryCount(), 2u);
  SX_CancelScriboEdit(kStamp);
  EXPECT_EQ(doc().EntryCount(), 1u);
  EXPECT_FALSE(engine().CanUndo());

  // Nested brackets make one undo step, taken at the outermost start.
  EXPECT_EQ(SX_StartScriboEdit("Subdivide", kStamp), 1);
  EXPECT_EQ(SX_StartScriboEdit("inner", kStamp), 1);
  SplitFirstEntry();
  EXPECT_EQ(SX_EndScriboEdit(kStamp), 1);
  EXPECT_FALSE(engine().CanUndo());
  EXPECT_EQ(SX_EndScriboEdit(kStamp), 1);
  EXPECT_EQ(SX_EndScriboEdit(kStamp), 0); // nothing open
  ASSERT_TRUE(engine().CanUndo());
  EXPECT_EQ(engine().LastEditDescription(), "Subdivide");

  EXPECT_TRUE(engine().Undo());
  auto undone = doc().Entries({1, 1, 0});
  ASSERT_EQ(undone.size(), 1u);
  EXPECT_EQ(uint32_t(undone[0].entryNumber), original_);
  EXPECT_FALSE(engine().Undo());
}

TEST_F(EditsTest, MassEditsRefuseHandlesTheyDidNotGive) {
  engine().SetProgressDisplay(ProgressDisplay::Off);
  void* job = SX_StartMassEdit(nullptr, 10, kStamp);
  int unknown = 0;
  EXPECT_EQ(SX_MassEditProgress(&unknown, 1, 0, 0, 0, kStamp), 0);
  EXPECT_EQ(SX_MassEditProgress(job, 4, 0, 0, 0, kStamp), 1);
  SX_EndMassEdit(job, 0, kStamp);
  SX_EndMassEdit(job, 0, kStamp); // already ended: ignored
  EXPECT_EQ(SX_MassEditProgress(job, 1, 0, 0, 0, kStamp), 0);
  EXPECT_EQ(engine().OpenMassEdits(), 0);
  EXPECT_EQ(engine().MassEditStepsReported(), 4);
}

} // namespace
