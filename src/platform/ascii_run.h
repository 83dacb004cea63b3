#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Nearly every byte of a report is ASCII; these helpers handle eight such bytes at once.

namespace tessary {

inline constexpr std::size_t kWordBytes = sizeof(std::uint64_t);
inline constexpr std::uint64_t kOnesOfWord = 0x0101010101010101u;
inline constexpr std::uint64_t kHighBitsOfWord = 0x80 * kOnesOfWord;

inline std::uint64_t LoadWord(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWordBytes);
  return word;
}

// Up to eight bytes as a number that tells texts of one size apart.
inline std::uint64_t ShortWord(std::string_view text) {
  const auto byte = [&](std::size_t place) {
    return std::uint64_t{static_cast<unsigned char>(text[place])};
  };
  if (text.size() >= 4) {
    std::uint32_t first;
    std::uint32_t last;
    std::memcpy(&first, text.data(), 4);
    std::memcpy(&last, text.data() + text.size() - 4, 4);
    return std::uint64_t{first} << 32 | last;
  }
  return text.empty() ? 0 : byte(0) << 16 | byte(text.size() / 2) << 8 | byte(text.size() - 1);
}

inline bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

inline bool IsAsciiWord(std::uint64_t word) { return (word & kHighBitsOfWord) == 0; }

// Position of the first byte at or behind `pos` that is not ASCII, or the text's size.
inline std::size_t AsciiRunEnd(std::string_view text, std::size_t pos) {
  const char* const bytes = text.data();
  while (text.size() - pos >= 4 * kWordBytes &&
         IsAsciiWord(LoadWord(bytes + pos) | LoadWord(bytes + pos + kWordBytes) |
                     LoadWord(bytes + pos + 2 * kWordBytes) |
                     LoadWord(bytes + pos + 3 * kWordBytes))) {
    pos += 4 * kWordBytes;
  }
  while (text.size() - pos >= kWordBytes && IsAsciiWord(LoadWord(bytes + pos))) pos += kWordBytes;
  while (pos < text.size() && IsAscii(text[pos])) ++pos;
  return pos;
}

constexpr char LowerAscii(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

// `word`, all ASCII, with each of its capital letters made small. The high bit of every byte
// serves as the result of a comparison; no byte carries over into its neighbour.
inline std::uint64_t LowerAsciiWord(std::uint64_t word) {
  const std::uint64_t from_a = word + (0x80 - 'A') * kOnesOfWord;
  const std::uint64_t beyond_z = word + (0x7F - 'Z') * kOnesOfWord;
  return word | (((from_a ^ beyond_z) & kHighBitsOfWord) >> 2);
}

}  // namespace tessary
