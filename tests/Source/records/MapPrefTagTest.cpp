#include <gtest/gtest.h>

#include <tuple>

#include "MapPrefTag.h"
#include "RecordTags.h"

namespace {

// (accepted, other tag, count, first), starting from outputs full of other values.
std::tuple<bool, uint32_t, int, int> Map(const char (&tag)[5], int16_t number) {
  uint32_t otherTag = 0xFFFFFFFF;
  int16_t count = -7;
  int16_t first = -7;
  bool accepted = mapPrefTag(FourCharTag(tag), number, &otherTag, &count, &first);
  return {accepted, otherTag, count, first};
}

std::tuple<bool, uint32_t, int, int> OtherRun(const char (&otherTag)[5], int count, int first) {
  return {true, FourCharTag(otherTag), count, first};
}

constexpr std::tuple<bool, uint32_t, int, int> kRefused{false, 0, 0, 0};
constexpr std::tuple<bool, uint32_t, int, int> kNotMapped{true, 0, 0, 0};

TEST(MapPrefTag, NumberedRunsAcceptOnlyTheirRange) {
  EXPECT_EQ(Map("pfSN", 1), OtherRun("ot40", 1, 0));
  EXPECT_EQ(Map("pfSN", 128), OtherRun("ot40", 1, 127));
  EXPECT_EQ(Map("pfSN", 129), kRefused);
  EXPECT_EQ(Map("pfSN", 0), kRefused);
  EXPECT_EQ(Map("pfSN", -1), kRefused);
  EXPECT_EQ(Map("pfSN", -32768), kRefused);
  EXPECT_EQ(Map("pfGb", 4), OtherRun("ot98", 1, 3));
  EXPECT_EQ(Map("pfGb", 5), kRefused);
  EXPECT_EQ(Map("pfSl", 15), OtherRun("ot26", 1, 14));
  EXPECT_EQ(Map("pfSl", 16), kRefused);
  EXPECT_EQ(Map("pfTs", 9), OtherRun("ot90", 1, 8));
  EXPECT_EQ(Map("pfTs", 10), kRefused);
  EXPECT_EQ(Map("pfGs", 1), OtherRun("ot91", 1, 0));
  EXPECT_EQ(Map("pfGs", 2), kRefused);
  EXPECT_EQ(Map("pfPF", 1), OtherRun("ot77", 4, 0));
  EXPECT_EQ(Map("pfPF", 0), kRefused);
}

TEST(MapPrefTag, FixedRunsAcceptAnyNumber) {
  for (int16_t number : {int16_t{0}, int16_t{1}, int16_t{129}, int16_t{-5}}) {
    SCOPED_TRACE(number);
    EXPECT_EQ(Map("pfGD", number), OtherRun("ot79", 1, 0));
    EXPECT_EQ(Map("pfGG", number), OtherRun("ot88", 11, 0));
    EXPECT_EQ(Map("pfGd", number), OtherRun("ot80", 1, 0));
    EXPECT_EQ(Map("pfMM", number), OtherRun("ot25", 2, 0));
    EXPECT_EQ(Map("pfND", number), OtherRun("ot04", 1, 0));
    EXPECT_EQ(Map("pfNd", number), OtherRun("ot66", 1, 0));
    EXPECT_EQ(Map("pfSC", number), OtherRun("ot52", 2, 0));
    EXPECT_EQ(Map("pfSP", number), OtherRun("ot94", 3, 0));
    EXPECT_EQ(Map("pfTC", number), OtherRun("ot86", 5, 0));
    EXPECT_EQ(Map("pfTI", number), OtherRun("ot84", 4, 0));
    EXPECT_EQ(Map("pfTX", number), OtherRun("ot78", 9, 0));
    EXPECT_EQ(Map("pfTp", number), OtherRun("ot85", 4, 0));
  }
}

TEST(MapPrefTag, OtherTagsAreNotMapped) {
  // Tags differ from mapped ones by case only, or belong to tables or other records.
  const char tags[][5] = {"pfTP", "pfgp", "pfDP", "pfss", "ot40", "PFSN"};
  for (const auto& tag : tags) {
    EXPECT_EQ(Map(tag, 1), kNotMapped) << tag;
    EXPECT_EQ(Map(tag, 200), kNotMapped) << tag;
  }
  EXPECT_EQ(Map("pfTP", 0), kNotMapped);
  EXPECT_EQ(Map("pfTP", -3), kNotMapped);
}

} // namespace
