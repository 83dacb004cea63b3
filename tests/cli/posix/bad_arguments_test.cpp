// The built command with every operand of every command replaced by nonsense.

#ifdef TESSARY_BINARY

#include <gtest/gtest.h>

#include "support/real_files_test_base.h"
#include "support/run_program.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

const Words kCommands[] = {
    {"diff", "alt/A.lst", "neu/A.lst", "Ziel"},
    {"diff-folder", "alt", "neu", "Ziel"},
    {"convert", "R/A.lst", "diff/3_4Rechnung"},
    {"convert-folder", "diff", "R"},
    {"info", "R/A.lst"},
    {"show", "R/A.lst"},
    {"roundtrip", "R/A.lst", "Ziel/A.lst"},
};

const Words kNonsense = {
    "",
    " ",
    "fehlt/x",
    "fehlt/",
    "*",
    "R/?",
    "/dev/null/x",
    "/dev/zero",
    "/dev/tty",
    "/proc/self/mem",
    "R/A.lst/",
    "--",
    "-",
    "-x",
    "--=",
    "\xFF\xFE",
    "A:\\B",
    "\\\\server\\share",
    std::string(5000, 'x'),
    std::string(300, 'x') + "/" + std::string(300, 'y'),
};

class BadArgumentsOfTheCommand : public RealFilesTest {
 protected:
  BadArgumentsOfTheCommand() {
    Put("alt/A.lst", SmallReport(3));
    Put("neu/A.lst", SmallReport(4));
    PutFolder("diff");
    PutFolder("Ziel");
    EXPECT_TRUE(CreateDiffFiles("alt", "neu"));
    Put("R/A.lst", SmallReport(3));
  }

  ProgramResult Run(const Words& words) const {
    return RunProgram({TESSARY_BINARY, words, {}, folder_.path()});
  }
};

// A report that is converted is saved before its difference file is looked at.
std::map<std::string, std::string> WithoutBackups(std::map<std::string, std::string> files) {
  std::erase_if(files, [](const auto& file) { return file.first.starts_with("RBak/"); });
  return files;
}

TEST_F(BadArgumentsOfTheCommand, ChangeNothingAndAreTold) {
  const auto before = FilesBelow(folder_.path());
  for (const Words& command : kCommands) {
    // Almost every text names a file that roundtrip can create.
    const std::size_t operands = command[0] == "roundtrip" ? 1 : command.size() - 1;
    for (std::size_t operand = 1; operand <= operands; ++operand) {
      for (const std::string& nonsense : kNonsense) {
        SCOPED_TRACE(command[0] + ", operand " + std::to_string(operand) + ": " +
                     nonsense.substr(0, 60));
        Words words = command;
        words[operand] = nonsense;
        const ProgramResult result = Run(words);
        EXPECT_TRUE(result.exit_code == 1 || result.exit_code == 2) << result.exit_code;
        EXPECT_FALSE((result.out + result.err).empty());
        EXPECT_EQ(WithoutBackups(FilesBelow(folder_.path())), before);
      }
    }
  }
}

}  // namespace
}  // namespace tessary

#endif  // TESSARY_BINARY
