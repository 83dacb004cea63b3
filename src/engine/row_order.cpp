// The slots are kept in chunks of bounded size. A row is found by adding up chunk sizes, which
// stand in one small array; inserting and erasing move slots within one chunk only. A chunk that
// is full is split in two.

#include "engine/row_order.h"

#include <algorithm>
#include <numeric>

namespace tessary {
namespace {

constexpr std::uint32_t kChunkLimit = 512;

std::ptrdiff_t Offset(std::size_t n) { return static_cast<std::ptrdiff_t>(n); }

}  // namespace

RowOrder::RowOrder(std::uint32_t count) : size_(count), chunk_of_(count) {
  for (std::uint32_t first = 0; first < count || chunks_.empty(); first += kChunkLimit / 2) {
    const auto id = static_cast<std::uint32_t>(chunks_.size());
    const std::uint32_t length = std::min(kChunkLimit / 2, count - first);
    std::vector<std::uint32_t> slots(length);
    std::iota(slots.begin(), slots.end(), first);
    std::fill_n(chunk_of_.begin() + Offset(first), length, id);
    chunks_.push_back(std::move(slots));
    sizes_.push_back(length);
    chunk_ids_.push_back(id);
    places_.push_back(id);
  }
}

void RowOrder::Forget() const {
  found_place_ = 0;
  found_first_ = 0;
}

RowOrder::Position RowOrder::Find(std::uint32_t row) const {
  if (row < found_first_) Forget();
  while (found_place_ + 1 < sizes_.size() && row >= found_first_ + sizes_[found_place_]) {
    found_first_ += sizes_[found_place_++];
  }
  return {found_place_, row - found_first_};
}

std::uint32_t RowOrder::SlotAt(std::uint32_t row) const {
  const Position position = Find(row);
  return chunks_[chunk_ids_[position.place]][position.offset];
}

std::uint32_t RowOrder::RowOf(std::uint32_t slot) const {
  const std::uint32_t id = chunk_of_[slot];
  const auto& slots = chunks_[id];
  const auto before =
      std::accumulate(sizes_.begin(), sizes_.begin() + Offset(places_[id]), std::uint32_t{0});
  return before +
         static_cast<std::uint32_t>(std::find(slots.begin(), slots.end(), slot) - slots.begin());
}

void RowOrder::Insert(std::uint32_t row, std::uint32_t slot) {
  Position position = Find(row);
  if (sizes_[position.place] == kChunkLimit) {
    Split(position.place);
    position = Find(row);
  }
  const std::uint32_t id = chunk_ids_[position.place];
  auto& slots = chunks_[id];
  slots.insert(slots.begin() + Offset(position.offset), slot);
  if (slot >= chunk_of_.size()) chunk_of_.resize(slot + 1);
  chunk_of_[slot] = id;
  ++sizes_[position.place];
  ++size_;
}

void RowOrder::Erase(std::uint32_t row) {
  const Position position = Find(row);
  auto& slots = chunks_[chunk_ids_[position.place]];
  slots.erase(slots.begin() + Offset(position.offset));
  --sizes_[position.place];
  --size_;
}

void RowOrder::Split(std::size_t place) {
  const auto new_id = static_cast<std::uint32_t>(chunks_.size());
  auto& slots = chunks_[chunk_ids_[place]];
  const auto middle = slots.begin() + kChunkLimit / 2;
  std::vector<std::uint32_t> rest(middle, slots.end());
  slots.erase(middle, slots.end());
  for (const std::uint32_t slot : rest) chunk_of_[slot] = new_id;
  sizes_[place] = static_cast<std::uint32_t>(slots.size());
  sizes_.insert(sizes_.begin() + Offset(place + 1), static_cast<std::uint32_t>(rest.size()));
  chunk_ids_.insert(chunk_ids_.begin() + Offset(place + 1), new_id);
  chunks_.push_back(std::move(rest));
  places_.resize(chunks_.size());
  for (std::size_t at = place + 1; at < chunk_ids_.size(); ++at) {
    places_[chunk_ids_[at]] = static_cast<std::uint32_t>(at);
  }
}

std::vector<std::uint32_t> RowOrder::Slots() const {
  std::vector<std::uint32_t> all;
  all.reserve(size_);
  for (const std::uint32_t id : chunk_ids_) {
    all.insert(all.end(), chunks_[id].begin(), chunks_[id].end());
  }
  return all;
}

}  // namespace tessary
