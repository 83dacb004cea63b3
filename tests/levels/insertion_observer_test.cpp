#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;

class Listener : public BeforeInsertHandler {
 public:
  explicit Listener(TextPool& pool) : pool_(pool) {}

  void BeforeInsert(const Element& element) override {
    names.emplace_back(pool_.Text(element.key[bxeaName]));
    child = element.child;
    if (on_event) on_event();
  }

  std::vector<std::string> names;
  Ref<Level> child;
  std::function<void()> on_event;

 private:
  TextPool& pool_;
};

class InsertionObserverTest : public testing::Test {
 protected:
  Ref<ElementTable> Report() { return ReadLines(engine_.context, {"[A]", "X=1", "[Line]"}); }
  Ref<ElementTable> Differences() {
    return ReadLines(engine_.context, {"N;[B]", "N;[C]", "D;[A]", "U;[Line]"});
  }

  TestEngine engine_;
  Ref<Level> level_ = engine_.NewLevel(0);
  Listener listener_{*engine_.context->pool()};
};

TEST_F(InsertionObserverTest, HearsOfInsertionsOnly) {
  level_->SetInsertionObserver(&listener_);
  level_->Convert(Report(), Differences());
  EXPECT_THAT(listener_.names, ElementsAre("[B]", "[C]"));
  level_->SetInsertionObserver(nullptr);
  level_->Convert(Report(), Differences());
  EXPECT_EQ(listener_.names.size(), 2u);
}

TEST_F(InsertionObserverTest, SeesTheChildLevelThatIsInserted) {
  level_->SetInsertionObserver(&listener_);
  const Ref<ElementTable> report = Report();
  level_->Convert(report, ReadLines(engine_.context, {"N;[B]"}));
  ASSERT_TRUE(listener_.child);
  EXPECT_EQ(listener_.child->ClassNumber(), 1);
  EXPECT_EQ(report->Row(report->rows()).child, listener_.child);
}

TEST_F(InsertionObserverTest, MayTakeTheArrayAway) {
  listener_.on_event = [&] { level_->SetElementArray(nullptr); };
  level_->SetInsertionObserver(&listener_);
  EXPECT_EQ(FailureNumber([&] { level_->Convert(Report(), Differences()); }), kObjectNotSet);
}

TEST_F(InsertionObserverTest, MayEmptyTheDifferences) {
  const Ref<ElementTable> differences = Differences();
  listener_.on_event = [&] { differences->DeleteAll(); };
  level_->SetInsertionObserver(&listener_);
  EXPECT_EQ(FailureNumber([&] { level_->Convert(Report(), differences); }), kSubscriptOutOfRange);
}

TEST(LevelClassNumber, IsThatOfTheClass) {
  TestEngine engine;
  for (int number = 0; number <= 9; ++number) {
    EXPECT_EQ(engine.NewLevel(number)->ClassNumber(), number);
  }
  EXPECT_EQ(NewBasis(engine.context)->ClassNumber(), Level::kNoLevelClass);
}

TEST(SetChild, OfNothingLeavesARowWithoutChild) {
  TestEngine engine;
  const Ref<ElementTable> table = ReadLines(engine.context, {"[A]"});
  table->SetChild(1, nullptr);
  EXPECT_FALSE(table->Row(1).HasChild());
}

}  // namespace
}  // namespace tessary
