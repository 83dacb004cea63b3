// Names that only a system whose names are bytes can have.

#include <gmock/gmock.h>

#include "support/real_files_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;

class NamesTest : public RealFilesTest {
 protected:
  NamesTest() {
    Put("alt/Rechnung.lst", SmallReport(3));
    Put("neu/Rechnung.lst", SmallReport(4));
    PutFolder("diff");
    EXPECT_TRUE(CreateDiffFiles("alt", "neu"));
    log_ = ResultLog();
    user_.Clear();
  }
};

TEST_F(NamesTest, NamesThatAreNoUtf8AreProcessedByTheirBytes) {
  Put("R\xFF/Bericht\xE4.lst", SmallReport(3));
  Put("R\xFF/Bericht\xC4.lst", SmallReport(3));
  ASSERT_TRUE(ConvertReports("R\xFF"));
  EXPECT_EQ(Get("R\xFF/Bericht\xE4.lst"), SmallReport(4));
  EXPECT_EQ(Get("R\xFF"
                "Bak/Bericht\xE4.lst"),
            SmallReport(3));
  EXPECT_EQ(manager_.CountCorrectReports(), 2) << "two names, not one in two cases";
}

TEST_F(NamesTest, NamesWithCharactersThatMeanSomethingElsewhere) {
  const char* names[] = {"a\"b.lst", "a*?.lst", "a\\b.lst", "a:b.lst", "a\nb.lst", "a|b<c>.lst"};
  for (const char* name : names) Put(std::string("R/") + name, SmallReport(3));
  ASSERT_TRUE(ConvertReports("R"));
  for (const char* name : names) {
    EXPECT_EQ(Get(std::string("R/") + name), SmallReport(4)) << name;
    EXPECT_EQ(Get(std::string("RBak/") + name), SmallReport(3)) << name;
  }
}

TEST_F(NamesTest, NamesThatDifferInCaseAreTwoReports) {
  Put("R/a.lst", SmallReport(3));
  Put("R/A.lst", SmallReport(3));
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_EQ(Get("R/a.lst"), SmallReport(4));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(4));
  EXPECT_EQ(manager_.CountCorrectReports(), 1) << "their texts are one item of the log";
}

TEST_F(NamesTest, ANameOfFullLengthIsConvertedAndItsOlderCopyIsNeverReplaced) {
  const std::string name = std::string(251, 'x') + ".lst";
  Put("R/" + name, SmallReport(3));
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_EQ(Get("R/" + name), SmallReport(4));
  EXPECT_EQ(Get("RBak/" + name), SmallReport(3));
  // There is no longer name to keep the copy under.
  user_.AnswerNext(Answer::kNo);
  EXPECT_TRUE(ConvertReports("R"));
  EXPECT_THAT(user_.Questions(), ElementsAre(testing::HasSubstr("konnte nicht gesichert werden.")));
  EXPECT_EQ(Get("RBak/" + name), SmallReport(3));
}

TEST_F(NamesTest, TheLogHoldsTheBytesAsTheyAre) {
  const std::string path = In("R/\xFF.lst");
  EXPECT_FALSE(manager_.ConvertReport(path, In("diff/3_4Rechnung"), ""));
  EXPECT_THAT(TextsOf(log_.dictErrors),
              ElementsAre("Konvertierung des Berichts " + path + " fehlgeschlagen."));
}

}  // namespace
}  // namespace tessary
