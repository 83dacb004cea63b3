#pragma once

#include <string>
#include <string_view>
#include <vector>

// Rules about names that all file systems share.

namespace tessary {

// Orders by name without regard to case, ties by bytes.
void SortFileNames(std::vector<std::string>& names);

// The name of the temporary file that takes the new contents of the file `name`. Its form keeps it
// from being taken for a report or a difference file. `attempt` gives other names for the same
// file.
std::string TemporaryNameFor(std::string_view name, unsigned attempt);

// True for every name that TemporaryNameFor can give.
bool IsTemporaryName(std::string_view name);

}  // namespace tessary
