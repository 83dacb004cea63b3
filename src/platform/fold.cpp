// Case folding by a table of ranges. ASCII is handled eight bytes at a time; letters that take two
// bytes (Latin, Greek, Cyrillic) have a direct table that the compiler builds from the ranges; the
// few others are looked up by bisection.

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "platform/ascii_run.h"
#include "platform/text.h"
#include "platform/utf8.h"

namespace tessary {

namespace {

// Every step-th character from `first` to `last` folds to the one `delta` further on.
struct FoldRange {
  char32_t first;
  char32_t last;
  std::uint8_t step;
  std::int32_t delta;
};

constexpr FoldRange kFoldRanges[] = {
#include "platform/fold_table.inc"
};

constexpr char32_t kTwoByteFirst = 0x80;
constexpr char32_t kTwoByteEnd = 0x800;

constexpr char32_t Shifted(char32_t code_point, std::int32_t delta) {
  return static_cast<char32_t>(static_cast<std::int32_t>(code_point) + delta);
}

constexpr auto BuildTwoByteFolds() {
  std::array<char16_t, kTwoByteEnd - kTwoByteFirst> folds{};
  for (char32_t c = kTwoByteFirst; c < kTwoByteEnd; ++c)
    folds[c - kTwoByteFirst] = static_cast<char16_t>(c);
  for (const FoldRange& range : kFoldRanges) {
    for (char32_t c = range.first; c <= range.last && c < kTwoByteEnd; c += range.step)
      folds[c - kTwoByteFirst] = static_cast<char16_t>(Shifted(c, range.delta));
  }
  return folds;
}

constexpr auto kTwoByteFolds = BuildTwoByteFolds();

char32_t FoldByRanges(char32_t code_point) {
  const auto range =
      std::lower_bound(std::begin(kFoldRanges), std::end(kFoldRanges), code_point,
                       [](const FoldRange& candidate, char32_t c) { return candidate.last < c; });
  if (range == std::end(kFoldRanges) || code_point < range->first) return code_point;
  if ((code_point - range->first) % range->step != 0) return code_point;
  return Shifted(code_point, range->delta);
}

// `code_point` is beyond ASCII.
char32_t FoldCodePoint(char32_t code_point) {
  if (code_point < kTwoByteEnd) return kTwoByteFolds[code_point - kTwoByteFirst];
  return FoldByRanges(code_point);
}

// Stray bytes get values of their own behind all characters.
constexpr char32_t kStrayByteBase = 0x110000;

struct FoldedCharacter {
  char32_t value;
  std::uint8_t length;  // In bytes, in the unfolded text.
};

FoldedCharacter FoldAt(std::string_view text, std::size_t pos) {
  if (IsAscii(text[pos])) return {static_cast<unsigned char>(LowerAscii(text[pos])), 1};
  const Utf8Character character = DecodeUtf8(text, pos);
  if (character.well_formed) return {FoldCodePoint(character.code_point), character.length};
  return {kStrayByteBase + static_cast<unsigned char>(text[pos]), 1};
}

void LowerAsciiInPlace(char* bytes, std::size_t size) {
  std::size_t pos = 0;
  for (; size - pos >= kWordBytes; pos += kWordBytes) {
    const std::uint64_t word = LowerAsciiWord(LoadWord(bytes + pos));
    std::memcpy(bytes + pos, &word, kWordBytes);
  }
  for (; pos < size; ++pos) bytes[pos] = LowerAscii(bytes[pos]);
}

// Number of bytes at the beginning of both texts that are ASCII and equal without regard to case,
// in whole words.
std::size_t EqualAsciiWords(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  std::size_t pos = 0;
  for (; size - pos >= kWordBytes; pos += kWordBytes) {
    const std::uint64_t word_a = LoadWord(a.data() + pos);
    const std::uint64_t word_b = LoadWord(b.data() + pos);
    if (!IsAsciiWord(word_a | word_b)) break;
    if (LowerAsciiWord(word_a) != LowerAsciiWord(word_b)) break;
  }
  return pos;
}

// True when the characters of `text` begin with those of `part`.
bool BeginsWith(std::string_view text, std::string_view part) {
  std::size_t pos = 0;
  for (const char wanted : part) {
    if (pos >= text.size()) return false;
    const FoldedCharacter found = FoldAt(text, pos);
    if (found.value != static_cast<unsigned char>(LowerAscii(wanted))) return false;
    pos += found.length;
  }
  return true;
}

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t end = AsciiRunEnd(text, pos);
    const std::size_t copied = result.size();
    result.append(text, pos, end - pos);
    LowerAsciiInPlace(result.data() + copied, end - pos);
    if (end == text.size()) break;
    const FoldedCharacter folded = FoldAt(text, end);
    if (folded.value < kStrayByteBase) {
      AppendUtf8(result, folded.value);
    } else {
      result.push_back(text[end]);
    }
    pos = end + folded.length;
  }
  return result;
}

int CompareIgnoreCase(std::string_view a, std::string_view b) {
  while (true) {
    const std::size_t equal = EqualAsciiWords(a, b);
    a.remove_prefix(equal);
    b.remove_prefix(equal);
    for (std::size_t i = 0; i < kWordBytes; ++i) {
      if (a.empty() || b.empty()) return static_cast<int>(b.empty()) - static_cast<int>(a.empty());
      const FoldedCharacter folded_a = FoldAt(a, 0);
      const FoldedCharacter folded_b = FoldAt(b, 0);
      if (folded_a.value != folded_b.value) return folded_a.value < folded_b.value ? -1 : 1;
      a.remove_prefix(folded_a.length);
      b.remove_prefix(folded_b.length);
    }
  }
}

std::string_view::size_type FindIgnoreCase(std::string_view text, std::string_view part) {
  if (part.empty()) return 0;
  for (std::size_t pos = 0; pos < text.size(); pos += FoldAt(text, pos).length) {
    if (BeginsWith(text.substr(pos), part)) return pos;
  }
  return std::string_view::npos;
}

}  // namespace tessary
