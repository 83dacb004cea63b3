#include <gtest/gtest.h>

#include "levels/level_factory.h"
#include "platform/failure.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

class NestingTest : public testing::Test {
 protected:
  // A level with `depth` levels below it, one below the other.
  Ref<Level> Chain(int depth) {
    Ref<Level> top = context_->CreateLevel(0);
    Ref<Level> level = top;
    for (int made = 0; made < depth; ++made) {
      AddArguments element;
      element.strName = "[A]";
      element.objLevel = context_->CreateLevel(1);
      element.bxltLineType = bxltSection;
      level->Add(element);
      level = element.objLevel;
    }
    return top;
  }

  SharedErrors errors_;
  Ref<EngineContext> context_ = NewEngineContext(errors_, nullptr);
};

TEST_F(NestingTest, LevelsAreWrittenAsDeepAsTheyMayBe) {
  Ref<WriteTable> lines;
  Chain(199)->PrepareWriting(lines, 0);
  EXPECT_EQ(lines->rows(), 199);
}

TEST_F(NestingTest, DeeperLevelsEndInAFailureNotInTheStack) {
  Ref<WriteTable> lines;
  EXPECT_EQ(FailureNumber([&] { Chain(200)->PrepareWriting(lines, 0); }), kOutOfStack);
  EXPECT_EQ(FailureNumber([&] { Chain(100'000)->PrepareWriting(lines, 0); }), kOutOfStack);
  lines = nullptr;
  Chain(1)->PrepareWriting(lines, 0);
  EXPECT_EQ(lines->rows(), 1);
}

TEST_F(NestingTest, DeepLevelsAreLetGoOfWithoutDeepCalls) {
  Chain(200'000);
  Ref<ElementTable> array = Chain(200'000)->ElementArray();
  array = nullptr;
}

}  // namespace
}  // namespace tessary
