#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "manager/difference_check.h"
#include "ui/console/output.h"

namespace tessary {

// A difference that has been checked: what it does not give of the new version.
struct CheckedDifference {
  std::string old_path;
  std::string new_path;
  std::string diff_path;  // empty where the versions do not differ
  std::vector<Unreproduced> places;
  std::string failure;  // why the check says nothing about the file; empty when it does
};

// Whether it has been checked and gives all of the new version.
bool IsReproduced(const CheckedDifference& checked);
bool AllReproduced(const std::vector<CheckedDifference>& differences);

// The reason in German, and as a word for programs.
std::string_view DeviationText(Deviation reason);
std::string_view DeviationId(Deviation reason);

// The elements around something, outermost first.
std::string PlaceText(const std::vector<std::string>& place);
// "Rechnung.lst (3_4Rechnung): 2 Stellen", or that nothing is known.
std::string CheckHeading(const CheckedDifference& checked);
// What the new version has, with the number of its line; what there is too much of.
std::string LineText(const Unreproduced& place);
// What comes out instead; empty where nothing does, or the same elsewhere.
std::string FoundText(const Unreproduced& place);

void PrintDifferences(const std::vector<CheckedDifference>& differences, Output& output);

}  // namespace tessary
