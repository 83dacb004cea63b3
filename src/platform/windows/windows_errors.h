#pragma once

#include <cstdint>

#include "platform/windows/system_headers.h"

namespace tessary {

// The run-time error number that stands for a value of GetLastError.
std::int32_t RunTimeErrorOf(DWORD error);

// Raises that number.
[[noreturn]] void FailWith(DWORD error);

// Raises the number of the calling thread's last error.
[[noreturn]] void FailWithLastError();

}  // namespace tessary
