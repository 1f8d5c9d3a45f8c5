#include "Beaming.h"

#include <cstddef>

namespace scribo::engine {

namespace {

constexpr int kQuarter = 1024;

bool IsBeamable(const EXENTRY& e) {
  return (e.flags & kEntryIsNote) != 0 && e.duration > 0 && e.duration < kQuarter;
}

// Floor division, so that a position before the measure start still has a beat of its own.
long BeatOf(int32_t position, int beatLength) {
  long p = position;
  return p >= 0 ? p / beatLength : -((-p + beatLength - 1) / beatLength);
}

void CloseGroup(std::vector<BeamRole>& roles, const std::vector<size_t>& group) {
  if (group.size() < 2)
    return;
  roles[group.front()] = BeamRole::Start;
  for (size_t i = 1; i + 1 < group.size(); ++i)
    roles[group[i]] = BeamRole::Continue;
  roles[group.back()] = BeamRole::End;
}

} // namespace

std::vector<BeamRole> ComputeBeams(std::span<const EXENTRY> entries, int beatLength) {
  if (beatLength < 1)
    beatLength = kQuarter;
  std::vector<BeamRole> roles(entries.size(), BeamRole::None);
  std::vector<size_t> group;
  long groupBeat = 0;
  for (size_t i = 0; i < entries.size(); ++i) {
    const EXENTRY& e = entries[i];
    if (e.flags & kEntryVoiceTwo)
      continue;
    if (!IsBeamable(e)) {
      CloseGroup(roles, group);
      group.clear();
      continue;
    }
    long beat = BeatOf(e.position, beatLength);
    if (!group.empty() && beat != groupBeat) {
      CloseGroup(roles, group);
      group.clear();
    }
    if (group.empty())
      groupBeat = beat;
    group.push_back(i);
  }
  CloseGroup(roles, group);
  return roles;
}

} // namespace scribo::engine
