#pragma once

#include <string>
#include <vector>

// The engine and its slow second opinion (model/), side by side. What a piece of work comes to is
// told as text: its result, down to every position column, or the number of the failure that ended
// it. Lines are those of a file, without line ends.

namespace tessary {

struct BothOutcomes {
  std::string engine;
  std::string model;

  bool agree() const { return engine == model; }
};

// The tree that the lines are read as.
BothOutcomes ReadByBoth(const std::vector<std::string>& lines);

// The lines that this tree is written as.
BothOutcomes RoundTripByBoth(const std::vector<std::string>& lines);

// The difference tree, the lines it is written as, and what is left of both inputs. `difference`
// takes the engine's lines; none when it fails.
BothOutcomes CompareByBoth(const std::vector<std::string>& old_lines,
                           const std::vector<std::string>& new_lines,
                           std::vector<std::string>& difference);

// The converted tree and the lines it is written as.
BothOutcomes ConvertByBoth(const std::vector<std::string>& report,
                           const std::vector<std::string>& difference);

}  // namespace tessary
