// Edit brackets with undo snapshots, and mass edits, through the exported host functions.
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
    doc().AddEntry({1, 1, 0}, Note(2048));
  }

  // What the subdivision pass does to a frame: split the first entry in two.
  void SplitFirstEntry() {
    EXTGF2005a* frame = host.LoadTGF(0, 1, 1, 0, 1, kStamp);
    ASSERT_NE(frame, nullptr);
    ASSERT_EQ(host.InsertEXENTRY(frame, 1, 1, kStamp), 1);
    frame->entries[0].duration = 1024;
    frame->entries[0].actualDuration = 1024;
    frame->entries[1] = frame->entries[0];
    frame->entries[1].entryNumber = 0;
    frame->entries[1].position = 1024;
    EXPECT_EQ(host.SaveTGF(frame, kStamp), 1);
    EXPECT_EQ(host.FreeTGF(frame, kStamp), 1);
  }
};

TEST_F(EditsTest, CancelRestoresAndUndoRevertsTheLastEndedEdit) {
  auto original = doc().Entries({1, 1, 0});

  EXPECT_EQ(host.StartScriboEdit("Subdivide", kStamp), 1);
  SplitFirstEntry();
  EXPECT_EQ(doc().Entries({1, 1, 0}).size(), 2u);
  host.CancelScriboEdit(kStamp);
  EXPECT_EQ(doc().Entries({1, 1, 0}).size(), 1u);
  EXPECT_EQ(doc().EntryCount(), 1u);
  EXPECT_FALSE(engine().CanUndo());

  // Nested brackets make one undo step, taken at the outermost start.
  EXPECT_EQ(host.StartScriboEdit("Subdivide", kStamp), 1);
  EXPECT_EQ(host.StartScriboEdit("inner", kStamp), 1);
  SplitFirstEntry();
  EXPECT_EQ(host.EndScriboEdit(kStamp), 1);
  EXPECT_FALSE(engine().CanUndo());
  EXPECT_EQ(host.EndScriboEdit(kStamp), 1);
  EXPECT_EQ(host.EndScriboEdit(kStamp), 0); // nothing open
  EXPECT_EQ(engine().EditDepth(), 0);
  ASSERT_TRUE(engine().CanUndo());
  EXPECT_EQ(engine().LastEditDescription(), "Subdivide");

  EXPECT_TRUE(engine().Undo());
  auto undone = doc().Entries({1, 1, 0});
  ASSERT_EQ(undone.size(), 1u);
  EXPECT_EQ(uint32_t(undone[0].entryNumber), uint32_t(original[0].entryNumber));
  EXPECT_EQ(undone[0].duration, 2048);
  EXPECT_FALSE(engine().Undo());
}

TEST_F(EditsTest, MassEditsCountProgressAndRejectUnknownHandles) {
  engine().SetProgressDisplay(ProgressDisplay::Off);
  void* job = host.StartMassEdit(nullptr, 10, kStamp);
  ASSERT_NE(job, nullptr);
  EXPECT_EQ(engine().OpenMassEdits(), 1);
  EXPECT_EQ(host.MassEditProgress(job, 4, 0, 0, -1, kStamp), 1);
  EXPECT_EQ(host.MassEditProgress(job, 6, 0, 0, -1, kStamp), 1);
  int unknown = 0;
  EXPECT_EQ(host.MassEditProgress(&unknown, 1, 0, 0, -1, kStamp), 0);
  host.EndMassEdit(job, 0, kStamp);
  host.EndMassEdit(job, 0, kStamp); // already ended: ignored
  EXPECT_EQ(engine().OpenMassEdits(), 0);
  EXPECT_EQ(engine().MassEditStepsReported(), 10);
  EXPECT_EQ(engine().CallCount(HostCall::EndMassEdit), 2);
}

} // namespace
