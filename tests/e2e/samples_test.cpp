// Both passes on the samples, in a temporary folder: the vendor's three releases and a customer.

#include "e2e/samples.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "support/real_files_test_base.h"

namespace tessary {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::Not;
using testing::UnorderedElementsAre;

using Lines = std::vector<std::string>;

class SamplesTest : public RealFilesTest {
 protected:
  SamplesTest() {
    CopySample("hersteller", In("hersteller"));
    CopySample("kunde", In("kunde"));
    PutFolder("diff");
  }

  bool CreateAll() {
    return CreateDiffFiles("hersteller/version3", "hersteller/version4") &&
           CreateDiffFiles("hersteller/version4", "hersteller/version5");
  }
  bool ConvertCustomer() { return ConvertReports("kunde/Berichte"); }

  // Both passes; nothing is warned of or asked.
  void RunBoth() {
    ASSERT_TRUE(CreateAll());
    user_.Clear();
    ASSERT_TRUE(ConvertCustomer());
    EXPECT_THAT(user_.Warnings(), IsEmpty());
    EXPECT_THAT(user_.Questions(), IsEmpty());
    EXPECT_THAT(Entries(), IsEmpty());
  }

  Lines CustomersLines(const std::string& name) const {
    return LinesOf(In("kunde/Berichte/" + name));
  }
  static std::string PathAtCustomer(const std::string& name) { return "kunde/Berichte/" + name; }
};

// The lines of `a` that stand in none of `b`, in order.
Lines Without(const Lines& a, const Lines& b) {
  Lines rest;
  for (const std::string& line : a) {
    if (std::find(b.begin(), b.end(), line) == b.end()) rest.push_back(line);
  }
  return rest;
}

// The place of the line, which must stand there once.
std::ptrdiff_t PlaceOf(const Lines& lines, const std::string& line) {
  EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
  return std::find(lines.begin(), lines.end(), line) - lines.begin();
}

TEST_F(SamplesTest, TheVendorsReleasesGiveSixDifferenceFiles) {
  const auto vendor = FilesBelow(In("hersteller"));
  ASSERT_TRUE(CreateAll());
  EXPECT_THAT(SystemFiles().ListFiles(In("diff")),
              ElementsAre("3_4Angebot", "3_4Lieferschein", "3_4Rechnung", "4_5Angebot",
                          "4_5Lieferschein", "4_5Rechnung"));
  EXPECT_EQ(manager_.CountCorrectReports(), 6);
  EXPECT_THAT(
      user_.Texts("passed over"),
      ElementsAre(In("hersteller/version3/Angebot.lst~"), In("hersteller/version3/Liesmich.txt"),
                  In("hersteller/version4/Liesmich.txt"), In("hersteller/version4/Rechnung.lst~")));
  EXPECT_THAT(user_.Warnings(), IsEmpty());
  EXPECT_EQ(FilesBelow(In("hersteller")), vendor) << "the input stays byte for byte";
  for (const auto& [name, contents] : FilesBelow(In("diff"))) {
    EXPECT_TRUE(HasWindowsLineEnds(contents)) << name;
    EXPECT_GT(contents.size(), 100u) << name;
  }
}

TEST_F(SamplesTest, DifferenceLinesCarryStatusAndPosition) {
  ASSERT_TRUE(CreateAll());
  const Lines lines = LinesOf(In("diff/3_4Rechnung"));
  EXPECT_THAT(lines, AllOf(Contains("U(Key=[UserSection]:Typ=:PrevName=[Description]:PrevKey="
                                    "[Description]:PrevTyp=:NextName=[Layout]:NextKey=[Layout]:"
                                    "NextTyp=:PosNr=);[UserSection]"),
                           Contains(" U(Key=Version:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName="
                                    "Referenzbeleg:NextKey=Referenzbeleg:NextTyp=:PosNr=);"
                                    "Version=4")));
  const auto begins = [&](const std::string& start) {
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.starts_with(start); });
  };
  EXPECT_EQ(begins("D(Key=15:Typ=Faxhinweis:"), 1);
  EXPECT_EQ(begins("N(Key=14:Typ=Leitwegangabe:"), 1);
}

TEST_F(SamplesTest, WritingTheDifferenceFilesAgainChangesNothing) {
  ASSERT_TRUE(CreateAll());
  const auto first = FilesBelow(In("diff"));
  ASSERT_TRUE(CreateAll());
  EXPECT_EQ(FilesBelow(In("diff")), first);
}

// What the vendor changed arrives; what is left are the changes that are documented to be lost.
TEST_F(SamplesTest, TheVendorsOldReleaseBecomesTheNewOne) {
  ASSERT_TRUE(CreateAll());
  const struct {
    const char* report;
    int version;
    Lines left;    // of the old release
    Lines missed;  // of the new one
  } rows[] = {
      {"Rechnung",
       3,
       {"  Width=250", "  Color=RGB(0,0,0)",
        R"(  Paragraph2="Steuer-Nr.: " + Firma.Steuernummer + "; USt-IdNr.: " + Firma.UStIdNr)"},
       {"  Width=100", "  Color=RGB(128,128,128)",
        R"(  Paragraph2="STEUER-NR.: " + Firma.Steuernummer + "; UST-IDNR.: " + Firma.UStIdNr)"}},
      {"Rechnung", 4, {}, {}},
      {"Lieferschein",
       3,
       {"  Width=250", R"(  Paragraph2="Warenannahme: Montag bis Freitag, 7:00 bis 15:30 Uhr")"},
       {"  Width=100", R"(  Paragraph2="Warenannahme: montag bis freitag, 7:00 bis 15:30 Uhr")"}},
      {"Lieferschein", 4, {}, {}},
      {"Angebot", 3, {"  CharSet=850"}, {"  CharSet=1252"}},
      {"Angebot",
       4,
       {"  Color=RGB(0,0,0)", R"(  Paragraph2="Geschäftsführer: " + Firma.Geschäftsführer)"},
       {"  Color=RGB(0,64,128)", R"(  Paragraph2="GESCHÄFTSFÜHRER: " + Firma.Geschäftsführer)"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.report + std::to_string(row.version));
    const std::string name = row.report + std::string(".lst");
    const std::string steps =
        std::to_string(row.version) + "_" + std::to_string(row.version + 1) + row.report;
    const std::string old_release = "hersteller/version" + std::to_string(row.version);
    const std::string new_release = "hersteller/version" + std::to_string(row.version + 1);
    const std::string copy = Put("kopie" + steps + "/" + name, Get(old_release + "/" + name));
    ASSERT_TRUE(manager_.ConvertReport(copy, In("diff/" + steps), ""));
    Lines converted = LinesOf(copy);
    Lines wanted = LinesOf(In(new_release + "/" + name));
    EXPECT_EQ(converted.size(), wanted.size());
    EXPECT_THAT(Without(converted, wanted), IsSubsetOf(row.left));
    EXPECT_THAT(Without(wanted, converted), IsSubsetOf(row.missed));
    if (!row.left.empty()) continue;
    std::sort(converted.begin(), converted.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(converted, wanted) << "but for the order";
  }
}

TEST_F(SamplesTest, ANewReleaseIsReachedToTheByteWhereNothingIsLost) {
  ASSERT_TRUE(CreateAll());
  const std::string copy =
      Put("kopie/Lieferschein.lst", Get("hersteller/version4/Lieferschein.lst"));
  ASSERT_TRUE(manager_.ConvertReport(copy, In("diff/4_5Lieferschein"), ""));
  EXPECT_EQ(GetFile(copy), Get("hersteller/version5/Lieferschein.lst"));
}

TEST_F(SamplesTest, TheCustomersFolderIsConvertedInElevenSteps) {
  RunBoth();
  EXPECT_EQ(manager_.CountCorrectReports(), 6 + 11);
  EXPECT_EQ(log_.dictErrors.Count(), 0);
  EXPECT_THAT(
      user_.Texts("passed over"),
      UnorderedElementsAre(In(PathAtCustomer("Angebot alt.lst")),
                           In(PathAtCustomer("Angebot.lst~")), In(PathAtCustomer("Liesmich.txt")),
                           In(PathAtCustomer("Logo.png")), In(PathAtCustomer("Notizen"))));
  const std::string reports[] = {"Angebot Kurzform.lst",    "Angebot.lst",
                                 "Lieferschein.lst",        "Lieferschein Streckengeschäft.lst",
                                 "Rechnung Österreich.lst", "Rechnung.lst"};
  for (const std::string& name : reports) {
    SCOPED_TRACE(name);
    EXPECT_THAT(CustomersLines(name), Contains(" Version=5"));
    EXPECT_TRUE(HasWindowsLineEnds(Get(PathAtCustomer(name))));
    EXPECT_EQ(Get("kunde/BerichteBak/" + name), GetFile(TextOf(Sample(PathAtCustomer(name)))))
        << "the backup is the original to the byte";
  }
  EXPECT_EQ(SystemFiles().ListFiles(In("kunde/BerichteBak")).size(), std::size(reports));
}

TEST_F(SamplesTest, OtherFilesStayByteForByte) {
  RunBoth();
  const auto originals = FilesBelow(TextOf(Sample("")));
  std::size_t unchanged = 0;
  for (const auto& [name, contents] : FilesBelow(folder_.path())) {
    const auto original = originals.find(name);
    if (original != originals.end() && original->second == contents) ++unchanged;
  }
  // The vendor's files and those passed over; of the rest only the reports have changed.
  const auto vendor = FilesBelow(In("hersteller"));
  EXPECT_EQ(unchanged, vendor.size() + 5);
  EXPECT_EQ(FilesBelow(folder_.path()).size(), vendor.size() + 6 + 11 + 6);
}

TEST_F(SamplesTest, TheInvoiceTakesTheVendorsChangesAndKeepsItsOwn) {
  RunBoth();
  const Lines lines = CustomersLines("Rechnung.lst");
  EXPECT_THAT(lines, AllOf(Contains(" Copies=2"), Contains("  Size=7,5").Times(0),
                           Contains("   Size=7,5"), Not(Contains(" FaxSupport=Ja")),
                           Not(Contains(" ObjectName=Faxhinweis")), Contains("[Musterbach]")));
  EXPECT_THAT(lines, Contains(" Options=Komprimieren=1;Schriften einbetten=1;Kennwort="));
  EXPECT_THAT(lines, Contains("  Paragraph2=\"Bei Zahlung innerhalb von 14 Tagen: 2 % Skonto\""))
      << "the customer's own discount is overwritten";
  EXPECT_THAT(lines, Contains("  Paragraph9=@Filiale"));
  EXPECT_LT(PlaceOf(lines, " ObjectName=Belegdaten"), PlaceOf(lines, " ObjectName=Leitwegangabe"))
      << "a new object follows its predecessor to its new place";
  EXPECT_LT(PlaceOf(lines, " ObjectName=Positionen"), PlaceOf(lines, " ObjectName=Belegdaten"));
}

TEST_F(SamplesTest, VariablesAreNumberedAnew) {
  RunBoth();
  const Lines lines = CustomersLines("Rechnung.lst");
  const auto first = std::find(lines.begin(), lines.end(), "[Variables]");
  ASSERT_NE(first, lines.end());
  const char* starts[] = {"[Variables]",
                          " User1=@Absenderzeile;",
                          " User2=@Briefanrede;",
                          (" User3=@Fälligkeit;Datum$(Beleg.Datum + Beleg.Zahlungsziel;"
                           "\"TT.MM.JJJJ\")"),
                          " User4=@Leitweg;",
                          " Sum5=@Summe.Netto;",
                          " Sum6=@Summe.Rabatt;",
                          " Sum7=@Summe.Steuer;",
                          " User8=@Filiale;",
                          "[Layer]"};
  auto line = first;
  for (const char* start : starts) {
    ASSERT_NE(line, lines.end());
    EXPECT_TRUE(line->starts_with(start)) << *line;
    ++line;
  }
}

TEST_F(SamplesTest, TheHandEditedInvoiceComesOutTidy) {
  RunBoth();
  const Lines lines = CustomersLines("Rechnung Österreich.lst");
  EXPECT_THAT(lines, AllOf(Contains(" PaperSize= A4"), Contains(" Orientation=Hochformat"),
                           Contains(" Unit=1/1000 mm"), Contains("\t   Columns=7").Times(2),
                           Contains(" ObjectName=Steuerhinweis")));
  EXPECT_THAT(lines, Not(Contains("")));
}

TEST_F(SamplesTest, TheVendorsLineOneGoesBeforeTheCustomersOwn) {
  RunBoth();
  const Lines lines = CustomersLines("Lieferschein.lst");
  Lines ids;
  for (const std::string& line : lines) {
    const auto id = line.find("LineID=");
    if (id != std::string::npos) ids.push_back(line.substr(id));
  }
  EXPECT_THAT(ids, AllOf(Contains("LineID=1"), Contains("LineID=2"), Contains("LineID=3"),
                         Contains("LineID=4")));
  EXPECT_THAT(lines, Contains("[Musterbach]"));
}

TEST_F(SamplesTest, AReportOfTheMiddleVersionTakesTheLastStepOnly) {
  RunBoth();
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              AllOf(Contains("Der Bericht Lieferschein Streckengeschäft.lst wurde erfolgreich von "
                             "Version 4 nach 5 konvertiert."),
                    Not(Contains("Der Bericht Lieferschein Streckengeschäft.lst wurde erfolgreich "
                                 "von Version 3 nach 4 konvertiert."))));
}

TEST_F(SamplesTest, ChangesToObjectsTheCustomerDeletedAreSkipped) {
  RunBoth();
  const Lines lines = CustomersLines("Angebot Kurzform.lst");
  EXPECT_THAT(
      lines,
      AllOf(Not(Contains(" ObjectName=Einleitung")), Not(Contains(" ObjectName=Schlusstext")),
            Contains(" ObjectName=Lieferbedingungen"), Contains(" ObjectName=Grußformel")));
}

TEST_F(SamplesTest, ASecondRunChangesNothing) {
  RunBoth();
  const auto first = FilesBelow(In("kunde/Berichte"));
  ASSERT_TRUE(ConvertCustomer());
  EXPECT_EQ(FilesBelow(In("kunde/Berichte")), first);
  for (const auto& [name, contents] : FilesBelow(TextOf(Sample("kunde/Berichte")))) {
    const std::string kept = "kunde/BerichteBak/~" + name + ".~1";
    if (SystemFiles().FileExists(In("kunde/BerichteBak/" + name))) {
      EXPECT_EQ(Get(kept), contents) << "no original is lost to the second run";
    }
  }
}

// A folder run never does that, since the report's version has moved on.
TEST_F(SamplesTest, ADifferenceFileAppliedTwiceInsertsTableLinesAgain) {
  ASSERT_TRUE(CreateAll());
  const auto lines_after = [&](int times, const std::string& name) {
    const std::string report = Put("kopie/" + name + ".lst", Get(PathAtCustomer(name + ".lst")));
    for (int i = 0; i < times; ++i) {
      EXPECT_TRUE(manager_.ConvertReport(report, In("diff/3_4" + name), In("Sicherung")));
    }
    return LinesOf(report);
  };
  EXPECT_EQ(lines_after(2, "Rechnung"), lines_after(1, "Rechnung"));

  const auto count_ids = [](const Lines& lines) {
    return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
      return line.find("LineID=") != std::string::npos;
    });
  };
  EXPECT_EQ(count_ids(lines_after(2, "Angebot")), count_ids(lines_after(1, "Angebot")) + 1)
      << "making room for the line renumbers its own first copy";
}

}  // namespace
}  // namespace tessary
