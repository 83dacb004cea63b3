#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "manager/convert_ll_mgr.h"
#include "manager/result_log.h"
#include "support/engine_fixture.h"
#include "support/failing_files.h"
#include "support/memory_files.h"
#include "support/recording_user.h"

namespace tessary {

// A file's text: `lines` in Windows-1252, each with CR LF.
std::string FileText(const std::vector<std::string>& lines);

// A report with a header and `lines` below it.
std::string ReportText(int version, std::string_view reference,
                       const std::vector<std::string>& lines);

// A small report that differs between versions in its object's height.
std::string SmallReport(int version, std::string_view reference = "Rechnung");

// How an entry of one of the manager's procedures reads in a list of entries.
std::string ManagerEntry(std::int32_t number, std::string_view procedure, std::string_view message,
                         std::int32_t kind = ErrorEntry::kFailure);

// A dictionary by its texts, in order, each with its messages behind it.
using LoggedItems = std::vector<std::pair<std::string, std::vector<std::string>>>;
LoggedItems ItemsOf(const ResultDictionary& dictionary);
std::vector<std::string> TextsOf(const ResultDictionary& dictionary);

// A manager on files in memory that can be made to fail.
class ManagerTest : public testing::Test {
 protected:
  // The path of a file in a folder below the root.
  static std::string Path(std::string_view folder, std::string_view name);
  static std::string Folder(std::string_view folder);

  // What every way out of an operation leaves behind: the pointer as before, no window.
  void ExpectTidy() const;
  std::vector<std::string> Entries() const { return tessary::Entries(log_.errors); }
  // All files by path, without those in `folder`.
  std::map<std::string, std::string> FilesOutside(std::string_view folder) const;

  MemoryFiles memory_;
  FailingFiles files_{memory_};
  ResultLog log_;
  RecordingUser user_;
  FailingLoop loop_;
  BXConvertLLMgr manager_{log_, {files_, user_, &loop_, &user_}};
};

}  // namespace tessary
