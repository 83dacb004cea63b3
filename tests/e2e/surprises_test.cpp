// The short samples that show one surprising behaviour each, and others like them.

#include <gmock/gmock.h>

#include "e2e/samples.h"
#include "levels/level_factory.h"
#include "manager/report_io.h"
#include "platform/text.h"
#include "support/real_files_test_base.h"

namespace tessary {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SurprisesTest : public RealFilesTest {
 protected:
  SurprisesTest() { CopySample("besonderheiten", In("b")); }

  // Compares the two releases of a sample and applies the differences to `report`, or to a copy of
  // the older release; gives the report's lines and those of the difference file.
  void RunBoth(const std::string& name, const std::string& reference,
               const std::string& report = "") {
    ASSERT_TRUE(manager_.CreateDiffFile(In("b/" + name + "-3.lst"), In("b/" + name + "-4.lst"),
                                        PutFolder("diff")));
    const std::string old_release = report.empty() ? name + "-3.lst" : report;
    const std::string copy = Put("kunde/Kopie.lst", Get("b/" + old_release));
    ASSERT_TRUE(manager_.ConvertReport(copy, In("diff/3_4" + reference), ""));
    converted_ = LinesOf(copy);
    differences_ = LinesOf(In("diff/3_4" + reference));
  }

  // Reads a file into the line store and writes it again.
  std::vector<std::string> Passed(const std::string& path) {
    const auto context = NewEngineContext(log_.errors, nullptr);
    const auto lines = ReadReport(SystemFiles(), context, path, &read_);
    WriteReport(SystemFiles(), In("passed"), {context, lines}, nullptr);
    return LinesOf(In("passed"));
  }
  std::vector<std::string> PassedSample(const std::string& name) { return Passed(In("b/" + name)); }

  std::vector<std::string> converted_;
  std::vector<std::string> differences_;
  ReadStatistics read_;
};

TEST_F(SurprisesTest, AChangeBelowAPropertyIsWrittenButNeverApplied) {
  RunBoth("Block-unter-Eigenschaft", "BlockUnterEigenschaft");
  EXPECT_THAT(differences_, Contains(HasSubstr(";Width=")));
  EXPECT_THAT(converted_,
              AllOf(Contains(" Height=6000"), Contains("  Width=250"), Contains(" Version=4")));
}

TEST_F(SurprisesTest, ASurplusBraceDropsTheRestOfTheFile) {
  const auto lines = PassedSample("Klammer-zuviel.lst");
  EXPECT_EQ(lines.back(), "[Layout]");
  EXPECT_THAT(lines, Not(Contains("[Object]")));
  EXPECT_EQ(read_.lines_dropped, 6);
}

TEST_F(SurprisesTest, ABlockWithASectionBelowASectionDropsTheRestOfTheFile) {
  const auto lines = PassedSample("Block-unter-Sektion.lst");
  EXPECT_THAT(lines,
              AllOf(Contains("[Margins]"), Not(Contains("[Object]")), Not(Contains("[Export]"))));
  EXPECT_GT(read_.lines_dropped, 0);
}

TEST_F(SurprisesTest, APropertyNamedUserIsNumberedLikeAVariable) {
  const auto lines = PassedSample("User-ohne-Variable.lst");
  EXPECT_THAT(lines, AllOf(Contains(" User1=User;abc"), Not(Contains(" User=abc"))));
}

TEST_F(SurprisesTest, ALineWithoutAnEqualsSignComesBackWithOne) {
  EXPECT_THAT(PassedSample("Zeile-ohne-Gleichheitszeichen.lst"),
              AllOf(Contains(" Foo="), Not(Contains(" Foo"))));
}

TEST_F(SurprisesTest, ElementsTakenOverIntoAnEmptyLevelAreLostWhereItIsStillEmpty) {
  RunBoth("Leere-Ebene", "LeereEbene");
  EXPECT_THAT(differences_, Contains(HasSubstr("Paragraph1=Paragraph1")));
  EXPECT_THAT(converted_, AllOf(Contains(" Version=4"), Not(Contains(HasSubstr("  Paragraph1")))));
}

TEST_F(SurprisesTest, ElementsTakenOverIntoAnEmptyLevelCarryTheirNamesAsValues) {
  RunBoth("Leere-Ebene", "LeereEbene", "Leere-Ebene-Kunde.lst");
  EXPECT_THAT(converted_,
              AllOf(Contains("  Paragraph1=Paragraph1"), Contains("  Paragraph2=Paragraph2"),
                    Contains("  Paragraph9=\"Öffnungszeiten: 8:00 bis 17:00 Uhr\"")));
}

TEST_F(SurprisesTest, AColonInAFieldEmptiesAllNineFields) {
  RunBoth("Doppelpunkt-im-Feld", "DoppelpunktImFeld");
  EXPECT_THAT(converted_, Contains(" Height=40000")) << "the new height is lost";
  ASSERT_GE(converted_.size(), 3u);
  const std::vector<std::string> end(converted_.end() - 3, converted_.end());
  EXPECT_THAT(end, Contains(HasSubstr("Telefon"))) << "the new object lands at the end";
}

TEST_F(SurprisesTest, RoundTripsAreStableFromTheSecondPassOn) {
  for (const char* folder : {"hersteller", "kunde", "besonderheiten"}) {
    for (const auto& [name, contents] : FilesBelow(TextOf(Sample(folder)))) {
      if (!name.ends_with(".lst")) continue;
      Passed(Put("x.lst", contents));
      const auto second = Passed(Put("x.lst", Get("passed")));
      const auto third = Passed(Put("x.lst", Get("passed")));
      EXPECT_EQ(second, third) << name;
    }
  }
}

TEST_F(SurprisesTest, TheVendorsFilesComeBackAsTheyAre) {
  for (const auto& [name, contents] : FilesBelow(TextOf(Sample("hersteller")))) {
    if (!name.ends_with(".lst")) continue;
    Passed(Put("x.lst", contents));
    EXPECT_EQ(Get("passed"), contents) << name;
  }
}

TEST_F(SurprisesTest, DroppedLinesAreWarnedOfWhenAReportIsConverted) {
  const std::string report = Put("kunde/Klammer.lst", Get("b/Klammer-zuviel.lst"));
  const std::string diff = Put("diff/3_4KlammerZuviel",
                               "U(Key=[UserSection]:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:"
                               "NextKey=:NextTyp=:PosNr=);[UserSection]\r\nU;Version=4\r\n");
  EXPECT_TRUE(manager_.ConvertReport(report, diff, ""));
  EXPECT_THAT(user_.Warnings(),
              ElementsAre("Die Datei " + report +
                              " hat 6 Zeilen außerhalb der Ebenen 0 bis 9; sie werden nicht "
                              "übernommen.",
                          HasSubstr("endet auf Ebene")));
  EXPECT_EQ(Get("kundeBak/Klammer.lst"), Get("b/Klammer-zuviel.lst"))
      << "what is dropped is in the backup";
}

TEST_F(SurprisesTest, NoSampleOfThisKindFailsOrAsks) {
  for (const char* name : {"Block-unter-Eigenschaft", "Doppelpunkt-im-Feld", "Leere-Ebene"}) {
    EXPECT_TRUE(manager_.CreateDiffFile(In(std::string("b/") + name + "-3.lst"),
                                        In(std::string("b/") + name + "-4.lst"),
                                        PutFolder("diff")));
  }
  EXPECT_THAT(Entries(), IsEmpty());
  EXPECT_THAT(user_.Warnings(), IsEmpty());
}

}  // namespace
}  // namespace tessary
