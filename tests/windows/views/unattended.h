#pragma once

namespace tessary::win32 {

// What a process does whose windows nobody can see: it converts with and without success and is
// asked a question. Returns 0 when nothing was shown and the question counted as No; otherwise a
// number that says what was wrong.
int RunUnattended();

}  // namespace tessary::win32
