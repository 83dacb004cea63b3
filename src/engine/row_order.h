#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessary {

// The order of rows while an element array is being edited: which storage slot stands at which
// row, with rows inserted and taken out in the middle without moving all that follow. Rows and
// slots count from 0 here.
class RowOrder {
 public:
  // Rows 0 .. count-1 hold the slots of the same number.
  explicit RowOrder(std::uint32_t count);

  std::uint32_t size() const { return size_; }
  std::uint32_t SlotAt(std::uint32_t row) const;
  // The row of a slot that is in the order.
  std::uint32_t RowOf(std::uint32_t slot) const;
  // Puts a slot that is not in the order at `row`; later rows move down by one.
  void Insert(std::uint32_t row, std::uint32_t slot);
  void Erase(std::uint32_t row);
  // All slots in row order.
  std::vector<std::uint32_t> Slots() const;
  // Calls visit(slot) for the rows from `row` on, in order, until it returns false.
  template <class Visit>
  void ForEachFrom(std::uint32_t row, const Visit& visit) const {
    Position position = Find(row);
    for (; position.place < chunk_ids_.size(); position = {position.place + 1, 0}) {
      const std::vector<std::uint32_t>& slots = chunks_[chunk_ids_[position.place]];
      for (std::size_t at = position.offset; at < slots.size(); ++at) {
        if (!visit(slots[at])) return;
      }
    }
  }

 private:
  struct Position {
    std::size_t place;  // of the chunk in row order
    std::size_t offset;
  };

  Position Find(std::uint32_t row) const;
  void Forget() const;
  void Split(std::size_t place);

  std::uint32_t size_;
  std::vector<std::uint32_t> sizes_;                // of the chunks, in row order
  std::vector<std::uint32_t> chunk_ids_;            // in row order
  std::vector<std::uint32_t> places_;               // of a chunk in row order, by its id
  std::vector<std::vector<std::uint32_t>> chunks_;  // the slots of a chunk, by its id
  std::vector<std::uint32_t> chunk_of_;             // by slot
  // The chunk found last and its first row: walking the rows in order needs no adding up.
  mutable std::size_t found_place_ = 0;
  mutable std::uint32_t found_first_ = 0;
};

}  // namespace tessary
