// Behaviours that look like mistakes but that existing files rely on, and round trips.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/report_file.h"
#include "support/engine_fixture.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

class ReportQuirksTest : public testing::Test {
 protected:
  Ref<ElementTable> Read(const Lines& lines) { return ReadLines(engine_.context, lines); }
  Lines RoundTrip(const Lines& lines) { return WriteLines(engine_.context, Read(lines)); }
  Lines Differences(const Lines& old_lines, const Lines& new_lines) {
    const Ref<Level> level = engine_.NewLevel(0);
    level->Compare(Read(old_lines), Read(new_lines));
    return WriteLines(engine_.context, level->ElementArray());
  }
  Lines Converted(const Lines& report, const Lines& differences) {
    const Ref<Level> level = engine_.NewLevel(0);
    level->Convert(Read(report), Read(differences));
    return WriteLines(engine_.context, level->ElementArray());
  }

  TestEngine engine_;
};

TEST_F(ReportQuirksTest, ChangesInABlockBelowAPropertyAreWrittenButNeverApplied) {
  const Lines old_lines = {"[A]", "X=1", "{", "Y=1", "}"};
  const Lines differences = Differences(old_lines, {"[A]", "X=1", "{", "Y=2", "}"});
  ASSERT_EQ(differences.size(), 5);
  EXPECT_EQ(differences[3].substr(differences[3].find(';') + 1), "Y=2");
  EXPECT_EQ(Converted(old_lines, differences), RoundTrip(old_lines));
}

TEST_F(ReportQuirksTest, ASurplusBlockEndDropsTheRestOfTheFile) {
  EXPECT_THAT(RoundTrip({"[A]", "X=1", "}", "}", "[B]", "Y=2", "[C]"}), ElementsAre("[A]", " X=1"));
}

TEST_F(ReportQuirksTest, ASectionBlockDirectlyUnderASectionDropsTheRestOfTheFile) {
  EXPECT_THAT(RoundTrip({"[A]", "{", "[B]", "{", "X=1", "}", "}", "[C]", "Y=2"}),
              ElementsAre("[A]", "[B]", " X=1"));
}

TEST_F(ReportQuirksTest, APropertyNamedUserIsNumberedLikeAVariable) {
  EXPECT_THAT(RoundTrip({"[A]", "User=abc"}), ElementsAre("[A]", " User1=User;abc"));
  EXPECT_THAT(RoundTrip({"[A]", "sum=1", "USER="}),
              ElementsAre("[A]", " sum1=sum;1", " USER2=USER;"));
  // It is an ordinary property from then on.
  EXPECT_THAT(RoundTrip({"[A]", "User1=User;abc"}), ElementsAre("[A]", " User1=User;abc"));
}

TEST_F(ReportQuirksTest, ALineWithoutAnEqualsSignGetsOne) {
  EXPECT_THAT(RoundTrip({"[A]", "Foo"}), ElementsAre("[A]", " Foo="));
}

TEST_F(ReportQuirksTest, AnElementTakenOverIntoAnEmptyLevelCarriesItsNameAsValue) {
  const Lines differences = Differences({"[A]", "X=1", "[B]"}, {"[A]", "X=1", "[B]", "Width=10"});
  ASSERT_EQ(differences.size(), 2);
  EXPECT_EQ(differences[1],
            " N(Key=Width:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);"
            "Width=Width");
}

TEST_F(ReportQuirksTest, AColonInAFieldLosesTheWholePlace) {
  const Lines differences =
      Differences({"[A]", "X=1", "Z 1:2=0"}, {"[A]", "X=1", "Y=5", "Z 1:2=0"});
  ASSERT_EQ(differences.size(), 2);
  EXPECT_EQ(differences[1],
            " N(Key=Y:Typ=:PrevName=X:PrevKey=X:PrevTyp=:NextName=Z 1:2:NextKey=Z "
            "1:2:NextTyp=:PosNr=);Y=5");
  // Without its place the new property goes to the end.
  EXPECT_THAT(Converted({"[A]", "X=1", "Z 1:2=0"}, differences),
              ElementsAre("[A]", " X=1", " Z 1:2=0", " Y=5"));
}

TEST_F(ReportQuirksTest, VariablesGetFreshNumbers) {
  EXPECT_THAT(RoundTrip({"[A]", "User7=@a;1", "Sum7=@b;2", "User9=x", "User3=@c;"}),
              ElementsAre("[A]", " User1=@a;1", " Sum2=@b;2", " User9=x", " User3=@c;"));
}

TEST_F(ReportQuirksTest, TheNumberOfColumnsIsCountedAnew) {
  Lines lines = {"[A]", "[@Lines]"};
  for (int level = 2; level < 7; ++level) {
    lines.push_back("{");
    lines.push_back("[S]");
  }
  for (const char* line : {"{", "Columns=9", "[Column]", "{", "Text=a", "}", "[Column]"}) {
    lines.emplace_back(line);
  }
  EXPECT_THAT(RoundTrip(lines), testing::Contains("\t   Columns=2"));
}

TEST_F(ReportQuirksTest, ALineWithoutANameIsWrittenWithoutText) {
  EXPECT_THAT(Brief(Read({"[A]", "=x", "Y=1"})), ElementsAre("- [A]|[A]|", "  - ||x", "  - Y|Y|1"));
  Ref<WriteTable> lines;
  const Ref<Level> level = engine_.NewLevel(0);
  level->SetElementArray(Read({"[A]", "=x", "Y=1"}));
  level->PrepareWriting(lines, 0);
  EXPECT_THAT(WriteRows(lines), ElementsAre("0 [A]", "1 ", "1 Y=1"));
}

TEST_F(ReportQuirksTest, RoundTripsAreStableFromTheSecondPassOn) {
  const Lines cases[] = {
      {"[A]", "User=1", "Foo", "User5=@a;b", "[@Lines]", "{", "[B]", "[C]", "{", "x=1", "}", "}"},
      {"[A]", "X=1", "{", "[P]", "{", "}", "[Q]", "}", "Y=2", "[B]", "[C]"},
      {"[A]", "[@Lines]", "{", "[P]", "{", "[Q]", "}", "[R]", "{", "Z = a;b:c=(d) ", "}", "}"},
      {"[A]", "}", "}", "[B]"},
      {"  [A]  ", "\tX\t=\t1", "{", "Y=2"},
  };
  for (const Lines& lines : cases) {
    const Lines twice = RoundTrip(RoundTrip(lines));
    EXPECT_EQ(RoundTrip(twice), twice);
  }
}

TEST_F(ReportQuirksTest, WhatWasWrittenReadsBackAsTheSameTree) {
  const Lines lines = {"[A]", "X=1", "{", "[P]", "[Q]", "Y=2", "}", "Z=3", "[B]", "[C]", "W=4"};
  EXPECT_EQ(Dump(Read(RoundTrip(lines))), Dump(Read(lines)));
}

TEST_F(ReportQuirksTest, DifferencesBetweenReleasesReachTheCustomersReport) {
  const Lines old_lines = {"[Object]", "ObjectName=Kopf", "Width=10",
                           "[Object]", "ObjectName=Fuss", "Height=5"};
  const Lines new_lines = {"[Object]", "ObjectName=Kopf", "Width=12", "Color=rot",
                           "[Object]", "ObjectName=Bild", "Height=7"};
  const Lines customer = {"[Object]", "ObjectName=Kopf", "Own=1",
                          "Width=10", "[Object]",        "ObjectName=Fuss",
                          "Height=5", "[Object]",        "ObjectName=Eigenes"};
  EXPECT_THAT(
      Converted(customer, Differences(old_lines, new_lines)),
      ElementsAre("[Object]", " ObjectName=Kopf", " Own=1", " Width=12", " Color=rot", "[Object]",
                  " ObjectName=Bild", " Height=7", "[Object]", " ObjectName=Eigenes"));
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

}  // namespace
}  // namespace tessary
