#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/element.h"
#include "engine/level.h"
#include "engine/ref.h"
#include "engine/row_order.h"
#include "engine/text_pool.h"

namespace tessary {

class ElementIndex;

// The element array of one level: its rows are the elements in file order, counted from 1.
// A row number outside 1 .. rows() raises Failure 9 in every member that takes one.
// Rows may be inserted and deleted anywhere at a cost that hardly depends on their number;
// a reference to a row is valid until the next call that changes the array.
class ElementTable : public RefCounted {
 public:
  explicit ElementTable(Ref<TextPool> pool);
  ~ElementTable() override;

  TextPool& pool() const { return *pool_; }
  std::int32_t rows() const {
    return static_cast<std::int32_t>(order_ ? order_->size() : slots_.size());
  }
  const Element& Row(std::int32_t row) const {
    const auto place = static_cast<std::size_t>(row) - 1;
    return !order_ && place < slots_.size() ? slots_[place] : slots_[Slot(row)];
  }

  // Adds a row behind the last one.
  void Append(Element&& element);
  void Append(const Element& element) { Append(Element(element)); }
  // Adds a row that takes the number `row`, 1 .. rows() + 1; later rows move down.
  void Insert(std::int32_t row, Element&& element);
  void Delete(std::int32_t row);
  void DeleteAll();
  // Deletes every row i for which marked[i - 1] is not 0, in one pass. Needs rows() marks.
  void DeleteMarked(const std::vector<std::uint8_t>& marked);
  // Orders the rows by status, ascending; rows of equal status keep their order.
  void SortByStatus();

  // Replaces one of the texts bxeaName .. bxeaPosNr; the symbol must be of this array's pool.
  void SetText(std::int32_t row, BXElementArray column, Symbol text);
  // Fills those columns bxeaPosNextName .. bxeaPosNextTyp that are empty with the name, key and
  // type of the element that follows.
  void FillNext(std::int32_t row, const ElementKey& next);
  // The value is kept in the pool.
  void SetValue(std::int32_t row, std::string_view value);
  void SetValue(std::int32_t row, Symbol value) { slots_[Slot(row)].set_value(pool_->Text(value)); }
  void SetStatus(std::int32_t row, BXStatus status);
  // Null: the row has no child level from now on.
  void SetChild(std::int32_t row, Ref<Level> child);
  // See Element::set_unread; the lines must live as long as the pool.
  void SetUnread(std::int32_t row, std::string_view lines) { slots_[Slot(row)].set_unread(lines); }

  // The row of the best match, see FindElement; 0 when there is none.
  std::int32_t Find(const ElementKey& wanted) const;
  // True when a row has this name, key and type. `near` is a row where one may be looked for first,
  // any number; it becomes the row behind the one that was found.
  bool Contains(const ElementKey& identity, std::int32_t& near) const;
  // The first row with this name without regard to case; 0 when there is none.
  std::int32_t FindName(Symbol name) const;

  // Hands the rows from `row` on to change(element), in order. It may change keys and positions,
  // not names, and must leave the array alone.
  template <class Change>
  void ChangeFrom(std::int32_t row, const Change& change) {
    Slot(row);
    DropIndex();
    ForEachFrom(*this, row, [&](Element& element) {
      change(element);
      return true;
    });
  }

  // Changes whenever rows stand or are named differently than before; appending does not count.
  std::uint32_t rearrangements() const { return rearrangements_; }

  // Makes room for so many rows in all. Changes nothing that can be seen.
  void Reserve(std::size_t rows) { slots_.reserve(rows); }
  // Gives back what only further searches would need. Changes nothing that can be seen.
  void EndSearches() { DropIndex(); }

  // Brings storage back into row order after a run of insertions and deletions, so that walking
  // the rows is fast again. Changes nothing that can be seen.
  void Settle();
  // The same unless there have been few of them, which are no reason to lose what searches use.
  void SettleManyChanges();

 private:
  // Calls visit(element) for the rows from `row` on until it returns false.
  template <class Table, class Visit>
  static void ForEachFrom(Table& table, std::int32_t row, const Visit& visit) {
    auto& slots = table.slots_;
    const auto first = static_cast<std::uint32_t>(row - 1);
    if (table.order_) {
      table.order_->ForEachFrom(first, [&](std::uint32_t slot) { return visit(slots[slot]); });
      return;
    }
    for (std::size_t slot = first; slot < slots.size() && visit(slots[slot]);) ++slot;
  }

  std::size_t Slot(std::int32_t row) const;
  std::int32_t RowOfSlot(std::uint32_t slot) const;
  RowOrder& Edit();
  ElementIndex* Index() const;
  void DropIndex() const;
  std::int32_t Scan(const ElementKey& wanted) const;
  std::int32_t ScanName(Symbol name) const;

  Ref<TextPool> pool_;
  std::vector<Element> slots_;
  std::unique_ptr<RowOrder> order_;  // none while slots stand in row order
  std::size_t edits_ = 0;            // since there was none
  mutable std::unique_ptr<ElementIndex> index_;
  mutable std::int32_t scans_ = 0;  // since there was an index last
  std::uint32_t rearrangements_ = 0;
};

// True when there is no array or it has no rows.
inline bool IsArrayEmpty(const Ref<ElementTable>& array) { return !array || array->rows() == 0; }

}  // namespace tessary
