// Windows-1252 to UTF-8 and back. Only the bytes 80 to 9F differ from the code points of the same
// number.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/ascii_run.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "platform/utf8.h"

namespace tessary {

namespace {

constexpr unsigned char kFirstSpecial = 0x80;
constexpr std::array<char16_t, 32> kSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t CodePointOf(unsigned char byte) {
  const auto special = static_cast<std::size_t>(byte) - kFirstSpecial;
  return byte >= kFirstSpecial && special < kSpecials.size() ? kSpecials[special] : byte;
}

[[noreturn]] void FailUnknown(std::string_view text, std::size_t pos, Utf8Character character) {
  char number[16];
  if (!character.well_formed) {
    std::snprintf(number, sizeof number, "%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(text[pos])));
    throw Failure(kInvalidCall, std::string("Der Text enthält das Byte ") + number +
                                    ", das zu keinem Zeichen gehört.");
  }
  std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(character.code_point));
  std::string description = "Das Zeichen ";
  constexpr char32_t kFirstPrintable = 0xA0;
  if (character.code_point >= kFirstPrintable)
    description.append("\"").append(text, pos, character.length).append("\" ");
  description.append("(").append(number).append(") fehlt in der Codepage Windows-1252.");
  throw Failure(kInvalidCall, std::move(description));
}

char ByteOf(std::string_view text, std::size_t pos, Utf8Character character) {
  if (character.well_formed) {
    if (character.code_point >= 0xA0 && character.code_point <= 0xFF)
      return static_cast<char>(character.code_point);
    const auto special = std::find(kSpecials.begin(), kSpecials.end(), character.code_point);
    if (special != kSpecials.end())
      return static_cast<char>(kFirstSpecial + (special - kSpecials.begin()));
  }
  FailUnknown(text, pos, character);
}

}  // namespace

std::string DecodeWindows1252(std::string bytes) {
  if (AsciiRunEnd(bytes, 0) == bytes.size()) return bytes;
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 16);
  for (std::size_t pos = 0; pos < bytes.size();) {
    const std::size_t end = AsciiRunEnd(bytes, pos);
    text.append(bytes, pos, end - pos);
    if (end == bytes.size()) break;
    AppendUtf8(text, CodePointOf(static_cast<unsigned char>(bytes[end])));
    pos = end + 1;
  }
  return text;
}

// No character becomes longer, so the bytes fit where the text was.
std::string EncodeWindows1252(std::string text) {
  std::size_t end = AsciiRunEnd(text, 0);  // of the bytes
  for (std::size_t pos = end; pos < text.size();) {
    const Utf8Character character = DecodeUtf8(text, pos);
    text[end++] = ByteOf(text, pos, character);
    pos += character.length;
    const std::size_t run = AsciiRunEnd(text, pos) - pos;
    std::memmove(text.data() + end, text.data() + pos, run);
    end += run;
    pos += run;
  }
  text.resize(end);
  return text;
}

}  // namespace tessary
