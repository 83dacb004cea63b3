#include "engine/pair_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <utility>

namespace tessary {
namespace {

TEST(PairMapTest, AnEmptyMapHasNothing) {
  const PairMap map;
  EXPECT_EQ(map.Find(0, 0), PairMap::kNone);
  EXPECT_EQ(map.Find(1, 2), PairMap::kNone);
}

TEST(PairMapTest, APlaceStartsAsNoneAndKeepsItsValue) {
  PairMap map;
  EXPECT_EQ(map.At(0, 0), PairMap::kNone);
  map.At(0, 0) = 7;
  map.At(1, 2) = 8;
  map.At(2, 1) = 9;
  EXPECT_EQ(map.Find(0, 0), 7u);
  EXPECT_EQ(map.Find(1, 2), 8u);
  EXPECT_EQ(map.Find(2, 1), 9u);
  map.At(1, 2) = 10;
  EXPECT_EQ(map.Find(1, 2), 10u);
  EXPECT_EQ(map.Find(UINT32_MAX, UINT32_MAX), PairMap::kNone);
}

TEST(PairMapTest, ClearForgetsEverything) {
  PairMap map;
  for (std::uint32_t n = 0; n < 100; ++n) map.At(n, n) = n;
  map.Clear();
  for (std::uint32_t n = 0; n < 100; ++n) EXPECT_EQ(map.Find(n, n), PairMap::kNone);
  map.At(5, 5) = 1;
  EXPECT_EQ(map.Find(5, 5), 1u);
}

TEST(PairMapTest, ReserveKeepsWhatIsThere) {
  PairMap map;
  map.At(3, 4) = 5;
  for (const std::size_t count : {0u, 1u, 1000u, 10u}) {
    map.Reserve(count);
    EXPECT_EQ(map.Find(3, 4), 5u);
    EXPECT_EQ(map.Find(4, 3), PairMap::kNone);
  }
}

TEST(PairMapTest, AgreesWithAnOrderedMap) {
  for (const std::uint32_t span : {10u, 300u, UINT32_MAX}) {
    std::mt19937 random(span);
    PairMap map;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> expected;
    for (std::uint32_t n = 0; n < 20'000; ++n) {
      const auto first = static_cast<std::uint32_t>(random()) % span;
      const auto second = static_cast<std::uint32_t>(random()) % span;
      const auto known = expected.find({first, second});
      ASSERT_EQ(map.Find(first, second), known == expected.end() ? PairMap::kNone : known->second);
      if (n % 3 != 0) map.At(first, second) = expected[{first, second}] = n;
    }
    for (const auto& [pair, value] : expected) {
      ASSERT_EQ(map.Find(pair.first, pair.second), value);
    }
  }
}

}  // namespace
}  // namespace tessary
