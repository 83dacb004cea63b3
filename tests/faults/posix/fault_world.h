#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/real_files_test_base.h"

namespace tessary {

// Files on the disk in which every operation has something to do: the releases 3, 4 and 5 of two
// reports in v3, v4 and v5, the difference files between them in diff, an empty folder "new" for
// those that an operation creates, and a customer's reports in R, A.lst of release 3 and B.lst of
// release 4. RBak holds another copy of A.lst from earlier.
class FaultWorld {
 public:
  // With `in_place` every report of the customer has a second name, so that it is overwritten.
  explicit FaultWorld(bool in_place);

  // The files as they are.
  std::map<std::string, std::string> Files() const { return FilesBelow(folder_.path()); }
  std::string Get(std::string_view path) const { return GetFile(folder_ / path); }
  std::string In(std::string_view path) const { return folder_ / path; }

  // Fails the test unless every report is at the version to which the log of a run says it has been
  // brought, has a backup once it has changed, and the earlier copy is still there.
  void ExpectReportsAsLogged(const ResultLog& log, bool with_backup) const;
  // The same without a log: at some version of its chain.
  void ExpectWholeReports() const;
  // That no temporary files are left anywhere.
  void ExpectNoLeftovers() const;
  // Like ExpectWholeReports, and each at version 5.
  void ExpectFinished() const;

 private:
  // The customer's report with its first version.
  static const std::map<std::string, int>& Reports();
  void ExpectBackup(const std::string& name, int version) const;

  TemporaryFolder folder_;
  bool in_place_;
};

// A manager of real files that waits for nobody. With `ahead` it works ahead where it can, but all
// on one thread, so that every run makes the same calls.
class FaultManager {
 public:
  FaultManager(ResultLog& log, RecordingUser& user, bool ahead)
      : manager_(log, {.files = SystemFiles(),
                       .user = user,
                       .notices = &user,
                       .folder_wait = {1},
                       .workers = ahead ? &workers_ : nullptr}) {}

  BXConvertLLMgr* operator->() { return &manager_; }
  BXConvertLLMgr& operator*() { return manager_; }

 private:
  Workers workers_{0};
  BXConvertLLMgr manager_;
};

// What is run in such a world, by a manager of its own.
struct FaultOperation {
  const char* name;
  bool converts;
  bool ahead;
  std::function<bool(const FaultWorld&, BXConvertLLMgr&)> run;
};

const std::vector<FaultOperation>& FaultOperations();

void PrintTo(const FaultOperation& operation, std::ostream* out);

}  // namespace tessary
