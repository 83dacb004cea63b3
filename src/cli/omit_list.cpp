#include "cli/omit_list.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

std::vector<std::string> FilesIn(FileSystem& files, const std::string& folder) {
  try {
    return files.ListFiles(folder);
  } catch (const Failure&) {
    return {};
  }
}

}  // namespace

OmitList::OmitList(FileSystem& files, const std::string& folder,
                   const std::vector<std::string>& names) {
  if (names.empty()) return;
  const std::vector<std::string> listed = FilesIn(files, folder);
  for (const std::string& name : names) {
    if (!Match(name, listed)) unmatched_.push_back(name);
  }
}

bool OmitList::Match(const std::string& name, const std::vector<std::string>& listed) {
  if (std::find(listed.begin(), listed.end(), name) != listed.end()) {
    omitted_.insert(name);
    return true;
  }
  bool matched = false;
  for (const std::string& file : listed) {
    if (!EqualsIgnoreCase(file, name)) continue;
    omitted_.insert(file);
    matched = true;
  }
  return matched;
}

bool OmitList::Omit(const std::string& file_name) {
  seen_.insert(file_name);
  return IsOmitted(file_name);
}

}  // namespace tessary
