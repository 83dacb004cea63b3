// Elements stand in one vector in row order. The first insertion or deletion in the middle starts
// editing: elements then stay in their slots, and a RowOrder tells which slot stands at which
// row, until Settle brings the vector back into order.
//
// A search scans a small array. A larger one gets an index once a few searches have been made
// since it last changed in a way that an index cannot follow, so that neither single searches nor
// long runs of them pay for more than they need.

#include "engine/element_table.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "engine/element_index.h"
#include "engine/find_element.h"
#include "platform/failure.h"

namespace tessary {
namespace {

constexpr std::size_t kFirstSlots = 4;
constexpr std::int32_t kAlwaysScanned = 12;
constexpr std::int32_t kScansBeforeIndex = 4;

bool IsIdentityColumn(BXElementArray column) { return column <= bxeaTyp; }

std::vector<std::uint32_t> FlatOrder(std::size_t count) {
  std::vector<std::uint32_t> slots(count);
  std::iota(slots.begin(), slots.end(), 0u);
  return slots;
}

// The slots in row order and behind them the others of `count`, which are those of deleted rows.
std::vector<std::uint32_t> AllSlots(const RowOrder& order, std::size_t count) {
  std::vector<std::uint32_t> slots = order.Slots();
  if (slots.size() == count) return slots;
  std::vector<bool> is_row(count);
  for (const std::uint32_t slot : slots) is_row[slot] = true;
  slots.reserve(count);
  for (std::uint32_t slot = 0; slot < count; ++slot) {
    if (!is_row[slot]) slots.push_back(slot);
  }
  return slots;
}

// Moves to `first` what belongs there, to where that was what belongs there, and so on round to
// `first`. from[place] is where the element of a place is; the place itself once it is there.
void MoveRound(std::vector<Element>& elements, std::vector<std::uint32_t>& from,
               std::uint32_t first) {
  if (from[first] == first) return;
  Element displaced = std::move(elements[first]);
  std::uint32_t place = first;
  while (from[place] != first) {
    elements[place] = std::move(elements[from[place]]);
    place = std::exchange(from[place], place);
  }
  elements[place] = std::move(displaced);
  from[place] = place;
}

bool SameIdentity(const TextPool& pool, const ElementKey& a, const ElementKey& b) {
  return pool.Same(a[bxeaName], b[bxeaName]) && pool.Same(a[bxeaKey], b[bxeaKey]) &&
         pool.Same(a[bxeaTyp], b[bxeaTyp]);
}

// The number of position columns in which both agree, counted from the first.
std::size_t AgreeingColumns(const TextPool& pool, const ElementKey& a, const ElementKey& b) {
  std::size_t count = 0;
  for (const BXElementArray column : kPositionColumns) {
    if (!pool.Same(a[column], b[column])) break;
    ++count;
  }
  return count;
}

}  // namespace

ElementTable::ElementTable(Ref<TextPool> pool) : pool_(std::move(pool)) {}

ElementTable::~ElementTable() = default;

std::size_t ElementTable::Slot(std::int32_t row) const {
  if (row < 1 || row > rows()) throw Failure(kSubscriptOutOfRange);
  const auto place = static_cast<std::uint32_t>(row - 1);
  return order_ ? order_->SlotAt(place) : place;
}

std::int32_t ElementTable::RowOfSlot(std::uint32_t slot) const {
  return static_cast<std::int32_t>(order_ ? order_->RowOf(slot) : slot) + 1;
}

RowOrder& ElementTable::Edit() {
  if (!order_) {
    order_ = std::make_unique<RowOrder>(static_cast<std::uint32_t>(slots_.size()));
    edits_ = 0;
  }
  ++edits_;
  return *order_;
}

void ElementTable::Append(Element&& element) {
  if (slots_.size() >= std::numeric_limits<std::int32_t>::max()) throw Failure(kOutOfMemory);
  const auto slot = static_cast<std::uint32_t>(slots_.size());
  if (slot == 0) slots_.reserve(kFirstSlots);
  slots_.push_back(std::move(element));
  if (order_) order_->Insert(order_->size(), slot);
  if (index_) index_->Appended(slot);
}

void ElementTable::Insert(std::int32_t row, Element&& element) {
  if (row == rows() + 1) return Append(std::move(element));
  Slot(row);
  ++rearrangements_;
  RowOrder& order = Edit();
  const auto slot = static_cast<std::uint32_t>(slots_.size());
  slots_.push_back(std::move(element));
  order.Insert(static_cast<std::uint32_t>(row - 1), slot);
  const auto row_of = [this](std::uint32_t other) { return RowOfSlot(other); };
  if (index_ && !index_->Inserted(slot, row_of)) DropIndex();
}

void ElementTable::Delete(std::int32_t row) {
  const std::size_t slot = Slot(row);
  ++rearrangements_;
  if (!order_ && !index_ && row == rows()) {  // an index must not see a slot used again
    slots_.pop_back();
    return;
  }
  if (index_) index_->Erased(static_cast<std::uint32_t>(slot));
  Edit().Erase(static_cast<std::uint32_t>(row - 1));
  slots_[slot].set_child(nullptr);
}

void ElementTable::DeleteAll() {
  ++rearrangements_;
  DropIndex();
  order_.reset();
  slots_.clear();
}

void ElementTable::DeleteMarked(const std::vector<std::uint8_t>& marked) {
  Settle();
  const auto first =
      std::find_if(marked.begin(), marked.end(), [](auto mark) { return mark != 0; });
  if (first == marked.end()) return;
  ++rearrangements_;
  DropIndex();
  auto kept = static_cast<std::size_t>(first - marked.begin());
  for (std::size_t at = kept; at < marked.size(); ++at) {
    if (!marked[at]) slots_[kept++] = std::move(slots_[at]);
  }
  slots_.resize(kept);
}

void ElementTable::SortByStatus() {
  Settle();
  const auto before = [](const Element& a, const Element& b) { return a.status < b.status; };
  if (std::is_sorted(slots_.begin(), slots_.end(), before)) return;
  ++rearrangements_;
  DropIndex();
  std::stable_sort(slots_.begin(), slots_.end(), before);
}

void ElementTable::SetText(std::int32_t row, BXElementArray column, Symbol text) {
  const std::size_t slot = Slot(row);
  slots_[slot].key[column] = text;
  if (column == bxeaName) ++rearrangements_;
  if (!index_) return;
  if (IsIdentityColumn(column)) {
    DropIndex();
  } else {
    index_->PositionChanged(static_cast<std::uint32_t>(slot));
  }
}

void ElementTable::FillNext(std::int32_t row, const ElementKey& next) {
  const std::size_t slot = Slot(row);
  ElementKey& key = slots_[slot].key;
  const auto fill = [](Symbol& empty, Symbol text) {
    if (empty == Symbol::kEmpty) empty = text;
  };
  fill(key[bxeaPosNextName], next[bxeaName]);
  fill(key[bxeaPosNextKey], next[bxeaKey]);
  fill(key[bxeaPosNextTyp], next[bxeaTyp]);
  if (index_) index_->PositionChanged(static_cast<std::uint32_t>(slot));
}

void ElementTable::SetValue(std::int32_t row, std::string_view value) {
  slots_[Slot(row)].set_value(pool_->Keep(value));
}

void ElementTable::SetStatus(std::int32_t row, BXStatus status) {
  slots_[Slot(row)].status = static_cast<std::int8_t>(status);
}

void ElementTable::SetChild(std::int32_t row, Ref<Level> child) {
  slots_[Slot(row)].set_child(std::move(child));
}

void ElementTable::Settle() {
  if (!order_) return;
  DropIndex();
  const std::uint32_t rows = order_->size();
  std::vector<std::uint32_t> from = AllSlots(*order_, slots_.size());
  order_.reset();
  for (std::uint32_t row = 0; row < rows; ++row) MoveRound(slots_, from, row);
  slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(rows), slots_.end());
}

void ElementTable::SettleManyChanges() {
  constexpr std::size_t kRowsPerEdit = 8;
  if (edits_ * kRowsPerEdit > slots_.size()) Settle();
}

void ElementTable::DropIndex() const {
  index_.reset();
  scans_ = 0;
}

ElementIndex* ElementTable::Index() const {
  if (index_) return index_.get();
  if (rows() <= kAlwaysScanned || ++scans_ <= kScansBeforeIndex) return nullptr;
  index_ = std::make_unique<ElementIndex>(*pool_, slots_,
                                          order_ ? order_->Slots() : FlatOrder(slots_.size()));
  return index_.get();
}

std::int32_t ElementTable::Find(const ElementKey& wanted) const {
  ElementIndex* index = Index();
  if (!index) return Scan(wanted);
  const std::uint32_t slot = index->Find(wanted);
  return slot == ElementIndex::kNone ? 0 : RowOfSlot(slot);
}

// Two releases mostly have their elements in the same order.
bool ElementTable::Contains(const ElementKey& identity, std::int32_t& near) const {
  const bool there = near >= 1 && near <= rows() && SameIdentity(*pool_, Row(near).key, identity);
  const std::int32_t row = there ? near : Find(identity);
  if (row != 0) near = row + 1;
  return row != 0;
}

// Narrowing column by column ends with the elements that agree in most leading columns, so one
// pass that remembers the best element so far finds the same one; none can be better than one that
// agrees in all.
std::int32_t ElementTable::Scan(const ElementKey& wanted) const {
  const Symbol key = pool_->Fold(wanted[bxeaKey]);  // tells most elements apart
  std::int32_t row = 0;
  std::int32_t best = 0;
  std::size_t best_columns = 0;
  ForEachFrom(*this, 1, [&](const Element& element) {
    ++row;
    if (pool_->Fold(element.key[bxeaKey]) != key) return true;
    if (!SameIdentity(*pool_, element.key, wanted)) return true;
    const std::size_t columns = AgreeingColumns(*pool_, element.key, wanted);
    if (best != 0 && columns <= best_columns) return true;
    best = row;
    best_columns = columns;
    return columns < kPositionColumns.size();
  });
  return best;
}

std::int32_t ElementTable::FindName(Symbol name) const {
  ElementIndex* index = Index();
  if (!index) return ScanName(name);
  const std::uint32_t slot =
      index->FindName(name, [this](std::uint32_t other) { return RowOfSlot(other); });
  return slot == ElementIndex::kNone ? 0 : RowOfSlot(slot);
}

std::int32_t ElementTable::ScanName(Symbol name) const {
  for (std::int32_t row = 1; row <= rows(); ++row) {
    if (pool_->Same(Row(row).key[bxeaName], name)) return row;
  }
  return 0;
}

}  // namespace tessary
