#pragma once

#include <string>
#include <string_view>

// Between the UTF-8 inside and the UTF-16 of the system. A name on a disk may hold half a surrogate
// pair; it is written as the three bytes that the encoding scheme gives, which are no UTF-8, so
// every name survives the way in and out.

namespace tessary {

std::string Utf8FromWide(std::wstring_view text);

// Raises 52 for bytes that Utf8FromWide does not give.
std::wstring WideFromUtf8(std::string_view text);

}  // namespace tessary
