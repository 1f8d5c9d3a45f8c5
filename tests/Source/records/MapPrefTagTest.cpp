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

// Numbers 1..limit reach one record each, from number - 1; 0, negatives and limit + 1 do not.
TEST(MapPrefTag, NumberedRunsAcceptOnlyTheirRange) {
  struct {
    const char tag[5];
    const char otherTag[5];
    int16_t limit;
  } const kNumbered[] = {
      {"pfSN", "ot40", 128}, {"pfGb", "ot98", 4}, {"pfSl", "ot26", 15},
      {"pfTs", "ot90", 9},   {"pfGs", "ot91", 1},
  };
  for (const auto& run : kNumbered) {
    EXPECT_EQ(Map(run.tag, 1), OtherRun(run.otherTag, 1, 0)) << run.tag;
    EXPECT_EQ(Map(run.tag, run.limit), OtherRun(run.otherTag, 1, run.limit - 1)) << run.tag;
    for (int16_t outside : {int16_t(run.limit + 1), int16_t{0}, int16_t{-1}, int16_t{-32768}})
      EXPECT_EQ(Map(run.tag, outside), kRefused) << run.tag << " " << outside;
  }
  // Page formats from number 1 are four records; number 0 has a table of its own.
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
