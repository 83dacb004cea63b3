// Every operation with every single call to the file system failing in turn.

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <set>

#include "platform/file_names.h"
#include "platform/path.h"
#include "support/failure_chain.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

constexpr std::string_view kOlderCopy = "copy of an earlier run";

// A world in which every operation has something to do.
struct World {
  explicit World(bool in_place, bool ahead = false)
      : manager(log, {.files = files,
                      .user = user,
                      .notices = &user,
                      .workers = ahead ? &workers : nullptr}) {
    for (const int version : {3, 4, 5}) {
      const std::string folder = JoinPath("", "v" + std::to_string(version));
      memory.Put(JoinPath(folder, "A.lst"), SmallReport(version, "A"));
      memory.Put(JoinPath(folder, "B.lst"), SmallReport(version, "B"));
    }
    memory.PutFolder(JoinPath("", "new"));
    memory.PutFolder(diff);
    ResultLog other_log;
    RecordingUser other_user;
    BXConvertLLMgr other(other_log, {memory, other_user});
    EXPECT_TRUE(other.CreateDiffFiles(JoinPath("", "v3"), JoinPath("", "v4"), diff));
    EXPECT_TRUE(other.CreateDiffFiles(JoinPath("", "v4"), JoinPath("", "v5"), diff));
    memory.Put(JoinPath(reports, "A.lst"), SmallReport(3, "A"));
    memory.Put(JoinPath(reports, "B.lst"), SmallReport(4, "B"));
    memory.Put(JoinPath(backups, "A.lst"), std::string(kOlderCopy));
    memory.SetAllInPlace(in_place);
  }

  MemoryFiles memory;
  FailingFiles files{memory};
  ResultLog log;
  RecordingUser user;
  const std::string diff = JoinPath("", "diff");
  const std::string reports = JoinPath("", "R");
  const std::string backups = JoinPath("", "RBak");
  Workers workers{0};
  BXConvertLLMgr manager;
};

struct Operation {
  const char* name;
  bool has_backup;  // what it writes over can be restored
  bool ahead;       // does what it can ahead of its turn
  bool (*run)(World&);
};

bool CreateDiffFile(World& w) {
  return w.manager.CreateDiffFile(JoinPath(JoinPath("", "v3"), "A.lst"),
                                  JoinPath(JoinPath("", "v4"), "A.lst"), JoinPath("", "new"));
}

bool CreateDiffFiles(World& w) {
  return w.manager.CreateDiffFiles(JoinPath("", "v3"), JoinPath("", "v4"), JoinPath("", "new"));
}

bool ConvertReport(World& w) {
  return w.manager.ConvertReport(JoinPath(w.reports, "A.lst"), JoinPath(w.diff, "3_4A"), "");
}

bool ConvertReports(World& w) { return w.manager.ConvertReports(w.diff, w.reports, ""); }

const Operation kOperations[] = {
    {"CreateDiffFile", false, false, CreateDiffFile},
    {"CreateDiffFiles", false, false, CreateDiffFiles},
    {"CreateDiffFilesAhead", false, true, CreateDiffFiles},
    {"ConvertReport", true, false, ConvertReport},
    {"ConvertReportAhead", true, true, ConvertReport},
    {"ConvertReports", true, false, ConvertReports},
    {"ConvertReportsAhead", true, true, ConvertReports},
};

// Every file is either as it was before, or what a step leaves behind when it succeeds.
void ExpectWholeFiles(const World& world, const std::map<std::string, std::string>& before,
                      const std::map<std::string, std::set<std::string>>& whole) {
  for (const auto& [path, contents] : world.memory.files()) {
    EXPECT_FALSE(IsTemporaryName(FileNameOf(path))) << path;
    const auto old = before.find(path);
    const bool unchanged = old != before.end() && old->second == contents;
    const auto expected = whole.find(path);
    EXPECT_TRUE(unchanged || (expected != whole.end() && expected->second.contains(contents)))
        << path << ":\n"
        << contents;
  }
  for (const auto& [path, contents] : before) {
    const bool may_be_moved = path == JoinPath(world.backups, "A.lst");
    EXPECT_TRUE(may_be_moved || world.memory.files().contains(path)) << path;
  }
}

// What every file may come to, by watching a run that succeeds.
std::map<std::string, std::set<std::string>> WholeFiles(const Operation& operation, int& calls) {
  World world(false, operation.ahead);
  world.user.AnswerAlways(Answer::kYes);
  std::map<std::string, std::set<std::string>> whole;
  const auto collect = [&] {
    for (const auto& [path, contents] : world.memory.files()) whole[path].insert(contents);
  };
  world.files.BeforeCall([&](const FailingFiles::Call&) { collect(); });
  EXPECT_TRUE(operation.run(world));
  collect();
  calls = world.files.CountCalls();
  // Without a copy of its own a report may be restored from the older one.
  whole[JoinPath(world.reports, "A.lst")].insert(std::string(kOlderCopy));
  return whole;
}

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

// What a file system reports.
constexpr std::int32_t kNumbers[] = {
    kFileNotFound,     kDeviceError, kFileExists,     kDiskFull,     kTooManyFiles,
    kPermissionDenied, kBadFileName, kPathFileAccess, kPathNotFound, kOutOfMemory};

template <typename A, typename B, std::size_t m, std::size_t n>
std::vector<std::pair<A, B>> Product(const A (&as)[m], const B (&bs)[n]) {
  std::vector<std::pair<A, B>> pairs;
  for (const A& a : as) {
    for (const B& b : bs) pairs.emplace_back(a, b);
  }
  return pairs;
}

class FaultTest : public testing::TestWithParam<Operation> {};

TEST_P(FaultTest, NoSingleFailureLosesAnything) {
  int calls = 0;
  const auto whole = WholeFiles(GetParam(), calls);
  ASSERT_GT(calls, 5);
  const struct {
    const char* what;
    Damage damage;
    bool in_place;
    Answer answer;
  } ways[] = {
      {"safe, go on", Damage::kNone, false, Answer::kYes},
      {"safe, stop", Damage::kNone, false, Answer::kNo},
      {"in place, go on", Damage::kHalfWritten, true, Answer::kYes},
      {"in place, stop", Damage::kHalfWritten, true, Answer::kNo},
  };
  for (const auto& [way, number] : Product(ways, kNumbers)) {
    if (way.in_place && !GetParam().has_backup) continue;
    // What fails ahead fails again in its turn, with all numbers there are.
    if (GetParam().ahead && number != kDeviceError && number != kOutOfMemory) continue;
    for (int n = 1; n <= calls; ++n) {
      SCOPED_TRACE(std::string(way.what) + ", error " + std::to_string(number) + " at call " +
                   std::to_string(n));
      World world(way.in_place, GetParam().ahead);
      const auto before = world.memory.files();
      world.user.AnswerAlways(way.answer);
      world.files.FailAnyCall(n, number, way.damage);
      const bool result = GetParam().run(world);
      EXPECT_EQ(world.files.CountFailures(), 1);
      EXPECT_EQ(world.user.pointer(), "restored");
      EXPECT_EQ(world.user.open_windows(), 0);
      const bool asked = !world.user.Questions().empty();
      EXPECT_TRUE(result || asked || world.log.dictErrors.Count() > 0);
      EXPECT_TRUE(!result || world.log.dictErrors.Count() == 0);
      ExpectFailureChain(world.log, number);
      ExpectWholeFiles(world, before, whole);
    }
  }
}

// What fails outside every step, as a window can that finds no memory.
TEST_P(FaultTest, LastResortGivesThePointerBack) {
  World world(false, GetParam().ahead);
  world.user.AfterEvent([](const std::string& event) {
    if (event == "stop") throw std::bad_alloc();
  });
  EXPECT_FALSE(GetParam().run(world));
  EXPECT_EQ(world.user.Count("stop"), 1u);
  EXPECT_EQ(world.user.pointer(), "restored");
  EXPECT_EQ(world.user.open_windows(), 0);
}

TEST(ErrorProtocolFault, GivesThePointerBack) {
  World world(false);
  EXPECT_FALSE(world.manager.ConvertReport("", "", ""));
  world.user.AfterEvent([](const std::string& event) {
    if (event == "protocol") throw std::bad_alloc();
  });
  EXPECT_THROW(world.manager.ShowErrorProtocol(), std::bad_alloc);
  EXPECT_EQ(world.user.Count("protocol"), 2u);
  EXPECT_EQ(world.user.pointer(), "restored");
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultTest, testing::ValuesIn(kOperations),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tessary
