#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "engine/element.h"
#include "engine/pair_map.h"
#include "engine/text_pool.h"

namespace tessary {

// Finds elements of one array by name, key and type and, where several are equal in these, by
// their position columns. Elements are known by their storage slots; the array reports its changes.
class ElementIndex {
 public:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  // `slots` are the array's elements, `row_order` the slots of its rows in row order. Both the
  // elements and the pool must outlive the index.
  ElementIndex(const TextPool& pool, const std::vector<Element>& slots,
               const std::vector<std::uint32_t>& row_order);

  // The slot of the best match, or kNone.
  std::uint32_t Find(const ElementKey& wanted);

  // The slot of the first row with this name, or kNone. `row_of` gives the row of a slot.
  using RowOf = std::function<std::int32_t(std::uint32_t)>;
  std::uint32_t FindName(Symbol name, const RowOf& row_of);

  // The element in `slot` is new behind all others.
  void Appended(std::uint32_t slot);
  // The element in `slot` is new somewhere else; false when the index cannot follow and must be
  // dropped.
  bool Inserted(std::uint32_t slot, const RowOf& row_of);
  void Erased(std::uint32_t slot);
  // The position columns of the element in `slot` have changed.
  void PositionChanged(std::uint32_t slot);

 private:
  // Elements of one identity, chained in row order.
  struct Group {
    std::uint32_t example;  // a slot of this identity, perhaps an erased one
    std::uint32_t head;
    std::uint32_t tail;
    std::uint32_t live;
    std::uint32_t root;  // node that tells the members apart by position, or kNone
  };

  // Members of a group that agree in the first position columns: a range of members_. Slots at
  // the range's beginning that have been erased are skipped for good.
  struct Node {
    std::uint32_t begin;
    std::uint32_t end;
    bool expanded;
  };

  bool IsOfIdentity(std::uint32_t group, const ElementKey& key) const;
  std::uint32_t HashOf(const ElementKey& key) const;
  std::size_t PlaceOf(const ElementKey& key, std::uint32_t hash) const;
  std::uint32_t PlaceMask() const { return static_cast<std::uint32_t>(places_.size() - 1); }
  // Below the mask the group, above it what the hash has there.
  std::uint32_t EntryOf(std::uint32_t group, std::uint32_t hash) const {
    return (hash & ~PlaceMask()) | group;
  }
  std::uint32_t FindGroup(const ElementKey& key) const;
  std::uint32_t AddGroup(std::uint32_t slot);
  void Grow(std::size_t size);
  std::uint32_t FirstOf(Group& group);
  std::uint32_t FirstOf(Node& node);
  bool IsSingle(Node& node);
  std::uint32_t RootOf(Group& group);
  std::uint32_t Narrow(Group& group, const ElementKey& wanted);
  void Expand(std::uint32_t node, BXElementArray column);
  void BuildNames(const RowOf& row_of);
  bool IsLive(std::uint32_t slot) const { return group_of_[slot] != kNone; }
  std::uint32_t Folded(const ElementKey& key, BXElementArray column) const;

  const TextPool& pool_;
  const std::vector<Element>& slots_;
  std::vector<Group> groups_;
  // Hash table of groups, open addressing, at most half full; kNone where free. With a part of the
  // hash in each entry, hardly any group of another identity is looked at, far away in memory.
  std::vector<std::uint32_t> places_;
  std::vector<std::uint32_t> group_of_;  // by slot; kNone for an erased one
  std::vector<std::uint32_t> next_;      // by slot: the next member of its group
  std::vector<Node> nodes_;
  std::vector<std::uint32_t> members_;
  PairMap children_;  // (node, text) to node
  bool has_names_ = false;
  PairMap first_named_;  // (0, name) to slot
};

}  // namespace tessary
