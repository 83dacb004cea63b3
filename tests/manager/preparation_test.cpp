#include "manager/preparation.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "manager/work_ahead.h"
#include "platform/path.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;

// Hears nothing but how many differences there are.
class Counter : public StepObserver {
 public:
  explicit Counter(int& applied) : applied_(applied) {}

  void Enter(const ElementTexts&) override {}
  void Leave() override {}
  void Applied(BXStatus, const ElementTexts&, std::string_view, std::string_view) override {
    ++applied_;
  }
  void Skipped(BXStatus, const ElementTexts&, std::string_view, SkipReason) override {}
  void End(bool) override {}

 private:
  int& applied_;
};

class PreparationTest : public testing::Test {
 protected:
  PreparationTest() {
    memory_.Put(old_, SmallReport(3));
    memory_.Put(new_, SmallReport(4));
    memory_.PutFolder(Folder("diff"));
    memory_.PutFolder(Folder("Bak"));
    RecordingUser user;
    EXPECT_TRUE(BXConvertLLMgr(log_, {memory_, user}).CreateDiffFile(old_, new_, Folder("diff")));
    memory_.Put(report_, SmallReport(3));
  }

  static std::string Folder(std::string_view folder) { return JoinPath("", folder); }
  static std::string Path(std::string_view folder, std::string_view name) {
    return JoinPath(Folder(folder), name);
  }

  void Do(Job& job) {
    workers_.Post(job);
    workers_.Finish(job);
  }
  static bool HasResult(Preparation& work) { return work.Take().has_value(); }
  static std::string BytesOf(const FilePieces& pieces) {
    std::string bytes;
    for (const std::string& piece : pieces) bytes += piece;
    return bytes;
  }
  ConversionAhead Conversion() { return {files_, {report_, copy_, diff_}, nullptr}; }

  const std::string old_ = Path("alt", "r.lst");
  const std::string new_ = Path("neu", "r.lst");
  const std::string report_ = Path("R", "Kopie.lst");
  const std::string copy_ = Path("Bak", "Kopie.lst");
  const std::string diff_ = Path("diff", "3_4Rechnung");
  MemoryFiles memory_;
  FailingFiles files_{memory_};
  ResultLog log_;
  Workers workers_{0};
};

TEST_F(PreparationTest, GivesWhatTheOperationWouldWrite) {
  ComparisonAhead comparison(files_, old_, new_);
  Do(comparison);
  const auto compared = comparison.Take();
  ASSERT_TRUE(compared);
  EXPECT_EQ(BytesOf(compared->encoded), memory_.Get(diff_));

  ConversionAhead conversion = Conversion();
  Do(conversion);
  EXPECT_TRUE(conversion.IsSaved());
  EXPECT_EQ(memory_.Get(copy_), SmallReport(3));
  const auto converted = conversion.Take();
  ASSERT_TRUE(converted);
  EXPECT_EQ(files_.CountCalls(FileCall::kPrepare), 1) << "what remains to be done is little";
  EXPECT_EQ(memory_.Get(report_), SmallReport(3)) << "nothing is changed but the copy";
  converted->replacement->Commit();
  EXPECT_EQ(memory_.Get(report_), SmallReport(4));
  EXPECT_FALSE(HasResult(conversion)) << "it has been taken";
}

// It could take the room of the backup, which is made at the same time for a single report.
TEST_F(PreparationTest, WritesNoReportWhereTheDiskIsNearlyFull) {
  memory_.SetCapacity(std::size_t{64} << 20);
  ConversionAhead conversion = Conversion();
  Do(conversion);
  EXPECT_EQ(files_.CountCalls(FileCall::kOpenForReplacing), 0);
  const auto converted = conversion.Take();
  ASSERT_TRUE(converted);
  EXPECT_FALSE(converted->replacement);
  EXPECT_EQ(BytesOf(converted->encoded), SmallReport(4));
}

TEST_F(PreparationTest, VersionsWithoutADifferenceAreAResult) {
  memory_.Put(new_, SmallReport(3));
  ComparisonAhead comparison(files_, old_, new_);
  Do(comparison);
  const auto result = comparison.Take();
  ASSERT_TRUE(result);
  EXPECT_TRUE(result->IsEmpty());
}

TEST_F(PreparationTest, IsGoodOnlyForFilesThatHaveNotChanged) {
  for (const std::string& path : {old_, new_}) {
    ComparisonAhead comparison(files_, old_, new_);
    Do(comparison);
    const std::string contents = memory_.Get(path);
    memory_.Put(path, contents + " ");
    EXPECT_FALSE(HasResult(comparison)) << path;
    memory_.Put(path, contents);
  }
  for (const std::string& path : {report_, diff_}) {
    ConversionAhead conversion = Conversion();
    Do(conversion);
    const std::string contents = memory_.Get(path);
    memory_.Put(path, contents + " ");
    EXPECT_FALSE(HasResult(conversion)) << path;
    EXPECT_FALSE(conversion.IsSaved()) << path;
    memory_.Remove(path);
    EXPECT_FALSE(HasResult(conversion)) << path;
    memory_.Put(path, contents);
  }
  ConversionAhead without_copy = Conversion();
  Do(without_copy);
  memory_.Put(copy_, "moved aside for another one");
  EXPECT_FALSE(without_copy.IsSaved());
}

TEST_F(PreparationTest, TooLargeFilesAreLeftToTheirTurn) {
  const std::size_t size = std::max(memory_.Get(report_).size(), memory_.Get(diff_).size());
  for (const std::size_t largest : {size - 1, size}) {
    ConversionAhead conversion(files_, {report_, copy_, diff_, largest}, nullptr);
    Do(conversion);
    EXPECT_TRUE(conversion.IsSaved());
    EXPECT_EQ(HasResult(conversion), largest == size);
  }
  memory_.Put(old_, SmallReport(3) + std::string(kLargestAhead, ' '));
  ComparisonAhead comparison(files_, old_, new_);
  Do(comparison);
  EXPECT_FALSE(HasResult(comparison));
}

// Even where the change comes while the work is being done.
TEST_F(PreparationTest, AFileThatChangesWhileItIsReadHasChanged) {
  ConversionAhead conversion = Conversion();
  files_.BeforeCall([&](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kRead && call.path == report_) memory_.Put(report_, SmallReport(5));
  });
  Do(conversion);
  EXPECT_FALSE(HasResult(conversion));
  EXPECT_FALSE(conversion.IsSaved());
}

TEST_F(PreparationTest, WhatNeedsAttentionHasNoResult) {
  const std::string plain = Path("alt", "Text.lst");
  const std::string open = Path("alt", "offen.lst");
  const std::string empty = Path("alt", "leer.lst");
  memory_.Put(plain, "Text\r\n");
  memory_.Put(open, SmallReport(3) + "{\r\n{\r\n");
  memory_.Put(empty, "");
  for (const std::string& path : {plain, open, empty, Path("alt", "fehlt.lst")}) {
    ComparisonAhead as_old(files_, path, new_);
    ComparisonAhead as_new(files_, old_, path);
    Do(as_old);
    Do(as_new);
    EXPECT_FALSE(HasResult(as_old)) << path;
    EXPECT_FALSE(HasResult(as_new)) << path;
  }
  for (const std::string& path : {open, empty, Path("diff", "fehlt")}) {
    ConversionAhead with_difference(files_, {report_, copy_, path}, nullptr);
    Do(with_difference);
    EXPECT_FALSE(HasResult(with_difference)) << path;
  }
  for (const std::string& path : {open, empty}) {
    ConversionAhead of_report(files_, {path, Path("Bak", FileNameOf(path)), diff_}, nullptr);
    Do(of_report);
    EXPECT_FALSE(HasResult(of_report)) << path;
    EXPECT_TRUE(of_report.IsSaved()) << path;
  }
  EXPECT_TRUE(log_.errors.objErrors->empty());
}

TEST_F(PreparationTest, AReportThatCannotBeSavedIsNotConverted) {
  memory_.Put(copy_, "an older copy");
  ConversionAhead beside_another = Conversion();
  Do(beside_another);
  EXPECT_FALSE(beside_another.IsSaved());
  EXPECT_FALSE(HasResult(beside_another));
  EXPECT_EQ(memory_.Get(copy_), "an older copy");

  memory_.Remove(copy_);
  files_.Reset();
  files_.FailCall(FileCall::kCopy, 1, kDiskFull);
  ConversionAhead without_room = Conversion();
  Do(without_room);
  EXPECT_FALSE(without_room.IsSaved());
  EXPECT_FALSE(HasResult(without_room));
}

TEST_F(PreparationTest, SavesAlsoWhatIsNotConverted) {
  ConversionAhead only_saved(files_, {report_, copy_, {}}, nullptr);
  Do(only_saved);
  EXPECT_TRUE(only_saved.IsSaved());
  EXPECT_FALSE(HasResult(only_saved));
}

TEST_F(PreparationTest, NoFailureComesThrough) {
  int n = 0;
  do {
    files_.Reset();
    if (memory_.FileExists(copy_)) memory_.Remove(copy_);
    files_.FailAnyCall(++n, kDeviceError);
    ConversionAhead conversion = Conversion();
    Do(conversion);
    EXPECT_EQ(HasResult(conversion), files_.CountFailures() == 0);
  } while (files_.CountFailures() > 0);
  EXPECT_GT(n, 5);
  EXPECT_TRUE(log_.errors.objErrors->empty());
}

TEST_F(PreparationTest, TheReportMayBeOpenedBySomebodyElse) {
  const PostedWork<ReplacementAhead> replacement(
      workers_, std::make_unique<ReplacementAhead>(files_, report_));
  ConversionAhead conversion(files_, {report_, {}, diff_, kLargestAhead, &replacement}, nullptr);
  Do(conversion);
  EXPECT_EQ(files_.CountCalls(FileCall::kOpenForReplacing), 1);
  const auto converted = conversion.Take();
  ASSERT_TRUE(converted);
  ASSERT_TRUE(converted->replacement);
  converted->replacement->Commit();
  EXPECT_EQ(memory_.Get(report_), SmallReport(4));
}

TEST_F(PreparationTest, WithoutAReplacementThereAreOnlyBytes) {
  const std::string missing = Path("R", "fehlt.lst");
  files_.FailCall(FileCall::kOpenForReplacing, 1, kPermissionDenied);
  for (const std::string& path : {report_, missing}) {
    const PostedWork<ReplacementAhead> replacement(
        workers_, std::make_unique<ReplacementAhead>(files_, path));
    ConversionAhead conversion(files_, {report_, {}, diff_, kLargestAhead, &replacement}, nullptr);
    Do(conversion);
    const auto converted = conversion.Take();
    ASSERT_TRUE(converted);
    EXPECT_FALSE(converted->replacement);
    EXPECT_EQ(BytesOf(converted->encoded), SmallReport(4));
  }
  memory_.SetCapacity(std::size_t{64} << 20);
  ReplacementAhead without_room(files_, report_);
  Do(without_room);
  EXPECT_FALSE(without_room.Take());
}

// Nobody shall wait for a long conversion before being asked.
TEST_F(PreparationTest, OnlyASmallReportIsConvertedBeforeItIsKnownToBeSaved) {
  for (const bool is_large : {false, true}) {
    memory_.Put(report_, SmallReport(3) + (is_large ? std::string(kLargestAhead, '\n') : ""));
    files_.Reset();
    files_.FailCallsFrom(FileCall::kCopy, 1, kDiskFull);
    RecordingUser user;
    user.AnswerAlways(Answer::kNo);
    BXConvertLLMgr manager(log_, {.files = files_, .user = user, .workers = &workers_});
    EXPECT_FALSE(manager.ConvertReport(report_, diff_, Folder("Bak")));
    const bool has_read_differences =
        std::any_of(files_.calls().begin(), files_.calls().end(),
                    [&](const FailingFiles::Call& call) { return call.path == diff_; });
    EXPECT_EQ(has_read_differences, !is_large);
    EXPECT_TRUE(memory_.Get(report_).starts_with(SmallReport(3)));
  }
}

TEST_F(PreparationTest, ItsObserverHearsOfTheDifferences) {
  int applied = 0;
  ConversionAhead conversion(files_, {report_, {}, diff_}, std::make_unique<Counter>(applied));
  Do(conversion);
  EXPECT_EQ(applied, 2);
  EXPECT_TRUE(conversion.TakeObserver());
  EXPECT_FALSE(conversion.TakeObserver());
}

class Numbered : public Job {
 public:
  Numbered(std::size_t item, std::vector<std::size_t>& done) : item_(item), done_(done) {}
  std::size_t item() const { return item_; }

 private:
  void Run() noexcept override { done_.push_back(item_); }

  std::size_t item_;
  std::vector<std::size_t>& done_;
};

TEST(WorkAheadTest, GivesEachItemItsOwnWorkAndGivesUpWhatIsLeftOut) {
  Workers workers(0);
  std::vector<std::size_t> begun;
  std::vector<std::size_t> done;
  WorkAhead<Numbered> ahead(&workers, 7, [&](std::size_t item) {
    begun.push_back(item);
    return item == 4 ? nullptr : std::make_unique<Numbered>(item, done);
  });
  for (const std::size_t item : {0u, 1u, 3u, 4u, 5u}) {
    const PostedWork<Numbered> work = ahead.Take(item);
    if (item == 4) {
      EXPECT_FALSE(work.Finished());
      continue;
    }
    ASSERT_TRUE(work.Finished());
    EXPECT_EQ(work.Finished()->item(), item);
  }
  EXPECT_FALSE(ahead.Take(7).Finished());
  EXPECT_THAT(begun, ElementsAre(0, 1, 2, 3, 4, 5, 6));
  EXPECT_THAT(done, ElementsAre(0, 1, 3, 5));
}

TEST(WorkAheadTest, EveryThreadHasWorkAhead) {
  Workers workers(2);
  std::vector<std::size_t> begun;
  std::vector<std::size_t> done[20];
  WorkAhead<Numbered> ahead(&workers, 20, [&](std::size_t item) {
    begun.push_back(item);
    return std::make_unique<Numbered>(item, done[item]);
  });
  EXPECT_EQ(begun.size(), 5u);
  for (std::size_t item = 0; item < 10; ++item) {
    const PostedWork<Numbered> work = ahead.Take(item);
    EXPECT_EQ(work.Finished()->item(), item);
    EXPECT_EQ(begun.size(), item + 5);
  }
}

TEST(WorkAheadTest, WithoutWorkersThereIsNone) {
  WorkAhead<Numbered> ahead(nullptr, 3, [](std::size_t) {
    ADD_FAILURE();
    return nullptr;
  });
  EXPECT_FALSE(ahead.Take(0).Finished());
}

}  // namespace
}  // namespace tessary
