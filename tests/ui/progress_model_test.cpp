#include "ui/progress_model.h"

#include <gtest/gtest.h>

namespace tessary {
namespace {

TEST(ProgressModelTest, BeginsWithTheTextsOfAConversionAndAnEmptyBar) {
  const ProgressModel model;
  EXPECT_EQ(ProgressModel::kWindowCaption, "Bitte warten ...");
  EXPECT_EQ(model.caption_bold(), "Berichtskonvertierung");
  EXPECT_EQ(model.caption_normal(), "List & Label");
  EXPECT_EQ(model.process(), "");
  EXPECT_EQ(model.minimum(), 0);
  EXPECT_EQ(model.maximum(), 100);
  EXPECT_EQ(model.value(), model.minimum());
}

TEST(ProgressModelTest, InitReplacesBothTitleLines) {
  ProgressModel model;
  model.Init("Berichtsvergleich", "");
  EXPECT_EQ(model.caption_bold(), "Berichtsvergleich");
  EXPECT_EQ(model.caption_normal(), "");
}

TEST(ProgressModelTest, StepsGetAnEllipsis) {
  ProgressModel model;
  model.Process("Differenzdatei wird gelesen");
  EXPECT_EQ(model.process(), "Differenzdatei wird gelesen ...");
  model.Process("");
  EXPECT_EQ(model.process(), " ...");
}

TEST(ProgressModelTest, BarGoesUpByOneAndWrapsAtItsEnd) {
  struct {
    const char* name;
    int before;
    int after;
  } const rows[] = {
      {"at the minimum", 0, 1},     {"in between", 57, 58}, {"below the maximum", 99, 100},
      {"at the maximum", 100, 0},   {"above it", 101, 101}, {"far above it", 5000, 5000},
      {"below the minimum", -1, 0},
  };
  for (const auto& row : rows) {
    ProgressModel model;
    model.set_value(row.before);
    model.Tick();
    EXPECT_EQ(model.value(), row.after) << row.name;
  }
}

TEST(ProgressModelTest, BarTakesEveryValueOnItsWayRound) {
  ProgressModel model;
  for (int expected = 1; expected <= 100; ++expected) {
    model.Tick();
    EXPECT_EQ(model.value(), expected);
  }
  model.Tick();
  EXPECT_EQ(model.value(), 0);
}

TEST(ProgressModelTest, StoppingFillsTheBarFromAnyValue) {
  for (const int before : {0, 1, 99, 100, 101}) {
    ProgressModel model;
    model.set_value(before);
    model.StopProgress();
    EXPECT_EQ(model.value(), 100) << before;
  }
}

}  // namespace
}  // namespace tessary
