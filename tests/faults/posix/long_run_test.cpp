// Many reports in one process: what it holds in memory stays the same, but for the log, which is
// never cleared and has one item per report. The ordinary run is short; scripts/soak.sh runs the
// long one.

#include <gtest/gtest.h>
#include <malloc.h>

#include <fstream>
#include <iostream>

#include "support/manager_test_base.h"

#if defined(TESSARY_SANITIZED)
// Not every compiler brings the header that declares it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace tessary {
namespace {

constexpr int kReportsPerRun = 100;

std::size_t BytesHeld() {
#if defined(TESSARY_SANITIZED)
  return __sanitizer_get_current_allocated_bytes();
#else
  return mallinfo2().uordblks;
#endif
}

// In KiB, as the system sees it; 0 where it does not tell.
long ResidentSize() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
  }
  return 0;
}

// Folders of reports converted by the same files of differences, one after the other.
class LongRun : public ManagerTest {
 protected:
  LongRun() {
    for (int version = 3; version <= 5; ++version)
      memory_.Put(Path("v" + std::to_string(version), "A.lst"), SmallReport(version));
    memory_.PutFolder(Folder("diff"));
    for (int version = 3; version < 5; ++version) {
      EXPECT_TRUE(manager_.CreateDiffFiles(Folder("v" + std::to_string(version)),
                                           Folder("v" + std::to_string(version + 1)),
                                           Folder("diff")));
    }
    other_files_ = memory_.files();
  }

  // Converts a folder of reports that no run before had.
  void ConvertNext(ResultLog& log) {
    MemoryFiles files;
    for (const auto& [path, contents] : other_files_) files.Put(path, contents);
    const int first = next_report_;
    for (; next_report_ < first + kReportsPerRun; ++next_report_)
      files.Put(Path("R", "Bericht" + std::to_string(next_report_) + ".lst"), SmallReport(3));
    RecordingUser user;
    BXConvertLLMgr manager(log, {files, user});
    ASSERT_TRUE(manager.ConvertReports(Folder("diff"), Folder("R"), ""));
    ASSERT_EQ(files.Get(Path("R", "Bericht" + std::to_string(first) + ".lst")), SmallReport(5));
  }

  // A log of its own for every run, then one for all.
  void ConvertReports(int count) {
    constexpr std::size_t kSlack = 64 << 10;  // the allocator's and the library's own
    const int runs = count / kReportsPerRun;
    const int warm_up = std::max(1, runs / 10);
    std::size_t warm = 0;
    long warm_resident = 0;
    for (int run = 1; run <= runs && !HasFatalFailure(); ++run) {
      {
        ResultLog log;
        ConvertNext(log);
      }
      if (run != warm_up) continue;
      warm = BytesHeld();
      warm_resident = ResidentSize();
    }
    const std::size_t held = BytesHeld();
    EXPECT_LE(held, warm + kSlack);
    std::cout << count << " reports, bytes held: " << warm << " after " << warm_up * kReportsPerRun
              << ", " << held << " at the end; resident KiB: " << warm_resident << ", "
              << ResidentSize() << "\n";

    ResultLog log;
    for (int run = 1; run <= runs && !HasFatalFailure(); ++run) ConvertNext(log);
    const std::size_t items = static_cast<std::size_t>(log.dictCorrect.Count());
    EXPECT_EQ(items, static_cast<std::size_t>(2 * runs * kReportsPerRun));
    const std::size_t per_item = (BytesHeld() - held) / items;
    EXPECT_LT(per_item, 1024u);
    std::cout << "with one log: " << items << " items, " << per_item << " bytes each\n";
  }

 private:
  std::map<std::string, std::string> other_files_;
  int next_report_ = 100'000;  // names of one length
};

TEST_F(LongRun, HoldsNoMoreMemoryThanAShortOne) { ConvertReports(2'000); }

TEST_F(LongRun, DISABLED_OfAHundredThousandReportsHoldsNoMoreMemory) { ConvertReports(100'000); }

}  // namespace
}  // namespace tessary
