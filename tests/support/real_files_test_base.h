#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "manager/convert_ll_mgr.h"
#include "manager/result_log.h"
#include "support/manager_test_base.h"
#include "support/recording_user.h"
#include "support/temporary_folder.h"

namespace tessary {

// The lines of a file in Windows-1252 as UTF-8, each without its line end.
std::vector<std::string> LinesOf(const std::string& path);

// True when every line ends with CR LF.
bool HasWindowsLineEnds(std::string_view contents);

// A manager on real files in a temporary folder. Unexpected questions fail the test.
class RealFilesTest : public testing::Test {
 protected:
  // The path of something in the temporary folder.
  std::string In(std::string_view path) const { return folder_ / path; }
  // Creates a folder with those above it, or a file in such a folder, and gives its path.
  std::string PutFolder(std::string_view path);
  std::string Put(std::string_view path, std::string_view contents);
  std::string Get(std::string_view path) const { return GetFile(In(path)); }

  bool CreateDiffFiles(std::string_view old_folder, std::string_view new_folder) {
    return manager_.CreateDiffFiles(In(old_folder), In(new_folder), In("diff"));
  }
  bool ConvertReports(std::string_view report_folder) {
    return manager_.ConvertReports(In("diff"), In(report_folder), "");
  }
  std::vector<std::string> Entries() const { return tessary::Entries(log_.errors); }

  TemporaryFolder folder_;
  ResultLog log_;
  RecordingUser user_;
  BXConvertLLMgr manager_{log_, {SystemFiles(), user_, nullptr, &user_}};
};

}  // namespace tessary
