#pragma once

// The calls to the system about files that the component makes, which the linker sends here first.
// While they are watched they are counted from 1, and one of them can be made to fail or to be the
// last of the process. Flushing does nothing meanwhile: what a power cut leaves cannot be seen from
// within, and it takes long.

namespace tessary::system_calls {

void Watch();
void WatchAndFail(int n, int error);
void WatchAndDie(int n);

// Ends the watch; the number of calls made.
int Stop();

// True when the call that was made to fail would have removed a file.
bool FailedToRemove();

}  // namespace tessary::system_calls
