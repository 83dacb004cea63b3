#pragma once

#include <string>
#include <vector>

namespace tessary {

// What to do about reports that failed: numbered steps, each a sentence and, where it ends with a
// colon, the command, path or name that it is about.
struct RepairStep {
  std::string text;
  std::string value;
};

struct RepairGuide {
  std::string introduction;
  std::vector<RepairStep> steps;
};

}  // namespace tessary
