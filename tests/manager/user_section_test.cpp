#include "manager/user_section.h"

#include <gtest/gtest.h>

#include "platform/path.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

class UserSectionTest : public ManagerTest {
 protected:
  bool IsReport(const std::string& path) {
    return IsReportFile(files_, path, version_, reference_);
  }

  std::int32_t version_ = -1;
  std::string reference_ = "unset";
};

TEST_F(UserSectionTest, VersionsInEveryNumericForm) {
  const struct {
    const char* value;
    std::int32_t version;
  } rows[] = {
      {"3", 3},           {" 3 ", 3},
      {"007", 7},         {"+4", 4},
      {"-4", -4},         {"3.5", 4},
      {"4,5", 4},         {"2.51", 3},
      {"5.", 5},          {".9", 1},
      {"1e2", 100},       {"12E-1", 1},
      {"0", 0},           {"", 0},
      {"abc", 0},         {"3a", 0},
      {"1.2.3", 0},       {"1 2", 0},
      {"&H10", 0},        {"2147483647", 2147483647},
      {"2147483648", 0},  {"-2147483648", -2147483648},
      {"99999999999", 0},
  };
  const std::string path = Path("b", "r.lst");
  for (const auto& row : rows) {
    memory_.Put(
        path, FileText({"[UserSection]", std::string("Version=") + row.value, "Referenzbeleg=R"}));
    EXPECT_EQ(GetReportVersion(files_, path), row.version) << row.value;
    EXPECT_EQ(IsReport(path), row.version >= 1) << row.value;
  }
}

TEST_F(UserSectionTest, AMissingHeaderHasNoVersionAndNoReference) {
  const std::string path = Path("b", "r.lst");
  const std::vector<std::string> rows[] = {
      {},
      {"[UserSection]"},
      {"Version=3", "Referenzbeleg=R"},
      {"[Other]", "Version=3", "Referenzbeleg=R"},
      {"[UserSection]", "[Other]", "Version=3", "Referenzbeleg=R"},
      {"[UserSection]", "Versionen=3", "Referenzbelege=R"},
  };
  for (const auto& lines : rows) {
    memory_.Put(path, FileText(lines));
    EXPECT_EQ(GetReportVersion(files_, path), 0);
    EXPECT_EQ(GetReportReference(files_, path), "");
    EXPECT_FALSE(IsReport(path));
  }
}

TEST_F(UserSectionTest, ABlankPathIsNotRead) {
  for (const char* path : {"", "   "}) {
    EXPECT_EQ(GetReportVersion(files_, path), 0);
    EXPECT_EQ(GetReportReference(files_, path), "");
    EXPECT_FALSE(IsReport(path));
  }
  EXPECT_EQ(files_.CountCalls(), 0);
}

TEST_F(UserSectionTest, TheReferenceIsReturnedAsWrittenAndTrimmedForTheReportTest) {
  const std::string path = Path("b", "r.lst");
  memory_.Put(path, ReportText(3, "  Rechnung für Öl ", {}));
  EXPECT_EQ(GetReportReference(files_, path), "  Rechnung für Öl ");
  EXPECT_TRUE(IsReport(path));
  EXPECT_EQ(reference_, "Rechnung für Öl");
  EXPECT_EQ(version_, 3);

  memory_.Put(path, ReportText(7, "   ", {}));
  EXPECT_FALSE(IsReport(path)) << "a blank reference";
  EXPECT_EQ(version_, 7);
  EXPECT_EQ(reference_, "");
}

TEST_F(UserSectionTest, OnlyAnExtensionWithoutATildeMakesAReport) {
  const struct {
    const char* name;
    bool is_report;
  } rows[] = {
      {"Bericht.lst", true},
      {"Bericht.txt", true},
      {"Bericht.3", true},
      {".lst", true},
      {"a.b.lst", true},
      {"a~b.lst", true},
      {"a.lst~.lst", true},
      {"~Bericht.lst", true},
      {"Bericht.Ä", true},
      {"Bericht", false},
      {"a.", false},
      {"a. ", false},
      {"Bericht.lst~", false},
      {"Bericht.~lst", false},
      {"Bericht.l~t", false},
      {"a.b.~", false},
      {"ordner.lst/Bericht", false},
  };
  for (const auto& row : rows) {
    memory_.Put(Path("b", row.name), SmallReport(3));
    EXPECT_EQ(IsReport(Path("b", row.name)), row.is_report) << row.name;
    EXPECT_EQ(version_, row.is_report ? 3 : 0) << row.name;
  }
}

TEST_F(UserSectionTest, TheReportTestNeverFails) {
  EXPECT_FALSE(IsReport(Path("b", "missing.lst")));
  memory_.PutFolder(Path("b", "folder.lst"));
  EXPECT_FALSE(IsReport(Path("b", "folder.lst")));
  memory_.Put(Path("b", "r.lst"), SmallReport(3));
  for (int call = 1; call <= 2; ++call) {
    files_.Reset();
    files_.FailCall(FileCall::kProfileString, call, kDeviceError);
    EXPECT_FALSE(IsReport(Path("b", "r.lst")));
    EXPECT_EQ(version_, 0) << "both are read at once";
    EXPECT_EQ(reference_, "");
  }
}

TEST_F(UserSectionTest, HeadersBehindAByteOrderMarkAreFound) {
  const std::string path = Path("b", "r.lst");
  memory_.Put(path, "\xEF\xBB\xBF" + SmallReport(3));
  EXPECT_TRUE(IsReport(path));
  std::string utf16 = "\xFF\xFE";
  for (const char c : SmallReport(4)) utf16.append({c, '\0'});
  memory_.Put(path, utf16);
  EXPECT_TRUE(IsReport(path));
  EXPECT_EQ(version_, 4);
}

TEST_F(UserSectionTest, DiffFileNames) {
  const struct {
    int old_version;
    int new_version;
    const char* old_reference;
    const char* new_reference;
    const char* name;
  } rows[] = {
      {3, 4, "alt", "Rechnung", "3_4Rechnung"},
      {12, 13, "x", "Lieferschein", "12_13Lieferschein"},
      {0, 4, "x", "Rechnung", "_4Rechnung"},
      {3, 0, "x", "Rechnung", "3_Rechnung"},
      {-3, -4, "x", "", "_"},
      {3, 4, "x", "Gutschrift für Öl", "3_4Gutschrift für Öl"},
      {3, 4, "x", " mit Blanks ", "3_4 mit Blanks "},
  };
  for (const auto& row : rows) {
    memory_.Put(Path("b", "old.lst"), ReportText(row.old_version, row.old_reference, {}));
    memory_.Put(Path("b", "new.lst"), ReportText(row.new_version, row.new_reference, {}));
    EXPECT_EQ(BuildDiffFileName(files_, Path("b", "old.lst"), Path("b", "new.lst")), row.name);
  }
}

TEST(DiffFileNameTest, IsTakenApart) {
  const struct {
    const char* name;
    const char* reference;
    std::int32_t old_version;
    std::int32_t new_version;
    bool valid;
  } rows[] = {
      {"3_4Rechnung", "Rechnung", 3, 4, true},
      {"12_13Lieferschein", "Lieferschein", 12, 13, true},
      {"3_4", "4", 3, 4, true},
      {"3_45", "5", 3, 45, true},
      {"3_4_5A", "_5A", 3, 4, true},
      {"4_3Rechnung", "Rechnung", 4, 3, false},
      {"4_4Rechnung", "Rechnung", 4, 4, false},
      {"x_4Rechnung", "", 0, 0, false},
      {"34Rechnung", "", 0, 0, false},
      {"", "", 0, 0, false},
      {"_", "", 0, 0, false},
      {"_4Rechnung", "", 0, 0, false},
      {"3_", "", 3, 0, false},
      {"3_   ", "", 3, 0, false},
      {"3_Rechnung", "Rechnung", 3, 0, false},
      {"0_4Rechnung", "Rechnung", 0, 4, false},
      {"-3_4Rechnung", "Rechnung", -3, 4, false},
      {"3_-4Rechnung", "-4Rechnung", 3, 0, false},
      {"3_+4Rechnung", "+4Rechnung", 3, 0, false},
      {" 3 _ 4Rechnung", "Rechnung", 3, 4, true},
      {"3_4 Rechnung", "Rechnung", 3, 4, true},
      {"3_4 5A", "5A", 3, 4, true},
      {"3_4Rechnung ", "Rechnung ", 3, 4, true},
      {"3,0_4Rechnung", "Rechnung", 3, 4, true},
      {"2.5_4Rechnung", "Rechnung", 2, 4, true},
      {"3_4.5Rechnung", "Rechnung", 3, 4, true},
      {"3_4,6A", "A", 3, 5, true},
      {"3_4.5.6A", ".6A", 3, 4, true},
      {"3_4e1A", "e1A", 3, 4, true},
      {"3_.5A", ".5A", 3, 0, false},
      {"1e1_11A", "A", 10, 11, true},
      {"3_4Öl", "Öl", 3, 4, true},
      {"3_4\xFFx", "\xFFx", 3, 4, true},
      {"3_4Angebot.lst", "Angebot.lst", 3, 4, true},
      {"3_2147483647A", "A", 3, 2147483647, true},
      {"3_2147483648A", "8A", 3, 214748364, true},
      {"3_99999999999999", "99999", 3, 999999999, true},
      {"2147483648_4A", "", 0, 0, false},
      {"2147483646_2147483647A", "A", 2147483646, 2147483647, true},
      {"\uFF13_4A", "", 0, 0, false},
      {"~tessary-0123456789abcdef.~tmp", "", 0, 0, false},
      {"~3_4Rechnung.~1", "", 0, 0, false},
  };
  for (const auto& row : rows) {
    const DiffFileName parsed = ParseDiffFileName(row.name);
    EXPECT_EQ(parsed.reference, row.reference) << row.name;
    EXPECT_EQ(parsed.old_version, row.old_version) << row.name;
    EXPECT_EQ(parsed.new_version, row.new_version) << row.name;
    EXPECT_EQ(parsed.IsValid(), row.valid) << row.name;
  }
}

}  // namespace
}  // namespace tessary
