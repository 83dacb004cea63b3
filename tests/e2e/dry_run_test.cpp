// A dry run on the customer's reports, and then the real run.

#include <gtest/gtest.h>

#include "cli/tessary.h"
#include "e2e/samples.h"
#include "support/fake_console.h"
#include "support/real_files_test_base.h"

namespace tessary {
namespace {

class DryRunOnSamplesTest : public RealFilesTest {
 protected:
  DryRunOnSamplesTest() {
    CopySample("hersteller", In("hersteller"));
    CopySample("kunde", In("kunde"));
    PutFolder("diff");
    EXPECT_TRUE(CreateDiffFiles("hersteller/version3", "hersteller/version4"));
    EXPECT_TRUE(CreateDiffFiles("hersteller/version4", "hersteller/version5"));
  }

  int Convert(std::vector<std::string> more) {
    console_ = {};
    more.insert(more.begin(), {"convert-folder", In("diff"), In("kunde/Berichte")});
    return RunTessary(more, console_, SystemFiles());
  }

  FakeConsole console_;
};

TEST_F(DryRunOnSamplesTest, TellsTheElevenStepsAndLeavesEveryFileAlone) {
  const auto before = FilesBelow(folder_.path());
  ASSERT_EQ(Convert({"--dry-run"}), kExitDone);
  const std::string trial = console_.out;
  EXPECT_EQ(FilesBelow(folder_.path()), before);
  EXPECT_FALSE(SystemFiles().FolderExists(In("kunde/BerichteBak")));

  ASSERT_EQ(Convert({}), kExitDone);
  EXPECT_NE(FilesBelow(folder_.path()), before);
  EXPECT_EQ(trial.substr(0, trial.find("Probelauf")),
            console_.out.substr(0, trial.find("Probelauf")));

  // Again, where backups are in the way and nothing leads on.
  const auto after = FilesBelow(folder_.path());
  ASSERT_EQ(Convert({"--dry-run"}), kExitDone);
  EXPECT_EQ(FilesBelow(folder_.path()), after);
  const std::string warnings = console_.err;
  EXPECT_NE(warnings.find("lag bereits eine andere Fassung"), std::string::npos);
  ASSERT_EQ(Convert({}), kExitDone);
  EXPECT_EQ(console_.err, warnings);
}

}  // namespace
}  // namespace tessary
