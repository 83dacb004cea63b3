#pragma once

#include <cstdint>
#include <string_view>

namespace tessary {

// The whole number that a text such as a key or a position number states. Failure 13 when the
// text is not numeric, 6 when the value does not fit into 32 bits.
std::int32_t NumberOf(std::string_view text);

}  // namespace tessary
