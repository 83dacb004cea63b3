#pragma once

#include <cstdint>
#include <string>

namespace tessary {

// The run-time error number that stands for a value of errno.
std::int32_t RunTimeErrorOf(int error);

// Raises that number.
[[noreturn]] void FailWith(int error);

// The same for a file that could not be opened: tells a missing file from a missing folder.
[[noreturn]] void FailOpening(const std::string& path, int error);

// Raises 52 for a text that the system cannot take for a path: an empty one, or one with a zero
// byte, which would end it early.
void CheckPath(const std::string& path);

}  // namespace tessary
