#include "engine/row_order.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <vector>

namespace tessary {
namespace {

using Slots = std::vector<std::uint32_t>;

Slots Counted(std::uint32_t count) {
  Slots slots(count);
  std::iota(slots.begin(), slots.end(), 0u);
  return slots;
}

std::ptrdiff_t At(std::uint32_t row) { return static_cast<std::ptrdiff_t>(row); }

void ExpectOrder(const RowOrder& order, const Slots& expected) {
  ASSERT_EQ(order.size(), expected.size());
  ASSERT_EQ(order.Slots(), expected);
  for (std::uint32_t row = 0; row < order.size(); ++row) {
    ASSERT_EQ(order.SlotAt(row), expected[row]) << row;
    ASSERT_EQ(order.RowOf(expected[row]), row);
  }
  for (std::uint32_t row = order.size(); row-- > 0;) ASSERT_EQ(order.SlotAt(row), expected[row]);
}

class RowOrderTest : public testing::TestWithParam<std::uint32_t> {};

TEST_P(RowOrderTest, StartsInOrder) { ExpectOrder(RowOrder(GetParam()), Counted(GetParam())); }

TEST_P(RowOrderTest, CanBeEmptiedFromTheFrontAndFilledAgain) {
  RowOrder order(GetParam());
  for (std::uint32_t n = 0; n < GetParam(); ++n) order.Erase(0);
  ExpectOrder(order, {});
  Slots expected;
  for (std::uint32_t n = 0; n < 3; ++n) {
    order.Insert(0, GetParam() + n);
    expected.insert(expected.begin(), GetParam() + n);
  }
  ExpectOrder(order, expected);
}

TEST_P(RowOrderTest, GrowsAtOnePlaceBeyondTheSizeOfAChunk) {
  RowOrder order(GetParam());
  Slots expected = Counted(GetParam());
  const std::uint32_t row = GetParam() / 2;
  for (std::uint32_t n = 0; n < 1500; ++n) {
    order.Insert(row, GetParam() + n);
    expected.insert(expected.begin() + At(row), GetParam() + n);
  }
  ExpectOrder(order, expected);
}

TEST_P(RowOrderTest, FollowsAVectorThroughRandomChanges) {
  std::mt19937 random(GetParam() + 1);
  RowOrder order(GetParam());
  Slots expected = Counted(GetParam());
  std::uint32_t next_slot = GetParam();
  for (int step = 0; step < 6000; ++step) {
    const auto size = static_cast<std::uint32_t>(expected.size());
    const bool growing = (step / 1500) % 2 == 0;
    if (size == 0 || random() % 10 < (growing ? 6u : 3u)) {
      const auto row = static_cast<std::uint32_t>(random() % (size + 1));
      order.Insert(row, next_slot);
      expected.insert(expected.begin() + At(row), next_slot++);
    } else {
      const auto row = static_cast<std::uint32_t>(random() % size);
      order.Erase(row);
      expected.erase(expected.begin() + At(row));
    }
    if (expected.empty()) continue;
    const auto row = static_cast<std::uint32_t>(random() % expected.size());
    ASSERT_EQ(order.SlotAt(row), expected[row]) << step;
    ASSERT_EQ(order.RowOf(expected[row]), row) << step;
    if (step % 500 == 0) ExpectOrder(order, expected);
  }
  ExpectOrder(order, expected);
}

INSTANTIATE_TEST_SUITE_P(Sizes, RowOrderTest,
                         testing::Values(0u, 1u, 2u, 255u, 256u, 257u, 512u, 513u, 2000u),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace tessary
