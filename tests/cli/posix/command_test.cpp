// The built program: streams, terminals, exit codes, current folder.

#ifdef TESSARY_BINARY

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/run_program.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;
namespace fs = std::filesystem;

const Words kUtf8Terminal = {"LC_ALL=C.UTF-8", "TERM=xterm", "NO_COLOR="};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    for (const char* folder : {"alt", "neu", "diff", "Berichte"}) {
      fs::create_directory(folder_ / folder);
    }
    PutFile(folder_ / "alt/Rechnung.lst", SmallReport(3));
    PutFile(folder_ / "neu/Rechnung.lst", SmallReport(4));
    PutFile(folder_ / "Berichte/Rechnung.lst", SmallReport(3));
  }

  ProgramRun Arguments(const Words& arguments, const Words& environment = {}) const {
    return {TESSARY_BINARY, arguments, environment, folder_.path()};
  }
  ProgramResult Run(const Words& arguments) const { return RunProgram(Arguments(arguments)); }
  void MakeDiff() const { ASSERT_EQ(Run({"diff-folder", "alt", "neu", "diff"}).exit_code, 0); }

  TemporaryFolder folder_;
};

TEST_F(CommandTest, VersionAndHelp) {
  EXPECT_TRUE(Run({"--version"}).out.starts_with("tessary "));
  for (const Words& arguments : {Words{"--help"}, Words{"help"}, Words{"help", "diff"}}) {
    const ProgramResult result = Run(arguments);
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_NE(result.out.find("Beispiele:\n"), std::string::npos);
    EXPECT_EQ(result.err, "");
  }
}

TEST_F(CommandTest, WrongUsage) {
  for (const Words& arguments : {Words{}, Words{"dif"}, Words{"diff"}, Words{"diff", "--jsn"}}) {
    const ProgramResult result = Run(arguments);
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("tessary: ")) << result.err;
  }
}

TEST_F(CommandTest, BothPassesWithRelativePathsInEveryForm) {
  EXPECT_EQ(Run({"diff-folder", "alt", "./neu/", "neu/../diff"}).exit_code, 0);
  EXPECT_TRUE(fs::exists(folder_ / "diff/3_4Rechnung"));
  const ProgramResult result = Run({"convert-folder", "diff/", "Berichte/"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out,
            "OK      Der Bericht Rechnung.lst wurde erfolgreich von Version 3 nach 4 "
            "konvertiert.\n1 Bericht konvertiert, 2 Unterschiede angewendet\n");
  EXPECT_EQ(GetFile(folder_ / "BerichteBak/Rechnung.lst"), SmallReport(3));
  EXPECT_EQ(Run({"info", "Berichte/Rechnung.lst"}).out,
            "Berichte/Rechnung.lst: Version 4, Referenz Rechnung\n");
}

TEST_F(CommandTest, JsonIsOneObject) {
  MakeDiff();
  const ProgramResult result =
      Run({"convert", "Berichte/Rechnung.lst", "diff/3_4Rechnung", "--json"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ParseJson(result.out)["result"], true);
}

TEST_F(CommandTest, ShowAndRoundtrip) {
  MakeDiff();
  EXPECT_NE(Run({"show", "diff/3_4Rechnung"}).out.find("geändert: Version=4"), std::string::npos);
  EXPECT_EQ(Run({"roundtrip", "Berichte/Rechnung.lst", "kopie"}).exit_code, 0);
  EXPECT_EQ(Run({"roundtrip", "kopie", "kopie2"}).exit_code, 0);
  EXPECT_EQ(GetFile(folder_ / "kopie"), GetFile(folder_ / "kopie2"));
}

TEST_F(CommandTest, NamesThatAreNotUtf8) {
  const std::string name =
      "R\xFC"
      "ckung.lst";
  PutFile(folder_ / name, SmallReport(3));
  const ProgramResult result = Run({"info", name});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "R\uFFFDckung.lst: Version 3, Referenz Rechnung\n");
}

TEST_F(CommandTest, AFullDiskIsToldButDoesNotCrash) {
  const ProgramResult show = RunProgramInto(Arguments({"show", "alt/Rechnung.lst"}), "/dev/full");
  EXPECT_EQ(show.exit_code, 1);
  EXPECT_EQ(show.err, "tessary: Die Ausgabe konnte nicht vollständig geschrieben werden.\n");
  const ProgramResult diff =
      RunProgramInto(Arguments({"diff-folder", "alt", "neu", "diff"}), "/dev/full");
  EXPECT_EQ(diff.exit_code, 0);
  EXPECT_TRUE(fs::exists(folder_ / "diff/3_4Rechnung"));
}

TEST_F(CommandTest, AClosedPipeDoesNotCrash) {
  const std::string script = std::string(TESSARY_BINARY) + " \"$@\" | true; echo ${PIPESTATUS[0]}";
  const ProgramResult result =
      RunProgram({"/bin/bash",
                  {"-c", script, "bash", "convert-folder", "diff", "Berichte"},
                  {},
                  folder_.path()});
  EXPECT_EQ(result.out, "1\n") << "the difference folder is empty";
}

TEST_F(CommandTest, AClosedStandardOutputIsNotMistakenForAReport) {
  MakeDiff();
  const std::string script = std::string("exec ") + TESSARY_BINARY + " \"$@\" >&- 2>&- <&-";
  const ProgramResult result = RunProgram(
      {"/bin/sh", {"-c", script, "sh", "convert-folder", "diff", "Berichte"}, {}, folder_.path()});
  EXPECT_EQ(result.exit_code, 0);
  const std::string report = GetFile(folder_ / "Berichte/Rechnung.lst");
  EXPECT_EQ(report.find("konvertiert"), std::string::npos);
  EXPECT_NE(report.find("Version=4"), std::string::npos);
}

TEST_F(CommandTest, MarksAndColoursOnATerminal) {
  MakeDiff();
  const Words arguments = {"diff-folder", "alt", "neu", "diff"};
  const std::string colours = RunOnTerminal(Arguments(arguments, kUtf8Terminal), "").out;
  EXPECT_NE(colours.find("\x1b[32m✔\x1b[0m Die Differenz-Datei"), std::string::npos) << colours;
  EXPECT_NE(colours.find("\rBerichtsvergleich: "), std::string::npos);
  const Words no_colour = {"LC_ALL=C.UTF-8", "TERM=xterm", "NO_COLOR=1"};
  const std::string plain = RunOnTerminal(Arguments(arguments, no_colour), "").out;
  EXPECT_EQ(plain.find("\x1b"), std::string::npos) << plain;
  EXPECT_NE(plain.find("✔ Die Differenz-Datei"), std::string::npos);
  const Words no_unicode = {"LC_ALL=C", "TERM=dumb"};
  const std::string words = RunOnTerminal(Arguments(arguments, no_unicode), "").out;
  EXPECT_NE(words.find("OK      Die Differenz-Datei"), std::string::npos) << words;
  EXPECT_EQ(words.find("\x1b"), std::string::npos) << words;
}

TEST_F(CommandTest, QuietIsSilentOnATerminal) {
  EXPECT_EQ(RunOnTerminal(Arguments({"diff-folder", "alt", "neu", "diff", "--quiet"}), "").out, "");
}

struct TypedCase {
  const char* name;
  std::string typed;
  int exit_code;
  bool converted;
};

TEST_F(CommandTest, TheBackupQuestionIsAskedOnATerminal) {
  MakeDiff();
  const TypedCase rows[] = {
      {"no", "n\n", 1, false},
      {"end of input", "\x04", 1, false},
      {"yes by default", "\n", 0, true},
  };
  for (const auto& row : rows) {
    PutFile(folder_ / "Berichte/Rechnung.lst", SmallReport(3));
    const ProgramResult result = RunOnTerminal(
        Arguments({"convert-folder", "diff", "Berichte", "--backup", "Berichte"}, kUtf8Terminal),
        row.typed);
    EXPECT_EQ(result.exit_code, row.exit_code) << row.name;
    EXPECT_NE(result.out.find("konnte nicht gesichert werden."), std::string::npos) << row.name;
    EXPECT_EQ(GetFile(folder_ / "Berichte/Rechnung.lst") != SmallReport(3), row.converted)
        << row.name;
  }
}

TEST_F(CommandTest, WithoutATerminalTheOptionAnswers) {
  MakeDiff();
  const Words arguments = {"convert-folder", "diff", "Berichte", "--backup", "Berichte"};
  const ProgramResult abort = Run(arguments);
  EXPECT_EQ(abort.exit_code, 1);
  EXPECT_NE(abort.err.find("Der Bericht Rechnung.lst wurde nicht konvertiert"), std::string::npos);
  EXPECT_EQ(GetFile(folder_ / "Berichte/Rechnung.lst"), SmallReport(3));
  Words with_option = arguments;
  with_option.push_back("--on-backup-failure=continue");
  EXPECT_EQ(Run(with_option).exit_code, 0);
  EXPECT_NE(GetFile(folder_ / "Berichte/Rechnung.lst"), SmallReport(3));
}

TEST_F(CommandTest, AVanishedCurrentFolderIsNoCrash) {
  fs::create_directory(folder_ / "weg");
  const std::string script = "rmdir ../weg && exec " + std::string(TESSARY_BINARY) + " \"$@\"";
  const ProgramResult result = RunProgram(
      {"/bin/sh", {"-c", script, "sh", "convert", "a.lst", "3_4A"}, {}, folder_ / "weg"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("Die Datei a.lst existiert nicht."), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Verzeichnis für die Berichte aus:\n   (nicht angegeben)\n"),
            std::string::npos)
      << result.out;
}

}  // namespace
}  // namespace tessary

#endif  // TESSARY_BINARY
