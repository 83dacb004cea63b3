#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace tessary {

// The reports that a folder conversion leaves out, and the files that it looked at.
class OmitList {
 public:
  // Finds the files meant by `names`: a file of exactly that name, otherwise all whose names equal
  // it without regard to case. A folder that cannot be listed has none.
  OmitList(FileSystem& files, const std::string& folder, const std::vector<std::string>& names);

  // True when the file shall be left out; remembers that it was asked about.
  bool Omit(const std::string& file_name);
  bool IsOmitted(const std::string& file_name) const { return omitted_.contains(file_name); }

  // Names for which there is no file.
  const std::vector<std::string>& unmatched() const { return unmatched_; }
  // The files asked about.
  const std::set<std::string>& seen() const { return seen_; }

 private:
  bool Match(const std::string& name, const std::vector<std::string>& listed);

  std::set<std::string> omitted_;
  std::set<std::string> seen_;
  std::vector<std::string> unmatched_;
};

}  // namespace tessary
