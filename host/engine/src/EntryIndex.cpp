#include "EntryIndex.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace scribo::engine {

namespace {

constexpr size_t kMinBuckets = 64;
// Dead body bytes are reclaimed once they pass this and half the pool.
constexpr size_t kCompactAfter = 4096;

bool Before(uint32_t tag, uint16_t index, uint32_t otherTag, uint16_t otherIndex) {
  return tag < otherTag || (tag == otherTag && index < otherIndex);
}

} // namespace

const EntryIndex::Entry* EntryIndex::Find(uint32_t number) const {
  if (number == 0 || buckets_.empty())
    return nullptr;
  const size_t mask = buckets_.size() - 1;
  for (size_t i = Home(number);; i = (i + 1) & mask) {
    const Entry& bucket = buckets_[i];
    if (bucket.number == number)
      return &bucket;
    if (bucket.number == 0)
      return nullptr;
  }
}

EntryIndex::Entry* EntryIndex::Find(uint32_t number) {
  return const_cast<Entry*>(std::as_const(*this).Find(number));
}

EntryIndex::Entry& EntryIndex::Add(uint32_t number) {
  // At most three quarters full, so that every probe ends at a free bucket.
  if ((count_ + 1) * 4 > buckets_.size() * 3)
    Grow();
  const size_t mask = buckets_.size() - 1;
  for (size_t i = Home(number);; i = (i + 1) & mask) {
    Entry& bucket = buckets_[i];
    if (bucket.number == number)
      return bucket;
    if (bucket.number == 0) { // free buckets are kept as Entry{}
      bucket.number = number;
      ++count_;
      return bucket;
    }
  }
}

void EntryIndex::Grow() {
  std::vector<Entry> old(std::max(kMinBuckets, buckets_.size() * 2));
  old.swap(buckets_);
  const size_t mask = buckets_.size() - 1;
  for (const Entry& entry : old) {
    if (entry.number == 0)
      continue;
    size_t i = Home(entry.number);
    while (buckets_[i].number != 0)
      i = (i + 1) & mask;
    buckets_[i] = entry;
  }
}

void EntryIndex::Remove(uint32_t number) {
  Entry* entry = Find(number);
  if (!entry)
    return;
  for (uint32_t node = entry->details; node != kNone;) {
    uint32_t next = nodes_[node].next;
    FreeNode(node);
    node = next;
  }
  // Backward-shift deletion: later members of the probe run move into the hole unless their
  // home lies between the hole and where they are, so no run is ever broken by a free bucket.
  const size_t mask = buckets_.size() - 1;
  size_t hole = size_t(entry - buckets_.data());
  for (size_t i = (hole + 1) & mask; buckets_[i].number != 0; i = (i + 1) & mask) {
    size_t home = Home(buckets_[i].number);
    bool staysAfterHole = hole <= i ? (hole < home && home <= i) : (hole < home || home <= i);
    if (!staysAfterHole) {
      buckets_[hole] = buckets_[i];
      hole = i;
    }
  }
  buckets_[hole] = Entry{};
  --count_;
  if (deadBytes_ > kCompactAfter && deadBytes_ * 2 > bodies_.size())
    CompactBodies();
}

void EntryIndex::Clear() {
  std::fill(buckets_.begin(), buckets_.end(), Entry{});
  count_ = 0;
  nodes_.clear();
  freeNodes_ = kNone;
  bodies_.clear();
  deadBytes_ = 0;
  withDetails_.clear();
  withDetailsStale_ = false;
}

void EntryIndex::ClearStoreMarks() {
  for (Entry& bucket : buckets_)
    bucket.storeMark = 0;
}

std::optional<std::span<const uint8_t>> EntryIndex::Detail(uint32_t tag, uint32_t entry,
                                                           uint16_t index) const {
  const Entry* e = Find(entry);
  for (uint32_t n = e ? e->details : kNone; n != kNone; n = nodes_[n].next)
    if (nodes_[n].tag == tag && nodes_[n].index == index)
      return Body(nodes_[n]);
  return std::nullopt;
}

uint32_t EntryIndex::StoreBody(std::span<const uint8_t> body) {
  const size_t offset = bodies_.size();
  // The body may be one of our own (a span the document handed out): copy it by position,
  // since growing the pool moves it.
  const uint8_t* pool = bodies_.data();
  const bool own = !body.empty() && body.data() >= pool && body.data() < pool + offset;
  const size_t from = own ? size_t(body.data() - pool) : 0;
  bodies_.resize(offset + body.size());
  if (!body.empty())
    std::memcpy(bodies_.data() + offset, own ? bodies_.data() + from : body.data(), body.size());
  return uint32_t(offset);
}

EntryIndex::ChainPlace EntryIndex::Place(const Entry& entry, uint32_t tag, uint16_t index) const {
  ChainPlace place{kNone, entry.details};
  while (place.next != kNone &&
         Before(nodes_[place.next].tag, nodes_[place.next].index, tag, index)) {
    place.previous = place.next;
    place.next = nodes_[place.next].next;
  }
  return place;
}

bool EntryIndex::Holds(uint32_t node, uint32_t tag, uint16_t index) const {
  return node != kNone && nodes_[node].tag == tag && nodes_[node].index == index;
}

void EntryIndex::Link(Entry& entry, ChainPlace place, uint32_t tag, uint16_t index,
                      std::span<const uint8_t> body) {
  DetailNode node{tag, place.next, StoreBody(body), uint32_t(body.size()), index};
  uint32_t added;
  if (freeNodes_ != kNone) {
    added = freeNodes_;
    freeNodes_ = nodes_[added].next;
    nodes_[added] = node;
  } else {
    added = uint32_t(nodes_.size());
    nodes_.push_back(node);
  }
  if (place.previous != kNone) {
    nodes_[place.previous].next = added;
    return;
  }
  if (entry.details == kNone)
    withDetailsStale_ = true;
  entry.details = added;
}

bool EntryIndex::PutDetail(uint32_t tag, uint32_t entry, uint16_t index,
                           std::span<const uint8_t> body) {
  Entry* e = Find(entry);
  if (!e)
    return false;
  const ChainPlace place = Place(*e, tag, index);
  if (!Holds(place.next, tag, index)) {
    Link(*e, place, tag, index, body);
    return true;
  }
  DetailNode& node = nodes_[place.next];
  if (node.size == body.size()) {
    if (!body.empty())
      std::memmove(bodies_.data() + node.offset, body.data(), body.size());
    return true;
  }
  const uint32_t offset = StoreBody(body);
  deadBytes_ += node.size;
  node.offset = offset;
  node.size = uint32_t(body.size());
  return true;
}

std::optional<uint16_t> EntryIndex::CreateDetail(uint32_t tag, uint32_t entry, uint16_t index,
                                                 std::span<const uint8_t> body) {
  Entry* e = Find(entry);
  if (!e)
    return std::nullopt;
  if (index == kNextFreeDetailIndex) {
    // One past the highest index in use; a record kept under the index that asks for the next
    // free one is not counted from.
    uint32_t next = 0;
    for (uint32_t n = e->details; n != kNone; n = nodes_[n].next)
      if (nodes_[n].tag == tag && nodes_[n].index != kNextFreeDetailIndex)
        next = uint32_t(nodes_[n].index) + 1;
    if (next >= kNextFreeDetailIndex)
      return std::nullopt;
    index = uint16_t(next);
  }
  const ChainPlace place = Place(*e, tag, index);
  if (Holds(place.next, tag, index))
    return std::nullopt;
  Link(*e, place, tag, index, body);
  return index;
}

void EntryIndex::FreeNode(uint32_t node) {
  deadBytes_ += nodes_[node].size;
  nodes_[node] = DetailNode{};
  nodes_[node].next = freeNodes_;
  freeNodes_ = node;
}

bool EntryIndex::RemoveDetail(uint32_t tag, uint32_t entry, uint16_t index) {
  Entry* e = Find(entry);
  uint32_t previous = kNone;
  for (uint32_t n = e ? e->details : kNone; n != kNone; previous = n, n = nodes_[n].next) {
    if (nodes_[n].tag != tag || nodes_[n].index != index)
      continue;
    (previous == kNone ? e->details : nodes_[previous].next) = nodes_[n].next;
    FreeNode(n);
    if (deadBytes_ > kCompactAfter && deadBytes_ * 2 > bodies_.size())
      CompactBodies();
    return true;
  }
  return false;
}

void EntryIndex::CompactBodies() {
  PodBuffer<uint8_t> kept;
  kept.resize(bodies_.size() - deadBytes_);
  uint32_t offset = 0;
  for (DetailNode& node : nodes_) {
    if (node.tag == 0)
      continue;
    std::copy_n(bodies_.data() + node.offset, node.size, kept.data() + offset);
    node.offset = offset;
    offset += node.size;
  }
  bodies_ = std::move(kept);
  deadBytes_ = 0;
}

const std::vector<uint32_t>& EntryIndex::EntriesWithDetails() const {
  if (withDetailsStale_) {
    withDetails_.clear();
    for (const Entry& bucket : buckets_)
      if (bucket.number != 0 && bucket.details != kNone)
        withDetails_.push_back(bucket.number);
    std::sort(withDetails_.begin(), withDetails_.end());
    withDetailsStale_ = false;
  }
  return withDetails_;
}

std::optional<EntryIndex::DetailKey> EntryIndex::NextDetail(uint32_t tag, DetailKey after) const {
  // Chains are in (tag, index) order: the first match is the nearest.
  std::optional<DetailKey> found;
  auto firstAfter = [&](uint32_t entry, int32_t floor) {
    ForEachDetail(entry, [&](uint32_t t, uint16_t index, auto) {
      if (!found && t == tag && int32_t(index) > floor)
        found = DetailKey{entry, index};
    });
    return found.has_value();
  };
  if (firstAfter(after.entry, after.index))
    return found;
  const auto& numbers = EntriesWithDetails();
  for (auto it = std::upper_bound(numbers.begin(), numbers.end(), after.entry); it != numbers.end();
       ++it)
    if (firstAfter(*it, -1))
      return found;
  return std::nullopt;
}

std::optional<EntryIndex::DetailKey> EntryIndex::PreviousDetail(uint32_t tag,
                                                                DetailKey before) const {
  std::optional<DetailKey> found;
  auto lastBefore = [&](uint32_t entry, int32_t ceiling) {
    ForEachDetail(entry, [&](uint32_t t, uint16_t index, auto) {
      if (t == tag && int32_t(index) < ceiling)
        found = DetailKey{entry, index};
    });
    return found.has_value();
  };
  if (lastBefore(before.entry, before.index))
    return found;
  const auto& numbers = EntriesWithDetails();
  for (auto it = std::lower_bound(numbers.begin(), numbers.end(), before.entry);
       it != numbers.begin(); --it)
    if (lastBefore(*(it - 1), 0x10000))
      return found;
  return std::nullopt;
}

} // namespace scribo::engine
