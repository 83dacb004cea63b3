#include <gtest/gtest.h>

#include <utility>

#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

using namespace std::string_literals;

TEST(CodePageTest, EveryByteSurvives) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    all += one;
    const std::string text = DecodeWindows1252(one);
    EXPECT_EQ(ToValidUtf8(text), text) << byte;
    EXPECT_EQ(EncodeWindows1252(text), one) << byte;
  }
  EXPECT_EQ(EncodeWindows1252(DecodeWindows1252(all)), all);
}

TEST(CodePageTest, DecodesLongTextsHoweverMuchLongerTheyBecome) {
  for (const std::size_t gap : {0, 1, 7, 31, 32, 40, 1000}) {
    for (const auto& [byte, character] : {std::pair{'\x80', "€"}, {'\xE4', "ä"}}) {
      std::string bytes;
      std::string text;
      for (int n = 0; n < 3000; ++n) {
        bytes.append(gap, 'x').push_back(byte);
        text.append(gap, 'x').append(character);
      }
      bytes.append("end");
      text.append("end");
      EXPECT_TRUE(DecodeWindows1252(bytes) == text) << gap << character;
      EXPECT_TRUE(EncodeWindows1252(text) == bytes) << gap << character;
    }
  }
}

TEST(CodePageTest, Decodes) {
  const struct {
    std::string bytes;
    std::string text;
  } rows[] = {
      {"", ""},
      {"Rechnung", "Rechnung"},
      {"M\xFCller & S\xF6hne, Stra\xDF"
       "e",
       "Müller & Söhne, Straße"},
      {"\x80 \x84x\x93 \x99", "€ „x“ ™"},
      {"\x81\x8D\x8F\x90\x9D", "\u0081\u008D\u008F\u0090\u009D"},
      {"\x9F\xA0\xFF", "Ÿ\u00A0ÿ"},
      {"0123456789abcdef\xC4", "0123456789abcdefÄ"},
      {"a\0\xE4"s, "a\0ä"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeWindows1252(row.bytes), row.text);
    EXPECT_EQ(EncodeWindows1252(row.text), row.bytes);
  }
}

std::string DescriptionOfFailure(std::string_view text) {
  try {
    return "no failure: " + EncodeWindows1252(std::string(text));
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.number(), kInvalidCall);
    return failure.description();
  }
}

TEST(CodePageTest, RefusesWhatItLacks) {
  const struct {
    std::string text;
    std::string description;
  } rows[] = {
      {"0123456789 Ω", "Das Zeichen \"Ω\" (U+03A9) fehlt in der Codepage Windows-1252."},
      {"😀", "Das Zeichen \"😀\" (U+1F600) fehlt in der Codepage Windows-1252."},
      {"\uFFFD", "Das Zeichen \"\uFFFD\" (U+FFFD) fehlt in der Codepage Windows-1252."},
      {"a\u0080", "Das Zeichen (U+0080) fehlt in der Codepage Windows-1252."},
      {"M\xFCller", "Der Text enthält das Byte FC, das zu keinem Zeichen gehört."},
      {"\xE2\x82", "Der Text enthält das Byte E2, das zu keinem Zeichen gehört."},
  };
  for (const auto& row : rows) EXPECT_EQ(DescriptionOfFailure(row.text), row.description);
}

}  // namespace
}  // namespace tessary
