#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessary {

// A hash map from pairs of 32-bit numbers to 32-bit numbers; entries are added or replaced, never
// removed.
class PairMap {
 public:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  // The value of a pair, or kNone.
  std::uint32_t Find(std::uint32_t first, std::uint32_t second) const;
  // The place of a pair's value, which starts as kNone; valid until the next call.
  std::uint32_t& At(std::uint32_t first, std::uint32_t second);
  void Reserve(std::size_t count);
  void Clear();

 private:
  struct Entry {
    std::uint64_t pair = 0;
    std::uint32_t value = kNone;
    bool used = false;
  };

  static std::size_t Hash(std::uint64_t pair);
  std::size_t Place(std::uint64_t pair) const;
  void Resize(std::size_t size);

  std::vector<Entry> entries_;
  std::size_t count_ = 0;
};

}  // namespace tessary
