#include "support/failing_files.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/path.h"
#include "support/failure_number.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

class FailingFilesTest : public testing::Test {
 protected:
  FailingFilesTest() { memory_.Put(a_, "old contents"); }

  // Uses every kind of call once, except that there are two writes.
  void UseAll() {
    ReadWholeFile(*files_.OpenForReading(a_));
    Replace();
    files_.CopyFile(a_, Name("b"));
    files_.RenameFile(Name("b"), Name("c"));
    files_.ListFiles(root_);
    files_.CreateFolder(Name("dir"));
    files_.ReadProfileString(a_, "S", "K");
    files_.SameContents(a_, Name("c"));
  }

  void Replace() {
    const auto replacement = files_.OpenForReplacing(a_);
    replacement->Write("new ");
    replacement->Write("text");
    replacement->Prepare();
    replacement->Commit();
  }

  std::string Name(std::string_view name) const { return JoinPath(root_, name); }

  const std::string root_ = JoinPath("", "root");
  const std::string a_ = Name("a");
  MemoryFiles memory_;
  FailingFiles files_{memory_};
};

TEST_F(FailingFilesTest, PassesEverythingOn) {
  EXPECT_NO_THROW(UseAll());
  EXPECT_EQ(memory_.Get(a_), "new text");
  EXPECT_EQ(memory_.Get(Name("c")), "new text");
  EXPECT_TRUE(files_.FolderExists(Name("dir")));
  EXPECT_EQ(files_.CountFailures(), 0);
  EXPECT_EQ(files_.CountCalls(FileCall::kWrite), 2);
  EXPECT_EQ(files_.CountCalls(FileCall::kRead), 2);
  EXPECT_EQ(files_.CountCalls(), 14);
  EXPECT_EQ(files_.calls().front().path, a_);
}

TEST_F(FailingFilesTest, EveryKindFails) {
  for (std::size_t i = 0; i < kFileCallKinds; ++i) {
    const auto kind = static_cast<FileCall>(i);
    files_.Reset();
    memory_ = MemoryFiles();
    memory_.Put(a_, "old contents");
    files_.FailCall(kind, 1, 4711);
    EXPECT_EQ(FailureNumber([&] { UseAll(); }), 4711) << i;
    EXPECT_EQ(files_.CountFailures(), 1) << i;
    EXPECT_EQ(files_.calls().back().kind, kind) << i;
  }
}

TEST_F(FailingFilesTest, EveryCallFails) {
  UseAll();
  const int calls = files_.CountCalls();
  for (int n = 1; n <= calls + 1; ++n) {
    files_.Reset();
    memory_ = MemoryFiles();
    memory_.Put(a_, "old contents");
    files_.FailAnyCall(n, kDeviceError);
    EXPECT_EQ(FailureNumber([&] { UseAll(); }), n <= calls ? kDeviceError : 0) << n;
    EXPECT_EQ(files_.CountCalls(), std::min(n, calls)) << n;
  }
}

TEST_F(FailingFilesTest, TheNthCallFails) {
  files_.FailCall(FileCall::kWrite, 2, kDiskFull);
  EXPECT_EQ(FailureNumber([&] { Replace(); }), kDiskFull);
  EXPECT_EQ(memory_.Get(a_), "old contents");
  EXPECT_NO_THROW(Replace());
  EXPECT_EQ(memory_.Get(a_), "new text");
}

TEST_F(FailingFilesTest, AllCallsFromTheNthFail) {
  files_.FailCallsFrom(FileCall::kOpenForReplacing, 2, kPermissionDenied);
  EXPECT_NO_THROW(Replace());
  EXPECT_EQ(FailureNumber([&] { Replace(); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { Replace(); }), kPermissionDenied);
}

TEST_F(FailingFilesTest, AFailedCommitMayLeaveTheTargetHalfWritten) {
  const struct {
    FileCall kind;
    bool damaged;
    std::string left;
  } rows[] = {{FileCall::kWrite, false, "old contents"},
              {FileCall::kPrepare, false, "old contents"},
              {FileCall::kCommit, true, "new "}};
  for (const auto& row : rows) {
    files_.Reset();
    memory_.Put(a_, "old contents");
    files_.FailCall(row.kind, 1, kDiskFull, Damage::kHalfWritten);
    const auto replacement = files_.OpenForReplacing(a_);
    const auto write_all = [&] {
      replacement->Write("new text");
      replacement->Prepare();
      replacement->Commit();
    };
    EXPECT_FALSE(replacement->Damaged());
    EXPECT_EQ(FailureNumber(write_all), kDiskFull);
    EXPECT_EQ(replacement->Damaged(), row.damaged);
    EXPECT_EQ(memory_.Get(a_), row.left);
    EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kDiskFull);
  }
}

TEST_F(FailingFilesTest, AFailedReplacementStaysFailed) {
  files_.FailCall(FileCall::kWrite, 1, kDiskFull);
  const auto replacement = files_.OpenForReplacing(a_);
  EXPECT_EQ(FailureNumber([&] { replacement->Write("x"); }), kDiskFull);
  EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kDiskFull);
  EXPECT_FALSE(replacement->Damaged());
  EXPECT_EQ(memory_.Get(a_), "old contents");
}

TEST_F(FailingFilesTest, AFileCanVanishBehindTheCallersBack) {
  files_.BeforeCall([&](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kOpenForReading) memory_.Remove(call.path);
  });
  EXPECT_EQ(FailureNumber([&] { UseAll(); }), kFileNotFound);
}

}  // namespace
}  // namespace tessary
