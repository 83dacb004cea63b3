#include "platform/utf8.h"

#include "platform/ascii_run.h"
#include "platform/text.h"

namespace tessary {

namespace {

// What may follow a lead byte: the number of trailing bytes and the bounds of the first of them,
// which exclude overlong forms, surrogates and values beyond U+10FFFF.
struct LeadByte {
  unsigned trailing;
  unsigned char low;
  unsigned char high;
};

LeadByte ClassifyLead(unsigned char lead) {
  if (lead < 0xC2 || lead > 0xF4) return {0, 0, 0};
  if (lead < 0xE0) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead < 0xF0) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {3, 0x80, 0xBF};
}

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char32_t Utf16Unit(std::string_view bytes, std::size_t pos, bool big_endian) {
  const auto first = static_cast<unsigned char>(bytes[pos]);
  const auto second = static_cast<unsigned char>(bytes[pos + 1]);
  return big_endian ? static_cast<char32_t>(first << 8 | second)
                    : static_cast<char32_t>(second << 8 | first);
}

}  // namespace

Utf8Character DecodeUtf8(std::string_view text, std::size_t pos) {
  const auto lead = static_cast<unsigned char>(text[pos]);
  if (lead < 0x80) return {lead, 1, true};
  const LeadByte row = ClassifyLead(lead);
  if (row.trailing == 0) return {kReplacementCharacter, 1, false};

  char32_t code_point = lead & (0x3Fu >> row.trailing);
  unsigned char low = row.low;
  unsigned char high = row.high;
  for (std::uint8_t i = 1; i <= row.trailing; ++i) {
    if (pos + i >= text.size()) return {kReplacementCharacter, i, false};
    const auto byte = static_cast<unsigned char>(text[pos + i]);
    if (byte < low || byte > high) return {kReplacementCharacter, i, false};
    code_point = code_point << 6 | (byte & 0x3Fu);
    low = 0x80;
    high = 0xBF;
  }
  return {code_point, static_cast<std::uint8_t>(row.trailing + 1), true};
}

void AppendUtf8(std::string& text, char32_t code_point) {
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (code_point < 0x80) {
    append(code_point);
    return;
  }
  if (code_point < 0x800) {
    append(0xC0 | code_point >> 6);
  } else {
    if (code_point < 0x10000) {
      append(0xE0 | code_point >> 12);
    } else {
      append(0xF0 | code_point >> 18);
      append(0x80 | (code_point >> 12 & 0x3F));
    }
    append(0x80 | (code_point >> 6 & 0x3F));
  }
  append(0x80 | (code_point & 0x3F));
}

std::string ToValidUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t end = AsciiRunEnd(text, pos);
    result.append(text, pos, end - pos);
    if (end == text.size()) break;
    const Utf8Character character = DecodeUtf8(text, end);
    AppendUtf8(result, character.code_point);
    pos = end + character.length;
  }
  return result;
}

std::string DecodeUtf16(std::string_view bytes, bool big_endian) {
  std::string result;
  result.reserve(bytes.size() / 2);
  std::size_t pos = 0;
  while (bytes.size() - pos >= 2) {
    char32_t unit = Utf16Unit(bytes, pos, big_endian);
    pos += 2;
    if (IsHighSurrogate(unit) && bytes.size() - pos >= 2) {
      const char32_t next = Utf16Unit(bytes, pos, big_endian);
      if (IsLowSurrogate(next)) {
        unit = 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
        pos += 2;
      }
    }
    const bool unpaired = IsHighSurrogate(unit) || IsLowSurrogate(unit);
    AppendUtf8(result, unpaired ? kReplacementCharacter : unit);
  }
  if (pos < bytes.size()) AppendUtf8(result, kReplacementCharacter);
  return result;
}

}  // namespace tessary
