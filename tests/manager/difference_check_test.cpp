#include "manager/difference_check.h"

#include <gmock/gmock.h>

#include "support/failure_number.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

class DifferenceCheckTest : public ManagerTest {
 protected:
  // Compares two versions and checks the difference; each place as "reason line place: wanted >
  // found".
  Lines Check(const Lines& old_lines, const Lines& new_lines) {
    const std::string old_path = Path("old", "a.lst");
    const std::string new_path = Path("new", "a.lst");
    memory_.Put(old_path, ReportText(3, "A", old_lines));
    memory_.Put(new_path, ReportText(4, "A", new_lines));
    memory_.PutFolder(Folder("diff"));
    EXPECT_TRUE(manager_.CreateDiffFile(old_path, new_path, Folder("diff")));
    Lines list;
    for (const Unreproduced& place :
         CheckDifference(memory_, old_path, new_path, Path("diff", "3_4A"))) {
      std::string text =
          std::to_string(static_cast<int>(place.reason)) + " " + std::to_string(place.line);
      for (const std::string& element : place.place) text.append(" ").append(element);
      list.push_back(text + ": " + place.wanted + " > " + place.found);
    }
    return list;
  }
};

TEST_F(DifferenceCheckTest, NothingIsLeftOfOrdinaryChanges) {
  EXPECT_THAT(Check({"[Layout]", "A=1", "B=2", "[Object]", "ObjectName=Kopf", "C=1"},
                    {"[Layout]", "A=9", "N=3", "B=2", "[Object]", "ObjectName=Neu", "D=1"}),
              IsEmpty());
}

TEST_F(DifferenceCheckTest, MovedElements) {
  EXPECT_THAT(Check({"[Layout]", "A=1", "B=2", "C=3"}, {"[Layout]", "B=2", "C=3", "A=1"}),
              ElementsAre("0 7 [Layout]: A=1 > A=1"));
  EXPECT_THAT(Check({"[X]", "A=1", "[Y]", "B=1"}, {"[Y]", "B=1", "[X]", "A=1"}).size(), 1u);
}

TEST_F(DifferenceCheckTest, LetterCaseOnly) {
  EXPECT_THAT(Check({"[Layout]", "Text=abc", "name=1"}, {"[Layout]", "Text=ABC", "NAME=1"}),
              ElementsAre("1 5 [Layout]: Text=ABC > Text=abc", "1 6 [Layout]: NAME=1 > name=1"));
}

TEST_F(DifferenceCheckTest, Duplicates) {
  EXPECT_THAT(Check({"[Layout]", "A=1"}, {"[Layout]", "A=1", "A=2"}),
              ElementsAre("2 5 [Layout]: A=1 > A=2", "2 6 [Layout]: A=2 > "));
  EXPECT_THAT(Check({"[Layout]", "A=1", "A=2", "A=3"}, {"[Layout]", "A=1"}).size(), 2u);
}

TEST_F(DifferenceCheckTest, BlocksBelowAProperty) {
  EXPECT_THAT(Check({"[Layout]", "Font=1", "{", "Size=1", "Bold=1", "}"},
                    {"[Layout]", "Font=1", "{", "Size=2", "Bold=1", "}"}),
              ElementsAre("3 7 [Layout] Font: Size=2 > Size=1"));
}

TEST_F(DifferenceCheckTest, OtherReasons) {
  const Lines list = Check({"[Layout]", "[Object]", "A=1"}, {"[Layout]", "N=7", "[Object]", "A=1"});
  EXPECT_THAT(list, ElementsAre("4 5 [Layout]: N=7 > ")) << "an empty level takes nothing";
}

TEST_F(DifferenceCheckTest, ReasonsComeInTheirOrderAndLinesAreThoseOfTheFile) {
  EXPECT_THAT(Check({"[Layout]", "Font=1", "{", "Size=1", "}", "X=a", "Y=1", "Z=1"},
                    {"", "[Layout]", "Font=1", "{", "Size=2", "}", "X=A", "Z=1", "Y=1"}),
              ElementsAre("0 11 [Layout]: Z=1 > Z=1", "1 10 [Layout]: X=A > X=a",
                          "3 8 [Layout] Font: Size=2 > Size=1"));
}

TEST_F(DifferenceCheckTest, LinesAreThoseOfTheFileWhereBlocksAreNotBalanced) {
  // E hangs below C, which stands before [X].
  const Lines lines = {"[A]", "B=1", "{", "C=1", "{", "D=1", "}",   "}",  "[X]",
                       "Y=1", "{",   "{", "E=1", "}", "}",   "[G]", "H=1"};
  const std::string old_path = Path("old", "a.lst");
  const std::string new_path = Path("new", "a.lst");
  const Lines old_lines = {"[A]", "B=1", "{",   "C=1", "{",   "D=2",
                           "}",   "}",   "[X]", "Y=2", "[G]", "H=2"};
  memory_.Put(old_path, FileText(old_lines));
  memory_.Put(new_path, FileText(lines));
  const auto places = CheckDifference(memory_, old_path, new_path, "");
  EXPECT_EQ(places.size(), 4u);
  for (const Unreproduced& place : places) {
    if (place.wanted.empty()) continue;
    ASSERT_GE(place.line, 1) << place.wanted;
    EXPECT_EQ(lines[static_cast<std::size_t>(place.line) - 1], place.wanted);
  }
}

TEST_F(DifferenceCheckTest, VariablesAreShownWithTheirNumbers) {
  EXPECT_THAT(Check({"[Variables]", "User1=@A;1", "User2=@B;2"},
                    {"[Variables]", "User1=@B;2", "User2=@A;1"}),
              ElementsAre("0 5 [Variables]: User1=@B;2 > User2=@B;2"));
}

TEST_F(DifferenceCheckTest, VersionsWithoutADifference) {
  const std::string old_path = Path("old", "a.lst");
  const std::string new_path = Path("new", "a.lst");
  memory_.Put(old_path, FileText({"[A]", "X=1", "Y=1"}));
  memory_.Put(new_path, FileText({"[A]", "Y=1", "X=1"}));
  EXPECT_EQ(CheckDifference(memory_, old_path, new_path, "").size(), 1u);
  EXPECT_THAT(CheckDifference(memory_, old_path, old_path, ""), IsEmpty());
  EXPECT_EQ(FailureNumber([&] { CheckDifference(memory_, old_path, new_path, Path("x", "y")); }),
            kPathNotFound);
}

}  // namespace
}  // namespace tessary
