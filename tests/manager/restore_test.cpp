#include "manager/restore.h"

#include <gmock/gmock.h>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RestoreTest : public testing::Test {
 protected:
  RestoreTest() {
    files_.Put("/bak/a.lst", SmallReport(3));
    files_.Put("/bak/b.lst", SmallReport(3));
    files_.Put("/bak/Notizen", "");
    files_.Put("/rep/a.lst", SmallReport(4));
    files_.Put("/rep/b.lst", SmallReport(3));
  }
  Restoration Restore(const std::vector<std::string>& names = {}, bool oldest = false) {
    return RestoreReports(files_, "/bak", "/rep", names, oldest);
  }

  MemoryFiles files_;
};

TEST_F(RestoreTest, AllReportsComeBackAndTheirPresentStateIsKept) {
  const Restoration result = Restore();
  ASSERT_EQ(result.reports.size(), 2u);
  EXPECT_EQ(result.reports[0].outcome, RestoreOutcome::kRestored);
  EXPECT_EQ(result.reports[0].kept, "~a.lst.~ersetzt1");
  EXPECT_EQ(result.reports[1].outcome, RestoreOutcome::kUnchanged);
  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));
  EXPECT_EQ(files_.Get("/bak/a.lst"), SmallReport(3));
  EXPECT_EQ(files_.Get("/bak/~a.lst.~ersetzt1"), SmallReport(4));
}

TEST_F(RestoreTest, WhatWasReplacedCanBeBroughtBackAndIsNotTheOriginal) {
  Restore({"a.lst"});
  EXPECT_EQ(Restore({"a.lst"}, true).reports[0].copy, "a.lst");
  EXPECT_TRUE(Restore({"~a.lst.~ersetzt1"}).Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(4));
}

TEST_F(RestoreTest, DoingItAgainChangesNothing) {
  Restore();
  const auto before = files_.files();
  EXPECT_EQ(Restore().reports[0].outcome, RestoreOutcome::kUnchanged);
  EXPECT_EQ(files_.files(), before);
}

TEST_F(RestoreTest, AStateThatIsThereAlreadyIsNotKeptTwice) {
  files_.Put("/bak/~a.lst.~1", SmallReport(2));
  files_.Put("/bak/~a.lst.~2", SmallReport(4));
  EXPECT_EQ(Restore({"a.lst"}).reports[0].kept, "");
  files_.Put("/rep/a.lst", SmallReport(5));
  EXPECT_EQ(Restore({"a.lst"}).reports[0].kept, "~a.lst.~ersetzt1");
  EXPECT_EQ(files_.Get("/bak/~a.lst.~1"), SmallReport(2)) << "the oldest copy stays the oldest";
}

TEST_F(RestoreTest, OlderCopiesCanBeChosen) {
  files_.Put("/bak/~a.lst.~1", SmallReport(1));
  files_.Put("/bak/~a.lst.~2", SmallReport(2));
  EXPECT_TRUE(Restore({"~a.lst.~2"}).Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(2));
  const Restoration result = Restore({}, true);
  EXPECT_EQ(result.reports[0].copy, "~a.lst.~1");
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(1));
  EXPECT_EQ(result.reports[1].copy, "b.lst") << "there is no older one";
}

TEST_F(RestoreTest, NamesIgnoreLetterCaseWhereNoneIsExact) {
  EXPECT_TRUE(Restore({"A.LST"}).Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));
}

TEST_F(RestoreTest, AMissingNameIsToldAndTheOthersComeBack) {
  const Restoration result = Restore({"x.lst", "../rep/b.lst", "a.lst"});
  EXPECT_THAT(result.problems,
              ElementsAre("Im Sicherungsverzeichnis /bak gibt es keine Sicherung von x.lst.",
                          "Im Sicherungsverzeichnis /bak gibt es keine Sicherung von "
                          "../rep/b.lst."));
  EXPECT_FALSE(result.Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));
}

TEST_F(RestoreTest, AReadOnlyReportIsLeftAlone) {
  files_.SetReadOnly("/rep/a.lst");
  const auto before = files_.files();
  const Restoration result = Restore();
  EXPECT_EQ(result.reports[0].outcome, RestoreOutcome::kFailed);
  EXPECT_EQ(result.reports[0].reason, "Zugriff verweigert");
  EXPECT_FALSE(result.Succeeded());
  EXPECT_EQ(files_.files(), before);
}

TEST_F(RestoreTest, ADeletedReportComesBack) {
  files_.Remove("/rep/a.lst");
  EXPECT_TRUE(Restore({"a.lst"}).Succeeded());
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));
}

TEST_F(RestoreTest, NothingIsReplacedWhenItsStateCannotBeKept) {
  FailingFiles failing(files_);
  failing.FailCall(FileCall::kCopy, 1, kDiskFull);
  const auto before = files_.files();
  const Restoration result = RestoreReports(failing, "/bak", "/rep", {"a.lst"}, false);
  EXPECT_EQ(result.reports[0].outcome, RestoreOutcome::kFailed);
  EXPECT_EQ(files_.files(), before);
}

TEST_F(RestoreTest, AFolderInUseIsWaitedForAndThenLeftAlone) {
  const auto before = files_.files();
  const auto other_run = files_.TryLockFolder("/rep");
  const Restoration result = RestoreReports(files_, "/bak", "/rep", {}, false, {1});
  EXPECT_FALSE(result.Succeeded());
  EXPECT_THAT(result.problems, ElementsAre("Im Ordner /rep werden gerade Berichte von einem "
                                           "anderen Vorgang konvertiert."));
  EXPECT_THAT(result.reports, IsEmpty());
  EXPECT_EQ(files_.files(), before);
}

TEST_F(RestoreTest, TheFolderIsHeldMeanwhileAndThenFree) {
  FailingFiles failing(files_);
  int held = 0;
  failing.BeforeCall([&](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kCopy && !files_.TryLockFolder("/rep")) ++held;
  });
  EXPECT_TRUE(RestoreReports(failing, "/bak", "/rep", {"a.lst"}, false).Succeeded());
  EXPECT_EQ(held, 2);
  EXPECT_NE(files_.TryLockFolder("/rep"), nullptr);
}

TEST_F(RestoreTest, LeftoversOfADeadRunAreRemoved) {
  files_.Put("/rep/" + TemporaryNameFor("a.lst", 0), "half");
  files_.Put("/bak/" + TemporaryNameFor("a.lst", 0), "half");
  const std::size_t leftovers = 2;
  const std::size_t before = files_.files().size();
  EXPECT_TRUE(Restore({"b.lst"}).Succeeded());
  EXPECT_EQ(files_.files().size(), before - leftovers);
}

TEST_F(RestoreTest, WhatAnotherRunKeepsMeanwhileIsNotReplaced) {
  FailingFiles failing(files_);
  failing.BeforeCall([&](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kCopy && failing.CountCalls(FileCall::kCopy) == 1)
      files_.Put("/bak/~a.lst.~ersetzt1", "other");
  });
  const Restoration result = RestoreReports(failing, "/bak", "/rep", {"a.lst"}, false);
  EXPECT_EQ(result.reports[0].kept, "~a.lst.~ersetzt2");
  EXPECT_EQ(files_.Get("/bak/~a.lst.~ersetzt1"), "other");
  EXPECT_EQ(files_.Get("/bak/~a.lst.~ersetzt2"), SmallReport(4));
}

TEST_F(RestoreTest, MissingFoldersAndEmptyOnes) {
  EXPECT_THAT(RestoreReports(files_, "/none", "/rep", {}, false).problems,
              ElementsAre("Der Ordner /none existiert nicht."));
  files_.PutFolder("/leer");
  EXPECT_THAT(RestoreReports(files_, "/leer", "/rep", {}, false).problems,
              ElementsAre("Im Sicherungsverzeichnis /leer gibt es keine Sicherungen."));
}

}  // namespace
}  // namespace tessary
