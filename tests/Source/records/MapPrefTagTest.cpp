#include <gtest/gtest.h>

#include <tuple>

#include "MapPrefTag.h"
#include "RecordTags.h"

namespace {

using Mapping = std::tuple<bool, uint32_t, int, int>; // accepted, other tag, count, first

// Starts from outputs full of other values, so that every one of them must be written.
Mapping Map(const char (&tag)[5], int16_t number) {
  uint32_t otherTag = 0xFFFFFFFF;
  int16_t count = -7;
  int16_t first = -7;
  bool accepted = mapPrefTag(FourCharTag(tag), number, &otherTag, &count, &first);
  return {accepted, otherTag, count, first};
}

Mapping OtherRun(const char (&otherTag)[5], int count, int first) {
  return {true, FourCharTag(otherTag), count, first};
}

constexpr Mapping kRefused{false, 0, 0, 0};
constexpr Mapping kNotMapped{true, 0, 0, 0};

TEST(MapPrefTag, NumberedRunsAcceptOnlyTheirRange) {
  EXPECT_EQ(Map("pfSN", 1), OtherRun("ot40", 1, 0));
  EXPECT_EQ(Map("pfSN", 128), OtherRun("ot40", 1, 127));
  for (int16_t outside : {129, 0, -1, -32768})
    EXPECT_EQ(Map("pfSN", outside), kRefused) << outside;
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

TEST(MapPrefTag, FixedRunsAcceptAnyNumberAndOtherTagsAreNotMapped) {
  struct {
    const char tag[5];
    const char otherTag[5];
    int count;
  } const kFixed[] = {{"pfGD", "ot79", 1}, {"pfGG", "ot88", 11}, {"pfGd", "ot80", 1},
                      {"pfMM", "ot25", 2}, {"pfND", "ot04", 1},  {"pfNd", "ot66", 1},
                      {"pfSC", "ot52", 2}, {"pfSP", "ot94", 3},  {"pfTC", "ot86", 5},
                      {"pfTI", "ot84", 4}, {"pfTX", "ot78", 9},  {"pfTp", "ot85", 4}};
  // These differ from mapped tags by case only, or belong to tables or other records.
  const char kUnmapped[][5] = {"pfTP", "pfgp", "pfDP", "pfss", "ot40", "PFSN"};
  for (int16_t number : {0, 1, 129, -5}) {
    for (const auto& fixed : kFixed)
      EXPECT_EQ(Map(fixed.tag, number), OtherRun(fixed.otherTag, fixed.count, 0))
          << fixed.tag << number;
    for (const auto& tag : kUnmapped)
      EXPECT_EQ(Map(tag, number), kNotMapped) << tag << number;
  }
}

} // namespace
