#include "ui/icon_drawing.h"

#include <gtest/gtest.h>

#include <set>

namespace tessary {
namespace {

constexpr IconShape kAll[] = {IconShape::kCorrect, IconShape::kError, IconShape::kWarning,
                              IconShape::kReport};
constexpr int kSizes[] = {16, 20, 24, 32};

std::uint32_t Opacity(std::uint32_t pixel) { return pixel >> 24; }

TEST(IconDrawingTest, FillsTheSquareAndLeavesItsCornersClear) {
  for (const IconShape shape : kAll) {
    for (const int size : kSizes) {
      const auto pixels = DrawIcon(shape, size);
      const auto n = static_cast<std::size_t>(size);
      ASSERT_EQ(pixels.size(), n * n);
      EXPECT_EQ(pixels.front(), 0u);
      EXPECT_EQ(pixels[n - 1], 0u);
      EXPECT_EQ(pixels[n * n - n], 0u);
      EXPECT_EQ(Opacity(pixels[n * n / 2 + n / 2]), 0xFFu);
    }
  }
}

TEST(IconDrawingTest, EdgesFadeInTheColourOfTheShape) {
  std::set<std::uint32_t> opacities;
  for (const std::uint32_t pixel : DrawIcon(IconShape::kWarning, 20)) {
    opacities.insert(Opacity(pixel));
    if (Opacity(pixel) == 0) {
      EXPECT_EQ(pixel, 0u);
    } else if (Opacity(pixel) < 0xFF) {
      EXPECT_EQ(pixel & 0xFFFFFF, 0xF2B01Eu);
    }
  }
  EXPECT_GT(opacities.size(), 4u);
}

TEST(IconDrawingTest, ShapesDiffer) {
  std::set<std::vector<std::uint32_t>> seen;
  for (const IconShape shape : kAll) seen.insert(DrawIcon(shape, 16));
  EXPECT_EQ(seen.size(), std::size(kAll));
}

TEST(IconDrawingTest, LargerSizesAreDrawnAndNotStretched) {
  const auto small = DrawIcon(IconShape::kError, 16);
  const auto large = DrawIcon(IconShape::kError, 32);
  bool same = true;
  for (std::size_t i = 0; i < large.size(); ++i) {
    same = same && large[i] == small[i / 64 * 16 + i % 32 / 2];
  }
  EXPECT_FALSE(same);
}

}  // namespace
}  // namespace tessary
