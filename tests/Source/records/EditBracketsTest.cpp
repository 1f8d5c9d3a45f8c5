#include <gtest/gtest.h>

#include "HostFunctions.h"
#include "SDKCounters.h"
#include "TestHost.h"

namespace {

TEST(EditBrackets, EndAndCancelReachTheHostOnlyForAnOpenEditButMassEditsAlwaysCount) {
  TestHost& host = TestHost::Fresh();
  ASSERT_EQ(ScriboEditDepth, 0);
  SX_CancelScriboEdit(kScriboHostVersion);
  EXPECT_EQ(ScriboEditDepth, 0);

  EXPECT_EQ(SX_StartScriboEdit("Subdivide", kScriboHostVersion), 0x5EED);
  EXPECT_EQ(ScriboEditDepth, 1);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 7); // the host's answer
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 1); // nothing open: success without the host
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(host.Calls("SX_EndScriboEdit"), 1);

  // Nested edits close one level per end or cancel.
  const unsigned short title[] = {'T', 0};
  EXPECT_EQ(SX_StartScriboEdit_UTF16(title, kScriboHostVersion), 0x5EEE);
  EXPECT_EQ(SX_StartScriboEdit("inner", kScriboHostVersion), 0x5EED);
  EXPECT_EQ(ScriboEditDepth, 2);
  for (int i = 0; i < 3; ++i)
    SX_CancelScriboEdit(kScriboHostVersion);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(host.Calls("SX_CancelScriboEdit"), 2);

  // Mass edits count every start and end, with no floor.
  const int32_t before = MassEditDepth;
  SX_EndMassEdit(nullptr, 0, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before - 1);
  void* massEdit = SX_StartMassEdit(nullptr, 40, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before);
  SX_StartMassEdit(nullptr, 0, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before + 1);
  SX_EndMassEdit(massEdit, 1, kScriboHostVersion);
  EXPECT_EQ(host.Calls("SX_StartMassEdit"), 2);
  EXPECT_EQ(host.Calls("SX_EndMassEdit"), 2);
  EXPECT_EQ(MassEditDepth, before);
}

} // namespace
