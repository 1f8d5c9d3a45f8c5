#include "Beaming.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>

namespace scribo::engine {

namespace {

constexpr int kQuarter = 1024;

bool IsBeamable(const EXENTRY& e) {
  return (e.flags & kEntryIsNote) != 0 && e.duration > 0 && e.duration < kQuarter;
}

// An exact fraction of TDU (den > 0); the operations give nullopt once a value no longer fits
// 64 bits.
struct Fraction {
  int64_t num = 0;
  int64_t den = 1;
};

Fraction Reduced(int64_t num, int64_t den) {
  int64_t g = std::gcd(num, den);
  return g > 1 ? Fraction{num / g, den / g} : Fraction{num, den};
}

// The beat a place falls in, rounding down, so that a place before the measure start still has
// a beat of its own.
int64_t BeatOf(Fraction place, int beatLength) {
  __int128 a = place.num;
  __int128 b = static_cast<__int128>(place.den) * beatLength;
  return static_cast<int64_t>(a >= 0 ? a / b : -((-a + b - 1) / b));
}

std::optional<Fraction> Times(Fraction a, Fraction b) {
  int64_t num, den;
  if (__builtin_mul_overflow(a.num, b.num, &num) || __builtin_mul_overflow(a.den, b.den, &den))
    return std::nullopt;
  return Reduced(num, den);
}

std::optional<Fraction> Plus(Fraction a, Fraction b) {
  int64_t left, right, num, den;
  if (__builtin_mul_overflow(a.num, b.den, &left) || __builtin_mul_overflow(b.num, a.den, &right) ||
      __builtin_add_overflow(left, right, &num) || __builtin_mul_overflow(a.den, b.den, &den))
    return std::nullopt;
  return Reduced(num, den);
}

// A tuplet being walked: its notated span, how much of it the entries so far fill (in its own
// notated TDU), and its ratio of elapsed to notated time.
struct OpenTuplet {
  int64_t span = 0;
  Fraction filled;
  Fraction ratio;
};

// The exact places of the entries inside tuplets, in TDU from the measure start. Outside
// tuplets, and wherever the arithmetic would overflow, the stored position stands.
class TupletClock {
public:
  // The place of `e`, which begins `begun` tuplets; advances past it.
  Fraction PlaceOf(const EXENTRY& e, std::span<const EDTTuplet> begun) {
    // Inside a tuplet a stored position is the exact place rounded down, less at most 1 TDU for
    // each entry since the tuplet began. Any other (a gap the tuplet does not account for)
    // stands as it is, and so does everything after it.
    __int128 position = e.position;
    if (!open_.empty() &&
        (position * now_.den > now_.num || (position + walked_ + 1) * now_.den <= now_.num))
      open_.clear();
    if (open_.empty()) {
      now_ = Fraction{e.position, 1};
      walked_ = 0;
    }
    ++walked_;
    for (const EDTTuplet& t : begun) {
      int64_t span = int64_t(t.tupletNumber) * t.tupletUnit;
      int64_t time = int64_t(t.referenceNumber) * t.referenceUnit;
      if (span > 0 && time > 0)
        open_.push_back({span, {0, 1}, Reduced(time, span)});
    }
    Fraction place = now_;
    // The entry fills its notated duration in the innermost tuplet, that scaled by the inner
    // ratio in the next one out, and so on; what leaves the outermost is elapsed time.
    std::optional<Fraction> amount = Fraction{e.duration > 0 ? e.duration : 0, 1};
    for (size_t k = open_.size(); k-- > 0 && amount;) {
      auto filled = Plus(open_[k].filled, *amount);
      amount = filled ? Times(*amount, open_[k].ratio) : std::nullopt;
      if (filled)
        open_[k].filled = *filled;
    }
    auto next = amount ? Plus(now_, *amount) : std::nullopt;
    if (!next) {
      open_.clear();
      return Fraction{e.position, 1};
    }
    now_ = *next;
    // A tuplet is over once its span is filled; the ones around it may end with it.
    while (!open_.empty() && static_cast<__int128>(open_.back().filled.num) >=
                                 static_cast<__int128>(open_.back().span) * open_.back().filled.den)
      open_.pop_back();
    return place;
  }

private:
  std::vector<OpenTuplet> open_;
  Fraction now_;
  int64_t walked_ = 0; // entries placed since the outermost tuplet began
};

void CloseGroup(std::vector<BeamRole>& roles, const std::vector<size_t>& group) {
  if (group.size() < 2)
    return;
  roles[group.front()] = BeamRole::Start;
  for (size_t i = 1; i + 1 < group.size(); ++i)
    roles[group[i]] = BeamRole::Continue;
  roles[group.back()] = BeamRole::End;
}

} // namespace

std::vector<BeamRole> ComputeBeams(std::span<const EXENTRY> entries, int beatLength,
                                   std::span<const std::vector<EDTTuplet>> tuplets) {
  if (beatLength < 1)
    beatLength = kQuarter;
  std::vector<BeamRole> roles(entries.size(), BeamRole::None);
  std::vector<size_t> group;
  int64_t groupBeat = 0;
  TupletClock clock;
  for (size_t i = 0; i < entries.size(); ++i) {
    const EXENTRY& e = entries[i];
    if (e.flags & kEntryVoiceTwo)
      continue;
    Fraction place = clock.PlaceOf(e, i < tuplets.size() ? std::span<const EDTTuplet>(tuplets[i])
                                                         : std::span<const EDTTuplet>());
    if (!IsBeamable(e)) {
      CloseGroup(roles, group);
      group.clear();
      continue;
    }
    int64_t beat = BeatOf(place, beatLength);
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
