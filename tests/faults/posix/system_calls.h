#pragma once

#include <string>
#include <vector>

// The calls to the system about files that the component makes, which the linker sends here first.
// While they are watched they are counted from 1, and one of them can be made to fail or to be the
// last of the process. Flushing does nothing meanwhile: what a power cut leaves cannot be seen from
// within, and it takes long; in which order things are flushed shows in the changes.

namespace tessary::system_calls {

void Watch();
void WatchAndFail(int n, int error);
void WatchAndDie(int n);

// Ends the watch; the number of calls made.
int Stop();

// What was changed during the watch, call by call.
struct Change {
  enum Kind { kWritten, kFlushed, kRenamed, kFolderMade } kind;
  std::string path;
  std::string new_path = {};  // of what was renamed
};
const std::vector<Change>& Changes();

// True when the call that was made to fail would have removed a file.
bool FailedToRemove();

}  // namespace tessary::system_calls
