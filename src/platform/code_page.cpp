// Windows-1252 to UTF-8 and back. Only the bytes 80 to 9F differ from the code points of the same
// number.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/ascii_run.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "platform/utf8.h"

namespace tessary {

namespace {

constexpr std::size_t kFirstSpecial = 0x80;
constexpr std::array<char16_t, 32> kSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// A character beyond ASCII as UTF-8.
struct EncodedCharacter {
  std::array<char, 3> bytes{};
  std::uint8_t length = 0;
};

constexpr EncodedCharacter EncodedOf(char16_t code_point) {
  const auto lead = [&](int mark, int shift) {
    return static_cast<char>(mark | code_point >> shift);
  };
  const auto trail = [&](int shift) {
    return static_cast<char>(0x80 | (code_point >> shift & 0x3F));
  };
  if (code_point < 0x800) return {{lead(0xC0, 6), trail(0)}, 2};
  return {{lead(0xE0, 12), trail(6), trail(0)}, 3};
}

constexpr auto kEncoded = [] {
  std::array<EncodedCharacter, 128> encoded{};
  for (std::size_t n = 0; n < encoded.size(); ++n) {
    encoded[n] =
        EncodedOf(n < kSpecials.size() ? kSpecials[n] : static_cast<char16_t>(kFirstSpecial + n));
  }
  return encoded;
}();

const EncodedCharacter& EncodedByte(char byte) {
  return kEncoded[static_cast<unsigned char>(byte) - kFirstSpecial];
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

// Characters become longer, so a gap is kept between the text and the bytes still to be decoded.
std::string DecodeWindows1252(std::string bytes) {
  constexpr std::size_t kLeastGap = 256;
  std::size_t end = AsciiRunEnd(bytes, 0);  // of the text
  for (std::size_t pos = end; pos < bytes.size();) {
    if (pos - end < EncodedCharacter().bytes.size()) {
      const std::size_t gap = std::max((bytes.size() - pos) / 16, kLeastGap);
      bytes.insert(pos, gap, '\0');
      pos += gap;
    }
    const EncodedCharacter& character = EncodedByte(bytes[pos++]);
    std::memcpy(bytes.data() + end, character.bytes.data(), character.bytes.size());
    end += character.length;
    const std::size_t run = AsciiRunEnd(bytes, pos) - pos;
    std::memmove(bytes.data() + end, bytes.data() + pos, run);
    end += run;
    pos += run;
  }
  bytes.resize(end);
  return bytes;
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
