#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessary {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// What stands at one place of a text.
struct Utf8Character {
  char32_t code_point;  // U+FFFD when ill-formed.
  std::uint8_t length;  // In bytes; of the maximal subpart when ill-formed.
  bool well_formed;
};

// The character that begins at `pos`, which must lie inside `text`.
Utf8Character DecodeUtf8(std::string_view text, std::size_t pos);

// Appends the encoding of `code_point`, which must not be a surrogate.
void AppendUtf8(std::string& text, char32_t code_point);

}  // namespace tessary
