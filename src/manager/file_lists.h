#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "manager/convert_ll_mgr.h"

namespace tessary {

// A report or difference file that a folder conversion works with.
struct ListedFile {
  std::string name;
  std::string path;
  std::string reference;  // case-folded
  std::int32_t version;   // the report's, or the difference file's old one
  std::int32_t new_version = 0;
};

enum class ListKind { kReports, kDifferenceFiles };

// The reports, or the files with a difference file's name, of a folder in its order. A missing
// folder adds an entry and raises it. `omit` may be empty; it is asked about reports only.
std::vector<ListedFile> CreateFileArraysForConversion(const Surroundings& around,
                                                      ErrorCollection& errors, ListKind kind,
                                                      const std::string& folder,
                                                      const OmitReport& omit);

// Orders difference files so that each report finds the steps of its chain one behind the other: by
// reference, then by old version; of several steps from one version the folder's first comes first.
void SortForChains(std::vector<ListedFile>& differences);

}  // namespace tessary
