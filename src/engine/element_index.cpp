// Elements are grouped by identity (folded name, key and type) through a hash map. Most groups
// have one member and are answered at once. A group with several is told apart by a tree that is
// built only as far as searches go: a node stands for the members that agree in the first
// position columns, its children for the values of the next column. Narrowing walks down while
// there is a child for the wanted text; the first live member of the last node is the answer.
//
// Erased slots stay where they are and are skipped. Whatever the index cannot follow cheaply makes
// the group's tree, or the whole index, be built again on the next search.

#include "engine/element_index.h"

#include <algorithm>
#include <bit>

#include "engine/find_element.h"

namespace tessary {
namespace {

constexpr std::size_t kFirstSize = 32;
constexpr std::size_t kMostReserved = 4096;  // a very long list may have few groups

}  // namespace

ElementIndex::ElementIndex(const TextPool& pool, const std::vector<Element>& slots,
                           const std::vector<std::uint32_t>& row_order)
    : pool_(pool), slots_(slots) {
  Grow(std::max(kFirstSize, std::bit_ceil(2 * (row_order.size() + 1))));
  groups_.reserve(std::min(row_order.size(), kMostReserved));
  group_of_.assign(slots.size(), kNone);
  next_.assign(slots.size(), kNone);
  for (const std::uint32_t slot : row_order) Appended(slot);
}

std::uint32_t ElementIndex::Folded(const ElementKey& key, BXElementArray column) const {
  return static_cast<std::uint32_t>(pool_.Fold(key[column]));
}

bool ElementIndex::IsOfIdentity(std::uint32_t group, const ElementKey& key) const {
  const ElementKey& other = slots_[groups_[group].example].key;
  return pool_.Same(other[bxeaName], key[bxeaName]) && pool_.Same(other[bxeaKey], key[bxeaKey]) &&
         pool_.Same(other[bxeaTyp], key[bxeaTyp]);
}

std::uint32_t ElementIndex::HashOf(const ElementKey& key) const {
  std::uint64_t hash = Folded(key, bxeaName) * 0x9E3779B97F4A7C15u;
  hash = (hash ^ (hash >> 32) ^ Folded(key, bxeaKey)) * 0xFF51AFD7ED558CCDu;
  hash = (hash ^ (hash >> 32) ^ Folded(key, bxeaTyp)) * 0x9E3779B97F4A7C15u;
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

// Where the group of this identity stands in the hash table, or where it would.
std::size_t ElementIndex::PlaceOf(const ElementKey& key, std::uint32_t hash) const {
  const std::uint32_t mask = PlaceMask();
  std::uint32_t place = hash & mask;
  for (; places_[place] != kNone; place = (place + 1) & mask) {
    const bool may_be_it = ((places_[place] ^ hash) & ~mask) == 0;
    if (may_be_it && IsOfIdentity(places_[place] & mask, key)) break;
  }
  return place;
}

std::uint32_t ElementIndex::FindGroup(const ElementKey& key) const {
  const std::uint32_t entry = places_[PlaceOf(key, HashOf(key))];
  return entry == kNone ? kNone : entry & PlaceMask();
}

std::uint32_t ElementIndex::AddGroup(std::uint32_t slot) {
  if (2 * (groups_.size() + 1) > places_.size()) Grow(2 * places_.size());
  const ElementKey& key = slots_[slot].key;
  const std::uint32_t hash = HashOf(key);
  std::uint32_t& entry = places_[PlaceOf(key, hash)];
  if (entry == kNone) {
    entry = EntryOf(static_cast<std::uint32_t>(groups_.size()), hash);
    groups_.push_back({slot, kNone, kNone, 0, kNone});
  }
  return entry & PlaceMask();
}

void ElementIndex::Grow(std::size_t size) {
  places_.assign(size, kNone);
  for (std::uint32_t group = 0; group < groups_.size(); ++group) {
    const std::uint32_t hash = HashOf(slots_[groups_[group].example].key);
    std::uint32_t place = hash & PlaceMask();
    while (places_[place] != kNone) place = (place + 1) & PlaceMask();
    places_[place] = EntryOf(group, hash);
  }
}

void ElementIndex::Appended(std::uint32_t slot) {
  if (slot >= group_of_.size()) {
    group_of_.resize(slot + 1, kNone);
    next_.resize(slot + 1, kNone);
  }
  const std::uint32_t number = AddGroup(slot);
  Group& group = groups_[number];
  group_of_[slot] = number;
  next_[slot] = kNone;
  if (group.head == kNone) {
    group.head = slot;
  } else {
    next_[group.tail] = slot;
  }
  group.tail = slot;
  ++group.live;
  group.root = kNone;
  if (!has_names_) return;
  std::uint32_t& first = first_named_.At(0, Folded(slots_[slot].key, bxeaName));
  if (first == kNone) first = slot;
}

bool ElementIndex::Inserted(std::uint32_t slot, const RowOf& row_of) {
  const std::uint32_t number = FindGroup(slots_[slot].key);
  if (number != kNone && groups_[number].live != 0) return false;
  Appended(slot);
  if (!has_names_) return true;
  std::uint32_t& first = first_named_.At(0, Folded(slots_[slot].key, bxeaName));
  if (row_of(slot) < row_of(first)) first = slot;
  return true;
}

void ElementIndex::Erased(std::uint32_t slot) {
  --groups_[group_of_[slot]].live;
  group_of_[slot] = kNone;
  has_names_ = false;
}

void ElementIndex::PositionChanged(std::uint32_t slot) { groups_[group_of_[slot]].root = kNone; }

std::uint32_t ElementIndex::FirstOf(Group& group) {
  while (group.head != kNone && !IsLive(group.head)) group.head = next_[group.head];
  return group.head;
}

std::uint32_t ElementIndex::FirstOf(Node& node) {
  while (node.begin != node.end && !IsLive(members_[node.begin])) ++node.begin;
  return node.begin == node.end ? kNone : members_[node.begin];
}

bool ElementIndex::IsSingle(Node& node) {
  return FirstOf(node) != kNone && node.end - node.begin == 1;
}

std::uint32_t ElementIndex::Find(const ElementKey& wanted) {
  const std::uint32_t number = FindGroup(wanted);
  if (number == kNone) return kNone;
  Group& group = groups_[number];
  return group.live <= 1 ? FirstOf(group) : Narrow(group, wanted);
}

std::uint32_t ElementIndex::RootOf(Group& group) {
  if (group.root != kNone) return group.root;
  const auto begin = static_cast<std::uint32_t>(members_.size());
  for (std::uint32_t slot = FirstOf(group); slot != kNone; slot = next_[slot]) {
    if (IsLive(slot)) members_.push_back(slot);
  }
  group.root = static_cast<std::uint32_t>(nodes_.size());
  nodes_.push_back({begin, static_cast<std::uint32_t>(members_.size()), false});
  return group.root;
}

std::uint32_t ElementIndex::Narrow(Group& group, const ElementKey& wanted) {
  std::uint32_t node = RootOf(group);
  std::uint32_t result = FirstOf(nodes_[node]);
  for (const BXElementArray column : kPositionColumns) {
    if (IsSingle(nodes_[node])) break;
    Expand(node, column);
    node = children_.Find(node, Folded(wanted, column));
    if (node == kNone) break;
    const std::uint32_t first = FirstOf(nodes_[node]);
    if (first == kNone) break;
    result = first;
  }
  return result;
}

// Deals the node's live members out to one child per text of the column, in row order.
void ElementIndex::Expand(std::uint32_t node, BXElementArray column) {
  if (nodes_[node].expanded) return;
  nodes_[node].expanded = true;
  const std::uint32_t begin = nodes_[node].begin;
  const std::uint32_t end = nodes_[node].end;
  const auto first_child = static_cast<std::uint32_t>(nodes_.size());
  std::vector<std::uint32_t> child_of;
  child_of.reserve(end - begin);
  for (std::uint32_t at = begin; at != end; ++at) {
    if (!IsLive(members_[at])) {
      child_of.push_back(kNone);
      continue;
    }
    std::uint32_t& child = children_.At(node, Folded(slots_[members_[at]].key, column));
    if (child == kNone) {
      child = static_cast<std::uint32_t>(nodes_.size());
      nodes_.push_back({0, 0, false});
    }
    ++nodes_[child].end;
    child_of.push_back(child);
  }
  auto place = static_cast<std::uint32_t>(members_.size());
  for (std::uint32_t child = first_child; child != nodes_.size(); ++child) {
    const std::uint32_t count = nodes_[child].end;
    nodes_[child].begin = nodes_[child].end = place;
    place += count;
  }
  members_.resize(place);
  for (std::uint32_t at = begin; at != end; ++at) {
    const std::uint32_t child = child_of[at - begin];
    if (child != kNone) members_[nodes_[child].end++] = members_[at];
  }
}

std::uint32_t ElementIndex::FindName(Symbol name, const RowOf& row_of) {
  if (!has_names_) BuildNames(row_of);
  return first_named_.Find(0, static_cast<std::uint32_t>(pool_.Fold(name)));
}

void ElementIndex::BuildNames(const RowOf& row_of) {
  first_named_.Clear();
  for (Group& group : groups_) {
    const std::uint32_t slot = FirstOf(group);
    if (slot == kNone) continue;
    std::uint32_t& first = first_named_.At(0, Folded(slots_[slot].key, bxeaName));
    if (first == kNone || row_of(slot) < row_of(first)) first = slot;
  }
  has_names_ = true;
}

}  // namespace tessary
