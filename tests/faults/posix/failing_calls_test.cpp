// Every operation on real files, with every single call to the system failing in turn, with every
// kind of error. The ordinary run takes two kinds; the others are for scripts/soak.sh.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "faults/posix/fault_world.h"
#include "faults/posix/system_calls.h"
#include "platform/posix/posix_errors.h"
#include "support/failure_chain.h"

namespace tessary {
namespace {

struct Watched {
  ResultLog log;
  RecordingUser user;
  bool result = false;
};

// `n` 0 lets every call succeed; the number of calls.
int RunWith(const FaultWorld& world, const FaultOperation& operation, int n, int error,
            Watched& run) {
  run.user.AnswerAlways(Answer::kYes);
  FaultManager manager(run.log, run.user, operation.ahead);
  system_calls::WatchAndFail(n, error);
  run.result = operation.run(world, *manager);
  return system_calls::Stop();
}

int CountOpenFiles() {
  int count = 0;
  for (int fd = 0; fd < 256; ++fd) count += static_cast<int>(fcntl(fd, F_GETFD) != -1);
  return count;
}

// Every difference file is missing or whole.
void ExpectWholeDifferences(const FaultWorld& world) {
  const auto files = world.Files();
  for (const auto& [path, contents] : files) {
    if (!path.starts_with("new/") || path.find("~tessary-") != std::string::npos) continue;
    EXPECT_EQ(contents, files.at("diff/" + path.substr(4))) << path;
  }
}

class FailingCallsTest : public testing::TestWithParam<FaultOperation> {};

void FailEveryCall(const FaultOperation& operation, std::initializer_list<int> errors) {
  int failed_calls = 0;
  const int open_files = CountOpenFiles();
  for (const bool in_place : {false, true}) {
    if (in_place && !operation.converts) continue;
    int calls = 0;
    {
      const FaultWorld world(in_place);
      Watched run;
      calls = RunWith(world, operation, 0, 0, run);
      ASSERT_TRUE(run.result);
    }
    ASSERT_GT(calls, 20);
    for (const int error : errors) {
      for (int n = 1; n <= calls && !testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(std::string(in_place ? "in place, " : "") + strerror(error) + " at call " +
                     std::to_string(n));
        const FaultWorld world(in_place);
        Watched run;
        RunWith(world, operation, n, error, run);
        ++failed_calls;
        const bool asked = !run.user.Questions().empty();
        EXPECT_TRUE(run.result || asked || run.log.dictErrors.Count() > 0) << "nobody is told";
        EXPECT_FALSE(run.result && run.log.dictErrors.Count() > 0);
        EXPECT_EQ(run.user.open_windows(), 0);
        EXPECT_EQ(CountOpenFiles(), open_files);
        ExpectFailureChain(run.log, RunTimeErrorOf(error));
        world.ExpectReportsAsLogged(run.log, !asked);
        ExpectWholeDifferences(world);
        if (!system_calls::FailedToRemove()) world.ExpectNoLeftovers();
      }
    }
  }
  std::cout << "failed calls: " << failed_calls << "\n";
}

TEST_P(FailingCallsTest, NoSingleFailureLosesAnything) {
  // What fails ahead fails again in its turn.
  if (GetParam().ahead) return FailEveryCall(GetParam(), {EIO});
  FailEveryCall(GetParam(), {EIO, EACCES});
}

TEST_P(FailingCallsTest, DISABLED_NoSingleFailureOfAnyKindLosesAnything) {
  FailEveryCall(GetParam(), {EIO, EACCES, ENOSPC, EMFILE, EROFS, ENOENT, ENOMEM, EEXIST, EPERM,
                             ENOTDIR, ENAMETOOLONG, EBUSY, EDQUOT, ENOTSUP, EINTR});
}

INSTANTIATE_TEST_SUITE_P(Operations, FailingCallsTest, testing::ValuesIn(FaultOperations()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tessary
