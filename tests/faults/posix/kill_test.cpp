// Every operation killed at every single call to the system, and started again.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>

#include "faults/posix/fault_world.h"
#include "faults/posix/system_calls.h"

namespace tessary {
namespace {

bool RunHere(const FaultWorld& world, const FaultOperation& operation) {
  ResultLog log;
  RecordingUser user;
  BXConvertLLMgr manager(log, {SystemFiles(), user, nullptr, &user, nullptr, {1}});
  return operation.run(world, manager);
}

bool RunAgain(const FaultWorld& world, const FaultOperation& operation) {
  system_calls::Watch();
  const bool result = RunHere(world, operation);
  system_calls::Stop();
  return result;
}

// True when the run died at its n-th call, false when it ended before.
bool DiesAt(const FaultWorld& world, const FaultOperation& operation, int n) {
  const pid_t child = fork();
  if (child == 0) {
    system_calls::WatchAndDie(n);
    RunHere(world, operation);
    _exit(0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFSIGNALED(status);
}

const FaultOperation& Operation(std::string_view name) {
  for (const FaultOperation& operation : FaultOperations()) {
    if (operation.name == name) return operation;
  }
  throw std::out_of_range("no such operation");
}

std::map<std::string, std::string> Below(const FaultWorld& world, const std::string& folder) {
  auto files = world.Files();
  std::erase_if(files, [&](const auto& file) { return !file.first.starts_with(folder); });
  return files;
}

TEST(KillTest, AFolderRunIsFinishedByTheNext) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation("ConvertReports"), n);
    world.ExpectWholeReports();
    EXPECT_TRUE(RunAgain(world, Operation("ConvertReports")));
    world.ExpectFinished();
    const auto finished = Below(world, "R/");
    EXPECT_EQ(finished.size(), 2U);
    EXPECT_TRUE(RunAgain(world, Operation("ConvertReports")));
    EXPECT_EQ(Below(world, "R/"), finished) << "a run over a finished folder changes nothing";
    world.ExpectFinished();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 100);
}

TEST(KillTest, SoIsTheConversionOfOneReport) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation("ConvertReport"), n);
    world.ExpectWholeReports();
    EXPECT_TRUE(RunAgain(world, Operation("ConvertReport")));
    EXPECT_EQ(world.Get("R/A.lst"), SmallReport(4, "A"));
    world.ExpectWholeReports();
    world.ExpectNoLeftovers();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 50);
}

// A report with two names is overwritten, which no system does at one blow; then its backup is
// whole.
TEST(KillTest, AReportOverwrittenInPlaceHasItsBackup) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(true);
    died = DiesAt(world, Operation("ConvertReports"), n);
    world.ExpectWholeReports();
    RunAgain(world, Operation("ConvertReports"));
    world.ExpectWholeReports();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 100);
}

TEST(KillTest, DifferenceFilesAreWholeOrMissing) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation("CreateDiffFiles"), n);
    const auto whole = world.Files();
    for (const auto& [path, contents] : Below(world, "new/")) {
      if (path.find("~tessary-") != std::string::npos) continue;
      EXPECT_EQ(contents, whole.at("diff/" + path.substr(4))) << path;
    }
    EXPECT_TRUE(RunAgain(world, Operation("CreateDiffFiles")));
    EXPECT_EQ(Below(world, "new/").size(), 2U);
    world.ExpectNoLeftovers();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 50);
}

}  // namespace
}  // namespace tessary
