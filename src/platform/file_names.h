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

// The name of the file that shows that a run holds the folder it lies in, where the folder itself
// cannot be locked. No rule takes it for a report or a difference file.
extern const std::string_view kLockFileName;

// Takes out of the names in a folder those of the component's own files: temporary ones, the lock,
// and what a replacement that was cut short has put aside.
void DropServiceFiles(std::vector<std::string>& names);

}  // namespace tessary
