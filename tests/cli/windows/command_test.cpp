// The built program: wide arguments, streams, exit codes, current folder, files in use.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/windows/native_path.h"
#include "platform/windows/windows_io.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/run_program.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    for (const char* folder : {"alt", "neu", "diff", "Berichte Ω中文"}) {
      std::filesystem::create_directory(LibraryPath(folder_ / folder));
    }
    PutFile(folder_ / "alt/Übersicht Ω.lst", SmallReport(3));
    PutFile(folder_ / "neu/Übersicht Ω.lst", SmallReport(4));
    PutFile(report_, SmallReport(3));
  }

  ProgramResult Run(const Words& arguments) const {
    return RunProgram({TESSARY_BINARY, arguments, {}, folder_.path()});
  }
  void MakeDiff() const { ASSERT_EQ(Run({"diff-folder", "alt", "neu", "diff"}).exit_code, 0); }

  TemporaryFolder folder_;
  const std::string report_ = folder_ / "Berichte Ω中文/Übersicht Ω.lst";
};

TEST_F(CommandTest, VersionHelpAndWrongUsage) {
  EXPECT_TRUE(Run({"--version"}).out.starts_with("tessary "));
  EXPECT_EQ(Run({"help", "diff"}).exit_code, 0);
  const ProgramResult wrong = Run({"dif", ""});
  EXPECT_EQ(wrong.exit_code, 2);
  EXPECT_EQ(wrong.out, "");
  EXPECT_NE(wrong.err.find("Meinten Sie „diff“?"), std::string::npos) << wrong.err;
}

TEST_F(CommandTest, BothPassesWithNamesOfEveryScript) {
  EXPECT_EQ(Run({"diff-folder", "alt\\", ".\\neu", "neu/../diff"}).exit_code, 0);
  const ProgramResult result = Run({"convert-folder", "diff", "Berichte Ω中文"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "OK      Der Bericht Übersicht Ω.lst wurde erfolgreich von Version 3 nach 4 "
            "konvertiert.\n1 Bericht konvertiert, 2 Unterschiede angewendet\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(GetFile(folder_ / "Berichte Ω中文Bak/Übersicht Ω.lst"), SmallReport(3));
  EXPECT_EQ(Run({"info", "Berichte Ω中文\\Übersicht Ω.lst"}).out,
            "Berichte Ω中文\\Übersicht Ω.lst: Version 4, Referenz Rechnung\n");
}

TEST_F(CommandTest, ArgumentsKeepQuotesAndBackslashes) {
  const ProgramResult result = Run({"info", "a \"b\" c\\", "x\\\\\"y"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(result.out.starts_with("a \"b\" c\\: keine List & Label Berichtsdatei"));
  EXPECT_NE(result.out.find("\nx\\\\\"y: keine List & Label Berichtsdatei"), std::string::npos);
}

TEST_F(CommandTest, JsonIsOneObject) {
  MakeDiff();
  const ProgramResult result = Run({"convert", report_, "diff/3_4Rechnung", "--json"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(ParseJson(result.out)["result"], true);
}

TEST_F(CommandTest, AReportThatAnotherProgramHasOpenIsNamedAndLeftAlone) {
  MakeDiff();
  const FileHandle other = TryOpen(NativePath(report_), GENERIC_READ | GENERIC_WRITE, kShareAll);
  ASSERT_TRUE(other.is_open());
  const ProgramResult result = Run({"convert", report_, "diff/3_4Rechnung"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("Fehler beim Öffnen der Datei Übersicht Ω.lst"), std::string::npos)
      << result.out;
  EXPECT_EQ(GetFile(report_), SmallReport(3));
}

TEST_F(CommandTest, AReadOnlyReportIsLeftAlone) {
  MakeDiff();
  const std::wstring native = NativePath(report_);
  ASSERT_TRUE(SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(Run({"convert", report_, "diff/3_4Rechnung"}).exit_code, 1);
  EXPECT_EQ(GetFile(report_), SmallReport(3));
  SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
}  // namespace tessary
