#include "manager/folder_check.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "support/failing_files.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

using Names = std::vector<std::string>;

constexpr char kDifference[] = "U;[UserSection]\r\nU;Version=9\r\n";

class FolderCheckTest : public testing::Test {
 protected:
  FolderCheckTest() {
    files_.PutFolder("/diff");
    files_.PutFolder("/rep");
  }
  void PutDifferences(const Names& names) {
    for (const std::string& name : names) files_.Put("/diff/" + name, kDifference);
  }
  FolderCheck Check(const OmitReport& omit = nullptr) {
    const auto before = files_.files();
    FolderCheck check = CheckFolders(files_, "/diff", "/rep", omit);
    EXPECT_EQ(files_.files(), before);
    return check;
  }

  MemoryFiles files_;
};

struct ChainCase {
  const char* name;
  int version;
  Names differences;
  Names chain;
  int reached;
  ChainState state;
  const char* message;
};

const ChainCase kChainCases[] = {
    {"whole chain",
     3,
     {"3_4Rechnung", "4_5Rechnung"},
     {"3_4Rechnung", "4_5Rechnung"},
     5,
     ChainState::kComplete,
     nullptr},
    {"from the middle",
     4,
     {"3_4Rechnung", "4_5Rechnung"},
     {"4_5Rechnung"},
     5,
     ChainState::kComplete,
     nullptr},
    {"newest already", 5, {"3_4Rechnung", "4_5Rechnung"}, {}, 5, ChainState::kComplete, nullptr},
    {"newer than all", 7, {"3_4Rechnung"}, {}, 7, ChainState::kComplete, nullptr},
    {"letter case of the reference",
     3,
     {"3_4RECHNUNG"},
     {"3_4RECHNUNG"},
     4,
     ChainState::kComplete,
     nullptr},
    {"a step over several versions",
     3,
     {"3_6Rechnung"},
     {"3_6Rechnung"},
     6,
     ChainState::kComplete,
     nullptr},
    {"two digits sort as numbers",
     9,
     {"10_11Rechnung", "9_10Rechnung"},
     {"9_10Rechnung", "10_11Rechnung"},
     11,
     ChainState::kComplete,
     nullptr},
    {"gap in the middle",
     3,
     {"3_4Rechnung", "5_6Rechnung"},
     {"3_4Rechnung"},
     4,
     ChainState::kGap,
     "Von Version 4 führt keine Differenz-Datei weiter; die nächste ist 5_6Rechnung."},
    {"gap at the beginning",
     2,
     {"3_4Rechnung"},
     {},
     2,
     ChainState::kGap,
     "Von Version 2 führt keine Differenz-Datei weiter; die nächste ist 3_4Rechnung."},
    {"the first of two steps leads nowhere",
     3,
     {"3_4Rechnung", "3_5Rechnung"},
     {"3_4Rechnung"},
     4,
     ChainState::kGap,
     "Von Version 4 führt keine Differenz-Datei weiter."},
    {"no difference files",
     3,
     {"3_4Angebot"},
     {},
     3,
     ChainState::kNoDifferences,
     "Zur Referenz Rechnung gibt es keine Differenz-Datei."},
};

TEST_F(FolderCheckTest, Chains) {
  for (const ChainCase& row : kChainCases) {
    SCOPED_TRACE(row.name);
    files_ = MemoryFiles();
    files_.Put("/rep/a.lst", SmallReport(row.version));
    PutDifferences(row.differences);
    const FolderCheck check = Check();
    ASSERT_EQ(check.reports.size(), 1u);
    const CheckedReport& report = check.reports[0];
    EXPECT_EQ(report.chain, row.chain);
    EXPECT_EQ(report.reached, row.reached);
    EXPECT_EQ(report.state, row.state);
    EXPECT_EQ(report.messages, row.message ? Names{row.message} : Names{});
    EXPECT_EQ(check.Complete(), row.state == ChainState::kComplete);
  }
}

TEST_F(FolderCheckTest, FilesThatAreNoReports) {
  PutDifferences({"3_4Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3));
  const struct {
    const char* name;
    std::string contents;
    NoReportReason reason;
  } rows[] = {
      {"Notizen", SmallReport(3), NoReportReason::kNoExtension},
      {"b.lst~", SmallReport(3), NoReportReason::kBackupExtension},
      {"~a.lst.~1", SmallReport(3), NoReportReason::kBackupExtension},
      {"Liesmich.txt", "Hallo", NoReportReason::kNoHeader},
      {"c.lst", "[UserSection]\nReferenzbeleg=A\n", NoReportReason::kNoVersion},
      {"d.lst", "[UserSection]\nVersion=drei\nReferenzbeleg=A\n", NoReportReason::kNoVersion},
      {"e.lst", "[UserSection]\nVersion=0\nReferenzbeleg=A\n", NoReportReason::kNoVersion},
      {"f.lst", "[UserSection]\nVersion=3\n", NoReportReason::kNoReference},
      {"g.lst", "[UserSection]\nVersion=3\nReferenzbeleg=  \n", NoReportReason::kNoReference},
  };
  for (const auto& row : rows) files_.Put(std::string("/rep/") + row.name, row.contents);
  const FolderCheck check = Check();
  EXPECT_EQ(check.reports.size(), 1u);
  EXPECT_EQ(check.no_reports.size(), std::size(rows));
  for (const auto& row : rows) {
    const auto found = std::find_if(check.no_reports.begin(), check.no_reports.end(),
                                    [&](const NoReport& file) { return file.name == row.name; });
    ASSERT_NE(found, check.no_reports.end()) << row.name;
    EXPECT_EQ(found->reason, row.reason) << row.name;
  }
  EXPECT_TRUE(check.Complete()) << "a conversion passes over them";
}

TEST_F(FolderCheckTest, DuplicateSteps) {
  PutDifferences({"3_4Rechnung", "3_5RECHNUNG", "5_6Rechnung", "3_4Angebot"});
  files_.Put("/rep/a.lst", SmallReport(5));
  const FolderCheck check = Check();
  ASSERT_EQ(check.duplicate_steps.size(), 1u);
  EXPECT_EQ(check.duplicate_steps[0].version, 3);
  EXPECT_THAT(check.duplicate_steps[0].names, ElementsAre("3_4Rechnung", "3_5RECHNUNG"));
}

TEST_F(FolderCheckTest, ReportsThatWouldGiveOneDifferenceFile) {
  PutDifferences({"3_4Rechnung", "4_5Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.Put("/rep/b.lst", SmallReport(3, "RECHNUNG"));
  files_.Put("/rep/c.lst", SmallReport(4));
  const FolderCheck check = Check();
  ASSERT_EQ(check.same_headers.size(), 1u);
  EXPECT_THAT(check.same_headers[0].names, ElementsAre("a.lst", "b.lst"));
  EXPECT_TRUE(check.Complete()) << "customers keep several reports of one reference";
}

TEST_F(FolderCheckTest, DifferenceFilesThatMatchNothing) {
  PutDifferences({"1_2Rechnung", "2_3Rechnung", "2_4Rechnung", "3_4Rechnung", "3_4Mahnung",
                  "4_3Rechnung", "Liesmich.txt"});
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.Put("/rep/b.lst", SmallReport(4));
  const FolderCheck check = Check();
  std::vector<std::pair<std::string, UnmatchedReason>> unmatched;
  for (const UnmatchedDifference& difference : check.unmatched) {
    unmatched.emplace_back(difference.name, difference.reason);
  }
  EXPECT_THAT(unmatched, ElementsAre(Pair("3_4Mahnung", UnmatchedReason::kNoSuchReference),
                                     Pair("1_2Rechnung", UnmatchedReason::kNoLongerNeeded),
                                     Pair("2_3Rechnung", UnmatchedReason::kNoLongerNeeded),
                                     Pair("2_4Rechnung", UnmatchedReason::kNotOnTheWay)));
  EXPECT_THAT(check.other_files, ElementsAre("4_3Rechnung", "Liesmich.txt"));
  EXPECT_TRUE(check.Complete());
}

TEST_F(FolderCheckTest, FilesThatCannotBeRead) {
  PutDifferences({"3_4Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.Put("/rep/marke.lst", "\xEF\xBB\xBF" + SmallReport(3));
  const FolderCheck marked = Check();
  EXPECT_EQ(marked.reports[0].state, ChainState::kComplete);
  EXPECT_EQ(marked.reports[1].state, ChainState::kUnreadable);
  EXPECT_THAT(marked.reports[1].messages,
              ElementsAre(HasSubstr("Die Datei marke.lst ist in einem neueren Format")));

  files_.Put("/diff/3_4Rechnung", "\xFF\xFE");
  EXPECT_THAT(Check().reports[0].messages,
              ElementsAre(HasSubstr("Die Datei 3_4Rechnung ist in einem neueren Format")));

  files_.Put("/diff/3_4Rechnung", "\r\n");
  const FolderCheck empty = Check();
  EXPECT_EQ(empty.reports[0].state, ChainState::kUnreadable);
  EXPECT_THAT(empty.reports[0].messages, ElementsAre("Die Differenz-Datei 3_4Rechnung ist leer."));

  FailingFiles failing(files_);
  failing.FailCallsFrom(FileCall::kRead, 1, kDeviceError);
  EXPECT_THAT(CheckFolders(failing, "/diff", "/rep", nullptr).reports[0].messages,
              ElementsAre("Die Datei a.lst kann nicht gelesen werden: Geräte-E/A-Fehler.",
                          "Die Datei 3_4Rechnung kann nicht gelesen werden: Geräte-E/A-Fehler."));
}

TEST_F(FolderCheckTest, AFileThatCannotBeOpenedMayBeAReport) {
  PutDifferences({"3_4Rechnung"});
  files_.Put("/rep/a.lst", "");
  files_.Put("/rep/b.lst", SmallReport(3));
  FailingFiles failing(files_);
  failing.FailCall(FileCall::kOpenForReading, 1, kPermissionDenied);
  const FolderCheck check = CheckFolders(failing, "/diff", "/rep", nullptr);
  EXPECT_THAT(check.problems,
              ElementsAre("Die Datei a.lst kann nicht gelesen werden: Zugriff verweigert."));
  EXPECT_THAT(check.no_reports, IsEmpty());
  EXPECT_FALSE(check.Complete());
}

TEST_F(FolderCheckTest, ADuplicateOfAnAppliedStepIsNotOutOfTheWay) {
  PutDifferences({"3_4Rechnung", "4_5Rechnung", "4_6Rechnung", "7_8Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3));
  const FolderCheck check = Check();
  ASSERT_EQ(check.unmatched.size(), 2u);
  EXPECT_EQ(check.unmatched[0].name, "4_6Rechnung");
  EXPECT_EQ(check.unmatched[0].reason, UnmatchedReason::kAnotherIsApplied);
  EXPECT_EQ(check.unmatched[1].reason, UnmatchedReason::kNotOnTheWay);
}

TEST_F(FolderCheckTest, WhatIsOddAboutAReportIsAWarning) {
  PutDifferences({"3_4Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3) + "}\r\n}\r\n}\r\nX=1\r\n");
  const FolderCheck check = Check();
  EXPECT_THAT(check.reports[0].warnings, testing::Contains(HasSubstr("außerhalb der Ebenen")));
  EXPECT_TRUE(check.Complete());
}

TEST_F(FolderCheckTest, FoldersWithoutAnything) {
  EXPECT_THAT(Check().problems, ElementsAre("Der Ordner /diff enthält keine Differenz-Dateien.",
                                            "Der Ordner /rep enthält keine Berichte."));
  EXPECT_FALSE(Check().Complete());
  EXPECT_THAT(CheckFolders(files_, "/none", "", nullptr).problems,
              ElementsAre("Fehlende Pfadangabe für das Berichtsverzeichnis.",
                          "Der Ordner /none existiert nicht."));
}

TEST_F(FolderCheckTest, OmittedReportsDoNotCount) {
  PutDifferences({"3_4Rechnung"});
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.Put("/rep/eigener.lst", SmallReport(1, "Eigenes"));
  EXPECT_FALSE(Check().Complete());
  const FolderCheck check = Check([](const std::string& name) { return name == "eigener.lst"; });
  EXPECT_TRUE(check.Complete());
  EXPECT_THAT(check.no_reports, IsEmpty());
}

}  // namespace
}  // namespace tessary
