#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tessary {

// True for a decimal number: blanks, a sign, digits with at most one "." or "," among, before or
// behind them, an exponent ("e" or "E", sign, digits) and blanks, all optional except one digit
// of the mantissa.
bool IsNumeric(std::string_view text);

// The value of a numeric text rounded to the nearest whole number, halves to even; nothing when
// the text is not numeric or the value does not fit into 32 bits.
std::optional<std::int32_t> ToLong(std::string_view text);

}  // namespace tessary
