#include "platform/windows/wide_text.h"

#include "platform/failure.h"
#include "platform/utf8.h"

namespace tessary {

namespace {

constexpr char32_t kHighSurrogates = 0xD800;
constexpr char32_t kLowSurrogates = 0xDC00;
constexpr char32_t kFirstOfPairs = 0x10000;
constexpr char32_t kSurrogateCount = 0x400;

bool IsHighSurrogate(char32_t unit) { return unit - kHighSurrogates < kSurrogateCount; }
bool IsLowSurrogate(char32_t unit) { return unit - kLowSurrogates < kSurrogateCount; }

// The three bytes that stand for a lone surrogate.
constexpr std::size_t kLoneSize = 3;

void AppendLone(std::string& text, char32_t unit) {
  text.push_back('\xED');
  text.push_back(static_cast<char>(0x80 | (unit >> 6 & 0x3F)));
  text.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
}

// The lone surrogate at `pos`, or 0.
char32_t LoneAt(std::string_view text, std::size_t pos) {
  if (text.size() - pos < kLoneSize || text[pos] != '\xED') return 0;
  const auto second = static_cast<unsigned char>(text[pos + 1]);
  const auto third = static_cast<unsigned char>(text[pos + 2]);
  if (second < 0xA0 || second > 0xBF || third < 0x80 || third > 0xBF) return 0;
  return 0xD000u | (second & 0x3Fu) << 6 | (third & 0x3Fu);
}

void AppendWide(std::wstring& wide, char32_t code_point) {
  if (code_point < kFirstOfPairs) {
    wide.push_back(static_cast<wchar_t>(code_point));
    return;
  }
  const char32_t rest = code_point - kFirstOfPairs;
  wide.push_back(static_cast<wchar_t>(kHighSurrogates + rest / kSurrogateCount));
  wide.push_back(static_cast<wchar_t>(kLowSurrogates + rest % kSurrogateCount));
}

}  // namespace

std::string Utf8FromWide(std::wstring_view text) {
  std::string utf8;
  utf8.reserve(text.size() + text.size() / 8);
  for (std::size_t pos = 0; pos < text.size(); ++pos) {
    const char32_t unit = text[pos];
    if (IsHighSurrogate(unit) && pos + 1 < text.size() && IsLowSurrogate(text[pos + 1])) {
      const char32_t low = text[++pos];
      AppendUtf8(utf8, kFirstOfPairs + (unit - kHighSurrogates) * kSurrogateCount +
                           (low - kLowSurrogates));
    } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
      AppendLone(utf8, unit);
    } else {
      AppendUtf8(utf8, unit);
    }
  }
  return utf8;
}

std::wstring WideFromUtf8(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) {
    const Utf8Character character = DecodeUtf8(text, pos);
    if (character.well_formed) {
      AppendWide(wide, character.code_point);
      pos += character.length;
    } else if (const char32_t lone = LoneAt(text, pos)) {
      wide.push_back(static_cast<wchar_t>(lone));
      pos += kLoneSize;
    } else {
      throw Failure(kBadFileName);
    }
  }
  return wide;
}

}  // namespace tessary
