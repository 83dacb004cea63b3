#pragma once

#include <string>
#include <string_view>

#include "support/temporary_folder.h"

namespace tessary::win32 {

// Folders with which an operation succeeds: two releases of a report, the difference between them,
// and customers' copies of the older one.
class ReportFolders {
 public:
  explicit ReportFolders(int reports);

  std::string old_release() const { return folder_ / "alt"; }
  std::string new_release() const { return folder_ / "neu"; }
  std::string differences() const { return folder_ / "diff"; }
  std::string difference_file() const { return folder_ / "diff/3_4Rechnung"; }
  std::string reports() const { return folder_ / "Berichte"; }
  std::string report(int number) const;
  std::string operator/(std::string_view name) const { return folder_ / name; }

 private:
  TemporaryFolder folder_;
};

}  // namespace tessary::win32
