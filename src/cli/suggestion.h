#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace tessary {

// How many single steps (insert, delete or replace a character, exchange two neighbours) lead from
// one text to the other; ASCII capitals count as small letters.
std::size_t EditDistance(std::string_view a, std::string_view b);

// The known word that was probably meant by `typed`: the one with the smallest distance, the first
// of several, if it is small for the word's length or `typed` begins it; nothing otherwise.
std::optional<std::string_view> SuggestWord(std::string_view typed,
                                            std::span<const std::string_view> known);

}  // namespace tessary
