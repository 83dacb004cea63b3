// A real disk without room: a file system in memory of a few pages, with more and more of them
// free. Where nothing may be mounted the limit on the size of files has to serve; the tests of the
// platform use it.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "faults/posix/fault_world.h"
#include "platform/failure.h"
#include "support/failure_chain.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

// A small disk for all temporary folders made while it lives.
class SmallDisk {
 public:
  SmallDisk() {
    // A place of its own for mounts keeps this one from everybody else.
    const int place = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
    static const bool has_place =
        unshare(place) == 0 && mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) == 0;
    mounted_ = has_place && mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=256k") == 0;
    if (const char* folder = std::getenv("TMPDIR")) earlier_ = folder;
    if (mounted_) setenv("TMPDIR", folder_.path().c_str(), 1);
  }
  ~SmallDisk() {
    if (!mounted_) return;
    umount2(folder_.path().c_str(), MNT_DETACH);
    earlier_ ? setenv("TMPDIR", earlier_->c_str(), 1) : unsetenv("TMPDIR");
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool mounted() const { return mounted_; }

  // Takes all the room but `free` pages.
  void Fill(int free) const {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t room = fs::space(folder_.path()).available;
    std::ofstream file(folder_ / "filling", std::ios::binary);
    const std::size_t kept = static_cast<std::size_t>(free) * page;
    file << std::string(room > kept ? room - kept : 0, 'x');
    file.close();
    ASSERT_TRUE(file.good());
  }
  void Clear() const { fs::remove(folder_ / "filling"); }

 private:
  TemporaryFolder folder_;
  bool mounted_ = false;
  std::optional<std::string> earlier_;
};

class FullDiskTest : public testing::TestWithParam<FaultOperation> {};

TEST_P(FullDiskTest, LosesNothing) {
  const SmallDisk disk;
  if (!disk.mounted()) GTEST_SKIP() << "NOT TESTED: no right to mount a small disk";
  for (const bool in_place : {false, true}) {
    if (in_place && !GetParam().converts) continue;
    bool all_done = false;
    for (int free = 0; !all_done && !HasFailure(); ++free) {
      SCOPED_TRACE(std::string(in_place ? "in place, " : "") + std::to_string(free) +
                   " pages free");
      ASSERT_LT(free, 30);
      const FaultWorld world(in_place);
      disk.Fill(free);
      ResultLog log;
      RecordingUser user;
      user.AnswerAlways(Answer::kYes);
      BXConvertLLMgr manager(log, {SystemFiles(), user, nullptr, &user, nullptr, {1}});
      const bool result = GetParam().run(world, manager);
      const bool asked = !user.Questions().empty();
      EXPECT_TRUE(result || asked || log.dictErrors.Count() > 0) << "nobody is told";
      EXPECT_TRUE(free > 0 || !result || asked) << "the disk is not full";
      ExpectFailureChain(log, kDiskFull);
      world.ExpectReportsAsLogged(log, !asked);
      world.ExpectNoLeftovers();
      all_done = result && !asked;
      disk.Clear();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, FullDiskTest, testing::ValuesIn(FaultOperations()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tessary
