// What an observer hears of differences that are applied, one line for each.

#include "engine/conversion_observer.h"

#include <gmock/gmock.h>

#include "support/engine_fixture.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Listener : public ConversionObserver {
 public:
  std::vector<std::string> heard;

  void Enter(const ElementTexts& element) override {
    heard.push_back("> " + std::string(element.name));
  }
  void Leave() override { heard.emplace_back("<"); }
  void Applied(BXStatus status, const ElementTexts& element, std::string_view old_value,
               std::string_view new_value) override {
    heard.push_back(Text(status, element) + ": " + std::string(old_value) + " -> " +
                    std::string(new_value));
  }
  void Skipped(BXStatus status, const ElementTexts& element, std::string_view new_value,
               SkipReason reason) override {
    heard.push_back(Text(status, element) + "=" + std::string(new_value) + ": skipped " +
                    std::to_string(static_cast<int>(reason)));
  }

 private:
  static std::string Text(BXStatus status, const ElementTexts& element) {
    std::string text(1, "DNU-"[status]);
    return text.append(" ")
        .append(element.name)
        .append("|")
        .append(element.key)
        .append("|")
        .append(element.typ);
  }
};

std::string SkippedFor(SkipReason reason) {
  return ": skipped " + std::to_string(static_cast<int>(reason));
}

class ConversionObserverTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  Ref<Level> Child(Rows rows) { return LevelOf(engine_.context, 3, rows); }
  std::vector<std::string> Heard(Rows report, Rows differences) {
    listener_.heard.clear();
    engine_.context->SetObserver(&listener_);
    engine_.NewLevel(2)->Convert(TableOf(engine_.context, report),
                                 TableOf(engine_.context, differences));
    engine_.context->SetObserver(nullptr);
    return listener_.heard;
  }

  TestEngine engine_;
  Listener listener_;
};

RowTexts Inserted(RowTexts row) { return WithStatus(bxsNew, row); }
RowTexts Deleted(RowTexts row) { return WithStatus(bxsDelete, row); }
RowTexts Updated(RowTexts row) { return WithStatus(bxsUpdate, row); }

TEST_F(ConversionObserverTest, HearsWhatIsAppliedInItsOrder) {
  EXPECT_THAT(
      Heard({PropertyRow("A", "1"), PropertyRow("B", "2")},
            {Updated(PropertyRow("A", "3")), Inserted({.name = "[N]", .key = "7", .typ = "T"}),
             Inserted(PropertyRow("C", "4")), Deleted(PropertyRow("B", "x"))}),
      ElementsAre("D B|B|: 2 -> ", "N [N]|7|T:  -> ", "N C|C|:  -> 4", "U A|A|: 1 -> 3"));
}

TEST_F(ConversionObserverTest, HearsWhyADifferenceDidNothing) {
  EXPECT_THAT(Heard({PropertyRow("A", "1")},
                    {Deleted(PropertyRow("X", "")), Inserted(PropertyRow("A", "2")),
                     Updated(PropertyRow("Y", "3")), Updated(PropertyRow("A", "1")),
                     PropertyRow("Z", "4")}),
              ElementsAre("D X|X|=" + SkippedFor(SkipReason::kNotFound),
                          "N A|A|=2" + SkippedFor(SkipReason::kAlreadyThere),
                          "U Y|Y|=3" + SkippedFor(SkipReason::kNotFound),
                          "U A|A|=1" + SkippedFor(SkipReason::kSameValue),
                          "- Z|Z|=4" + SkippedFor(SkipReason::kNoStatus)));
}

TEST_F(ConversionObserverTest, ALetterCaseThatChangesIsAChange) {
  EXPECT_THAT(Heard({PropertyRow("A", "x")}, {Updated(PropertyRow("A", "X"))}),
              ElementsAre("U A|A|: x -> X"));
}

TEST_F(ConversionObserverTest, SectionsAreEntered) {
  EXPECT_THAT(Heard({SectionRow("[S]", Child({PropertyRow("A", "1")}))},
                    {Updated(SectionRow("[S]", Child({Updated(PropertyRow("A", "2"))})))}),
              ElementsAre("> [S]", "U A|A|: 1 -> 2", "<"));
}

TEST_F(ConversionObserverTest, AllInsideAMissingSectionIsSkipped) {
  const Ref<Level> inner = Child({Deleted(PropertyRow("B", ""))});
  const Ref<Level> outer =
      Child({Updated(PropertyRow("A", "2")), Updated(SectionRow("[Inner]", inner))});
  EXPECT_THAT(
      Heard({PropertyRow("X", "1")}, {Updated(SectionRow("[S]", outer))}),
      ElementsAre("> [S]", "U A|A|=2" + SkippedFor(SkipReason::kSectionNotFound), "> [Inner]",
                  "D B|B|=" + SkippedFor(SkipReason::kSectionNotFound), "<", "<"));
}

TEST_F(ConversionObserverTest, ASectionWithoutContentsTakesNothing) {
  const std::string skipped = "N A|A|=2" + SkippedFor(SkipReason::kEmptySection);
  const Rows none = {};
  EXPECT_THAT(Heard({SectionRow("[S]", Child(none))},
                    {Updated(SectionRow("[S]", Child({Inserted(PropertyRow("A", "2"))})))}),
              ElementsAre("> [S]", skipped, "<"));
  EXPECT_THAT(Heard({SectionRow("[S]")},
                    {Updated(SectionRow("[S]", Child({Inserted(PropertyRow("A", "2"))})))}),
              ElementsAre("> [S]", skipped, "<"));
  EXPECT_THAT(Heard({}, {Inserted(PropertyRow("A", "2"))}), ElementsAre(skipped));
}

TEST_F(ConversionObserverTest, ABlockBelowAPropertyIsNeverChanged) {
  const auto difference = [&](const char* value) {
    return Updated(PropertyRow("F", value, Child({Updated(PropertyRow("A", "2"))})));
  };
  const std::string skipped = "U A|A|=2" + SkippedFor(SkipReason::kBelowProperty);
  EXPECT_THAT(Heard({PropertyRow("F", "1", Child({PropertyRow("A", "1")}))}, {difference("1")}),
              ElementsAre("> F", skipped, "<"))
      << "the property itself has not changed";
  EXPECT_THAT(Heard({PropertyRow("F", "1")}, {difference("9")}),
              ElementsAre("U F|F|: 1 -> 9", "> F", skipped, "<"));
}

TEST_F(ConversionObserverTest, ASectionNamedWithoutAChangeInside) {
  const Rows none = {};
  EXPECT_THAT(Heard({SectionRow("[S]", Child({PropertyRow("A", "1")}))},
                    {Updated(SectionRow("[S]", Child(none)))}),
              ElementsAre("U [S]|[S]|=" + SkippedFor(SkipReason::kNothingInside), "> [S]", "<"));
}

TEST_F(ConversionObserverTest, NobodyIsToldWithoutAnObserver) {
  engine_.NewLevel(2)->Convert(TableOf(engine_.context, {PropertyRow("A", "1")}),
                               TableOf(engine_.context, {Updated(PropertyRow("A", "2"))}));
  EXPECT_THAT(listener_.heard, IsEmpty());
}

}  // namespace
}  // namespace tessary
