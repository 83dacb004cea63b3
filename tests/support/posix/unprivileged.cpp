// The test program runs itself again through setpriv, with a filter for the current test. A copy of
// the program is run, since the build folder may be closed to others.

#include "support/unprivileged.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "support/temporary_folder.h"

namespace tessary {

namespace {

namespace fs = std::filesystem;

std::string CurrentTestName() {
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(test->test_suite_name()) + "." + test->name();
}

// The exit code of a shell command.
int Run(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

UnprivilegedRun RunUnprivileged() {
  if (geteuid() != 0) return UnprivilegedRun::kHere;
  if (Run("command -v setpriv >/dev/null") != 0) return UnprivilegedRun::kMissing;

  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms::all);
  const std::string program = folder / "program";
  const std::string output = folder / "output";
  // The link itself is valgrind where that runs the tests.
  fs::copy_file(fs::read_symlink("/proc/self/exe"), program);
  fs::permissions(program, static_cast<fs::perms>(0755));
  const int exit_code =
      Run("cd / && env -u GTEST_OUTPUT -u GTEST_TOTAL_SHARDS -u GTEST_SHARD_INDEX TMPDIR='" +
          folder.path() + "' setpriv --reuid=65534 --regid=65534 --clear-groups '" + program +
          "' --gtest_filter='" + CurrentTestName() + "' >'" + output + "' 2>&1");
  const std::string text = GetFile(output);
  EXPECT_EQ(exit_code, 0) << text;
  EXPECT_NE(text.find("[  PASSED  ] 1 test"), std::string::npos) << text;
  return UnprivilegedRun::kDone;
}

}  // namespace tessary
