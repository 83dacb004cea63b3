#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/file_system.h"

// Whether a difference file makes the new version of a report out of the old one.

namespace tessary {

// Why something of the new version does not come about, in the order in which it is listed.
enum class Deviation {
  kMoved,          // all is there, in another order
  kLetterCase,     // the comparison takes no notice of it
  kDuplicate,      // several elements cannot be told apart
  kBelowProperty,  // differences in a property's block are never applied
  kOther,
};

// A line that comes out otherwise than the new version has it. One of the two texts is empty where
// that side has no such line.
struct Unreproduced {
  Deviation reason;
  std::vector<std::string> place;  // the elements around it, outermost first
  std::int64_t line;               // in the new version's file; 0 where it has none
  std::string wanted;
  std::string found;
};

// Applies a difference file to the old version in memory and compares what comes out with the new
// one; sorted by reason, then by place. `diff_path` is empty where there was no difference to
// write. Raises Failure.
std::vector<Unreproduced> CheckDifference(FileSystem& files, const std::string& old_path,
                                          const std::string& new_path,
                                          const std::string& diff_path);

}  // namespace tessary
