// A folder that goes away during a run, before every single call to the file system.

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

#include "faults/posix/fault_world.h"
#include "faults/posix/system_calls.h"
#include "support/failing_files.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

// Runs a folder's conversion with `folder` renamed before the n-th call; false when there are
// fewer calls.
bool RunWithout(const FaultWorld& world, const std::string& folder, int n, ResultLog& log,
                RecordingUser& user, bool& result) {
  FailingFiles files(SystemFiles());
  files.BeforeCall([&](const FailingFiles::Call&) {
    if (files.CountCalls() == n) fs::rename(world.In(folder), world.In("weg"));
  });
  user.AnswerAlways(Answer::kYes);
  BXConvertLLMgr manager(log, {files, user, nullptr, &user, nullptr, {1}});
  system_calls::Watch();
  result = manager.ConvertReports(world.In("diff"), world.In("R"), "");
  system_calls::Stop();
  return files.CountCalls() >= n;
}

class VanishingFolderTest : public testing::TestWithParam<const char*> {};

TEST_P(VanishingFolderTest, LosesNothing) {
  const std::string folder = GetParam();
  int n = 1;
  for (bool vanished = true; vanished && !HasFailure(); ++n) {
    SCOPED_TRACE("before call " + std::to_string(n));
    const FaultWorld world(false);
    ResultLog log;
    RecordingUser user;
    bool result = false;
    vanished = RunWithout(world, folder, n, log, user, result);
    EXPECT_TRUE(result || log.dictErrors.Count() > 0 || !user.Questions().empty());
    EXPECT_EQ(user.open_windows(), 0);
    if (vanished) {
      // What was written meanwhile to a folder made anew would be lost to whoever looks for it.
      EXPECT_FALSE(fs::exists(world.In(folder)) && !fs::is_empty(world.In(folder)));
      fs::remove(world.In(folder));
      fs::rename(world.In("weg"), world.In(folder));
    }
    world.ExpectReportsAsLogged(log, user.Questions().empty());
    // The next run removes what could not be removed where the folder had been.
    ResultLog next_log;
    RecordingUser next_user;
    vanished &= RunWithout(world, folder, 0, next_log, next_user, result);
    EXPECT_TRUE(result);
    world.ExpectNoLeftovers();
    if (user.Questions().empty()) world.ExpectFinished();
  }
  std::cout << "calls before which the folder vanished: " << n - 2 << "\n";
  EXPECT_GT(n, 20);
}

INSTANTIATE_TEST_SUITE_P(Folders, VanishingFolderTest, testing::Values("R", "RBak", "diff"),
                         [](const auto& row) { return std::string(row.param); });

}  // namespace
}  // namespace tessary
