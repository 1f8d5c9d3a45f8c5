#include <gtest/gtest.h>

#include "HostFunctions.h"
#include "SDKCounters.h"
#include "TestHost.h"

namespace {

TEST(EditBrackets, EndAndCancelReachTheHostOnlyForAnOpenEdit) {
  TestHost& host = TestHost::Fresh();
  ASSERT_EQ(ScriboEditDepth, 0);
  host.SetEndEditResult(7);

  SX_CancelScriboEdit(kScriboHostVersion);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(host.Calls("SX_CancelScriboEdit"), 0);

  EXPECT_EQ(SX_StartScriboEdit("Subdivide", kScriboHostVersion), 0x5EED);
  EXPECT_EQ(ScriboEditDepth, 1);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 7);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 1);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(host.Calls("SX_EndScriboEdit"), 1);

  // Nested edits close one level per end or cancel.
  const unsigned short title[] = {'T', 0};
  EXPECT_EQ(SX_StartScriboEdit_UTF16(title, kScriboHostVersion), 0x5EEE);
  EXPECT_EQ(SX_StartScriboEdit("inner", kScriboHostVersion), 0x5EED);
  EXPECT_EQ(ScriboEditDepth, 2);
  SX_CancelScriboEdit(kScriboHostVersion);
  SX_CancelScriboEdit(kScriboHostVersion);
  SX_CancelScriboEdit(kScriboHostVersion);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(host.Calls("SX_CancelScriboEdit"), 2);
}

TEST(EditBrackets, MassEditDepthFollowsEveryStartAndEnd) {
  TestHost& host = TestHost::Fresh();
  const int32_t before = MassEditDepth;
  SX_EndMassEdit(nullptr, 0, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before - 1); // no floor
  void* massEdit = SX_StartMassEdit(nullptr, 40, kScriboHostVersion);
  EXPECT_NE(massEdit, nullptr);
  EXPECT_EQ(MassEditDepth, before);
  void* inner = SX_StartMassEdit(nullptr, 3, kScriboHostVersion);
  SX_EndMassEdit(inner, 1, kScriboHostVersion);
  SX_EndMassEdit(massEdit, 1, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before - 1);
  EXPECT_EQ(host.Calls("SX_StartMassEdit"), 2);
  EXPECT_EQ(host.Calls("SX_EndMassEdit"), 3);
  SX_StartMassEdit(nullptr, 0, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before);
}

} // namespace
