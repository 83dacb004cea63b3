// Open addressing with linear probing; at most half of the places are used.

#include "engine/pair_map.h"

#include <algorithm>

namespace tessary {
namespace {

constexpr std::size_t kFirstSize = 32;

std::uint64_t Pack(std::uint32_t first, std::uint32_t second) {
  return (std::uint64_t{first} << 32) | second;
}

}  // namespace

std::size_t PairMap::Hash(std::uint64_t pair) {
  pair = (pair ^ (pair >> 31)) * 0x9E3779B97F4A7C15u;
  return static_cast<std::size_t>(pair ^ (pair >> 32));
}

std::size_t PairMap::Place(std::uint64_t pair) const {
  const std::size_t mask = entries_.size() - 1;
  std::size_t place = Hash(pair) & mask;
  while (entries_[place].used && entries_[place].pair != pair) place = (place + 1) & mask;
  return place;
}

std::uint32_t PairMap::Find(std::uint32_t first, std::uint32_t second) const {
  return entries_.empty() ? kNone : entries_[Place(Pack(first, second))].value;
}

std::uint32_t& PairMap::At(std::uint32_t first, std::uint32_t second) {
  if (2 * (count_ + 1) > entries_.size()) Resize(std::max(kFirstSize, 2 * entries_.size()));
  Entry& entry = entries_[Place(Pack(first, second))];
  if (!entry.used) {
    entry = {Pack(first, second), kNone, true};
    ++count_;
  }
  return entry.value;
}

void PairMap::Reserve(std::size_t count) {
  std::size_t size = kFirstSize;
  while (size < 2 * count) size *= 2;
  if (size > entries_.size()) Resize(size);
}

void PairMap::Clear() {
  entries_.clear();
  count_ = 0;
}

void PairMap::Resize(std::size_t size) {
  std::vector<Entry> old(size);
  old.swap(entries_);
  for (const Entry& entry : old) {
    if (entry.used) entries_[Place(entry.pair)] = entry;
  }
}

}  // namespace tessary
