// What is put in place of a report or a difference file that is none.

#include <gmock/gmock.h>

#include "support/real_files_test_base.h"

namespace tessary {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class BadInputTest : public RealFilesTest {
 protected:
  BadInputTest() {
    Put("alt/Rechnung.lst", SmallReport(3));
    Put("neu/Rechnung.lst", SmallReport(4));
    PutFolder("diff");
    EXPECT_TRUE(CreateDiffFiles("alt", "neu"));
    log_ = ResultLog();
    user_.Clear();
  }

  bool Convert(const std::string& report) {
    return manager_.ConvertReport(report, In("diff/3_4Rechnung"), In("Sicherung"));
  }
};

std::string Binary(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 1;
  while (bytes.size() < size)
    bytes.push_back(static_cast<char>((state = state * 1664525u + 1013904223u) >> 24));
  return bytes;
}

TEST_F(BadInputTest, FilesThatAreNoReportsArePassedOverAndStayAsTheyAre) {
  Put("R/Rechnung.lst", SmallReport(3));
  Put("R/leer.lst", "");
  Put("R/binär.lst", Binary(100'000));
  Put("R/Nullen.lst", std::string(5000, '\0'));
  Put("R/Klammern.lst", "{\r\n{\r\n}\r\n}\r\n}\r\n");
  Put("R/Zeilenenden.lst", std::string(10'000, '\n'));
  Put("R/halb.lst", "[UserSection]\r\nVersion=3");
  PutFolder("R/Ordner.lst");
  const auto before = FilesBelow(In("R"));
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_THAT(user_.Texts("passed over"), SizeIs(6));
  auto after = FilesBelow(In("R"));
  EXPECT_EQ(after["Rechnung.lst"], SmallReport(4));
  after["Rechnung.lst"] = before.at("Rechnung.lst");
  EXPECT_EQ(after, before);
}

TEST_F(BadInputTest, OneByOneTheyAreRefused) {
  const struct {
    const char* name;
    std::string contents;
  } rows[] = {{"leer.lst", ""}, {"binär.lst", Binary(5000)}, {"Klammern.lst", "}}\r\n}\r\n"}};
  for (const auto& row : rows) {
    const std::string path = Put(std::string("R/") + row.name, row.contents);
    EXPECT_FALSE(Convert(path));
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kWrongKindOfFile, "ConvertReport",
                                                    std::string("Die Datei ") + row.name +
                                                        " ist keine List & Label "
                                                        "Berichtsdatei.")));
    EXPECT_EQ(GetFile(path), row.contents);
  }
}

TEST_F(BadInputTest, GarbageBehindAHeaderNeverHarms) {
  for (std::size_t size : {1u, 100u, 3000u, 50'000u}) {
    const std::string contents = SmallReport(3) + Binary(size);
    const std::string path = Put("R/Müll.lst", contents);
    if (Convert(path)) {
      EXPECT_THAT(GetFile(path), HasSubstr(" Version=4\r\n"));
    } else {
      EXPECT_EQ(GetFile(path), contents);
      EXPECT_GT(log_.dictErrors.Count(), 0);
    }
    EXPECT_EQ(Get("Sicherung/Müll.lst"), contents);
  }
}

TEST_F(BadInputTest, GarbageAsDifferenceFileNeverHarms) {
  const std::string contents = SmallReport(3);
  for (const std::string& differences :
       {Binary(3000), std::string(1000, '\0'), std::string("{\r\n{\r\n{\r\n"),
        std::string("N(Key=;;;\r\nD(;\r\nU)(;X=1\r\n"), std::string(5000, '}')}) {
    const std::string path = Put("R/r.lst", contents);
    const std::string diff = Put("diff/3_4Müll", differences);
    const bool result = manager_.ConvertReport(path, diff, In("Sicherung"));
    EXPECT_TRUE(result || GetFile(path) == contents);
    EXPECT_THAT(GetFile(path), HasSubstr("[UserSection]"));
    EXPECT_TRUE(HasWindowsLineEnds(GetFile(path)));
  }
}

TEST_F(BadInputTest, AFolderInPlaceOfAFileDoesNotExist) {
  const std::string folder = PutFolder("R/Ordner.lst");
  EXPECT_FALSE(Convert(folder));
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kDoesNotExist, "ConvertReport",
                                                  "Die Datei " + folder + " existiert nicht.")));
  const std::string report = Put("R/r.lst", SmallReport(3));
  const std::string diff = PutFolder("diff/4_5Rechnung");
  EXPECT_FALSE(manager_.ConvertReport(report, diff, In("Sicherung")));
  EXPECT_THAT(Entries(),
              ElementsAre(ManagerEntry(kDoesNotExist, "ConvertReport",
                                       "Die Differenz-Datei " + diff + " existiert nicht.")));
}

TEST_F(BadInputTest, AFolderInTheDifferenceFilesPlaceStays) {
  PutFolder("andere/3_4Rechnung");
  EXPECT_FALSE(
      manager_.CreateDiffFile(In("alt/Rechnung.lst"), In("neu/Rechnung.lst"), In("andere")));
  EXPECT_THAT(
      Entries(),
      ElementsAre(
          ManagerEntry(kPathFileAccess, "WriteFile", "Fehler beim Öffnen der Datei 3_4Rechnung"),
          ManagerEntry(kPathFileAccess, "CreateDiffFile",
                       "Fehler beim Schreiben der Differenz-Datei " + In("andere/3_4Rechnung"))));
}

TEST_F(BadInputTest, AFileThatVanishesBetweenCheckAndReading) {
  const std::string report = Put("R/r.lst", SmallReport(3));
  user_.AfterEvent([&](const std::string& event) {
    if (event == "step Berichtsdatei wird gelesen") std::remove(report.c_str());
  });
  EXPECT_FALSE(Convert(report));
  EXPECT_THAT(
      Entries(),
      ElementsAre(
          ManagerEntry(kFileNotFound, "ReadFile", "Fehler beim Öffnen der Datei r.lst"),
          ManagerEntry(kFileNotFound, "ConvertReport", "Fehler beim Lesen der Datei r.lst")));
  EXPECT_EQ(Get("Sicherung/r.lst"), SmallReport(3));
}

TEST_F(BadInputTest, AReferenceCannotLeadOutOfTheFolder) {
  for (const char* reference : {"/../../x", "..", "a/b", "a\\b", "C:x"}) {
    Put("a/r.lst", SmallReport(3, reference));
    Put("n/r.lst", SmallReport(4, reference));
    const auto before = FilesBelow(folder_.path());
    EXPECT_FALSE(manager_.CreateDiffFile(In("a/r.lst"), In("n/r.lst"), In("diff")));
    ASSERT_THAT(Entries(), SizeIs(1));
    EXPECT_THAT(Entries()[0], HasSubstr("4 52 BXConvertLLMgr Prozedur: CreateDiffFile: "));
    EXPECT_EQ(FilesBelow(folder_.path()), before);
  }
}

TEST_F(BadInputTest, AReferenceThatMakesTooLongANameFailsCleanly) {
  Put("a/r.lst", SmallReport(3, std::string(1000, 'x')));
  Put("n/r.lst", SmallReport(4, std::string(1000, 'x')));
  const auto before = FilesBelow(folder_.path());
  EXPECT_FALSE(manager_.CreateDiffFile(In("a/r.lst"), In("n/r.lst"), In("diff")));
  EXPECT_THAT(Entries(), SizeIs(2));
  EXPECT_EQ(FilesBelow(folder_.path()), before);
}

TEST_F(BadInputTest, ALineOfTenMegabytes) {
  const std::string line = " Text=" + std::string(10'000'000, 'x') + "\r\n";
  const std::string path = Put("R/lang.lst", SmallReport(3) + line);
  ASSERT_TRUE(Convert(path));
  EXPECT_EQ(GetFile(path), SmallReport(4) + line);
}

TEST_F(BadInputTest, AVersionOfTenMegabytesIsNone) {
  const std::string path =
      Put("R/lang.lst", "[UserSection]\r\nVersion=" + std::string(10'000'000, '3') +
                            "\r\nReferenzbeleg=Rechnung\r\n");
  EXPECT_FALSE(Convert(path));
  EXPECT_THAT(Entries()[0], HasSubstr("ist keine List & Label Berichtsdatei."));
}

TEST_F(BadInputTest, TwoHundredThousandLines) {
  std::string many;
  for (int i = 0; i < 200'000; ++i) many += " Name" + std::to_string(i) + "=1\r\n";
  const std::string path = Put("R/viele.lst", SmallReport(3) + many);
  ASSERT_TRUE(Convert(path));
  EXPECT_EQ(GetFile(path), SmallReport(4) + many);
}

TEST_F(BadInputTest, ABlockNestedFarBelowTheLastLevel) {
  std::string deep;
  for (int i = 0; i < 5000; ++i) deep += "{\r\nX=1\r\n[A]\r\n";
  const std::string path = Put("R/tief.lst", SmallReport(3) + deep);
  ASSERT_TRUE(Convert(path));
  EXPECT_THAT(user_.Warnings(), Contains(HasSubstr("außerhalb der Ebenen 0 bis 9")));
}

TEST_F(BadInputTest, AMillionBraces) {
  std::string open;
  std::string close;
  for (int i = 0; i < 1'000'000; ++i) {
    open += "{\r\n";
    close += "}\r\n";
  }
  for (const std::string& deep : {open + "X=1\r\n", close + "X=1\r\n", open + close + "X=1\r\n"}) {
    const std::string path = Put("R/tief.lst", SmallReport(3) + deep);
    ASSERT_TRUE(Convert(path));
    EXPECT_THAT(GetFile(path), HasSubstr(" Version=4\r\n"));
  }
}

TEST_F(BadInputTest, NamesWithBlanksUmlautsAndOtherScripts) {
  const char* names[] = {" vorn und hinten .lst",
                         "Rechnung für Öl.lst",
                         "Счёт.lst",
                         "請求書.lst",
                         "a'b`$(d).lst",
                         "%s%n.lst",
                         "-rf.lst"};
  for (const char* name : names) Put(std::string("R/") + name, SmallReport(3));
  ASSERT_TRUE(ConvertReports("R"));
  for (const char* name : names) {
    EXPECT_EQ(Get(std::string("R/") + name), SmallReport(4)) << name;
    EXPECT_EQ(Get(std::string("RBak/") + name), SmallReport(3)) << name;
  }
}

TEST_F(BadInputTest, UmlautsInFolderNamesAndContents) {
  const auto report = [](int version) {
    return ReportText(version, "Größenübersicht",
                      {"[Object]", " ObjectName=Maße", " LinkID=1",
                       " Text=\"Länge: " + std::to_string(version) + " €\""});
  };
  Put("älter/Übersicht.lst", report(3));
  Put("jünger/Übersicht.lst", report(4));
  ASSERT_TRUE(CreateDiffFiles("älter", "jünger"));
  EXPECT_THAT(SystemFiles().ListFiles(In("diff")), Contains("3_4Größenübersicht"));
  Put("Kundenmaße/Über.lst", report(3));
  ASSERT_TRUE(ConvertReports("Kundenmaße"));
  EXPECT_EQ(Get("Kundenmaße/Über.lst"), report(4));
  EXPECT_EQ(Get("KundenmaßeBak/Über.lst"), report(3));
}

TEST_F(BadInputTest, ReportsWithAByteOrderMarkFailAloneAndAreNeverWritten) {
  std::string utf16 = "\xFF\xFE";
  for (const char c : SmallReport(3)) utf16.append({c, '\0'});
  Put("R/A.lst", SmallReport(3));
  Put("R/B.lst", "\xEF\xBB\xBF" + SmallReport(3));
  Put("R/C.lst", utf16);
  EXPECT_FALSE(ConvertReports("R"));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(4));
  EXPECT_EQ(Get("R/B.lst"), "\xEF\xBB\xBF" + SmallReport(3));
  EXPECT_EQ(Get("R/C.lst"), utf16);
  EXPECT_EQ(log_.dictErrors.Count(), 2);
}

TEST_F(BadInputTest, EmptyFoldersAreTold) {
  PutFolder("leer");
  EXPECT_FALSE(manager_.CreateDiffFiles(In("leer"), In("neu"), In("diff")));
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kFolderEmpty, "CreateDiffFiles",
                                                  "Der Ordner " + In("leer") + " ist leer.")));
  EXPECT_FALSE(ConvertReports("leer"));
  EXPECT_THAT(Entries()[0], HasSubstr("Der Ordner leer ist leer."));
  EXPECT_THAT(user_.Texts("ask"), IsEmpty());
}

}  // namespace
}  // namespace tessary
