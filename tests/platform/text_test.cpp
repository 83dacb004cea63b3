#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/utf8.h"

namespace tessary {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(TextTest, TrimsBlanksOnly) {
  const struct {
    std::string_view text;
    std::string_view trimmed;
    std::string_view without_leading;
  } rows[] = {
      {"", "", ""},
      {"   ", "", ""},
      {"a", "a", "a"},
      {"  a b  ", "a b", "a b  "},
      {"\ta ", "\ta", "\ta "},
      {" \r ", "\r", "\r "},
      {"\u00A0a", "\u00A0a", "\u00A0a"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TrimBlanks(row.text), row.trimmed);
    EXPECT_EQ(TrimLeadingBlanks(row.text), row.without_leading);
  }
}

TEST(TextTest, IllFormedBytesAreShownOncePerMaximalSubpart) {
  const struct {
    const char* name;
    std::string text;
    std::string shown;
  } rows[] = {
      {"empty", "", ""},
      {"ASCII", "Bericht.lst", "Bericht.lst"},
      {"well-formed of every length", "aäΩ€😀z", "aäΩ€😀z"},
      {"zero byte", "a\0b"s, "a\0b"s},
      {"Windows-1252 umlaut", "M\xFCller", "M\uFFFDller"},
      {"lone trailing bytes", "\x80\xBF", "\uFFFD\uFFFD"},
      {"truncated at the end, two of three", "a\xE2\x82", "a\uFFFD"},
      {"truncated at the end, three of four", "\xF0\x9F\x98", "\uFFFD"},
      {"truncated before a letter", "\xE2\x82x", "\uFFFDx"},
      {"truncated before a character", "\xE2\x82Ω", "\uFFFDΩ"},
      {"overlong two bytes", "\xC0\xAF", "\uFFFD\uFFFD"},
      {"overlong three bytes", "\xE0\x80\xBF", "\uFFFD\uFFFD\uFFFD"},
      {"overlong four bytes", "\xF0\x81\x82\x41", "\uFFFD\uFFFD\uFFFDA"},
      {"surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {"beyond the last plane", "\xF4\x91\x92\x93\xFF\x41",
       "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"
       "A"},
      {"subparts of several lengths", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41",
       "\uFFFD\uFFFD\uFFFD\uFFFD"
       "A"},
      {"last character", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
      {"far behind ASCII", "0123456789abcdef\xFF!", "0123456789abcdef\uFFFD!"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ToValidUtf8(row.text), row.shown) << row.name;
    EXPECT_EQ(ToValidUtf8(ToValidUtf8(row.text)), row.shown) << row.name;
  }
}

TEST(TextTest, EveryCodePointSurvivesEncoding) {
  for (char32_t code_point = 0; code_point <= 0x10FFFF; ++code_point) {
    if (code_point == 0xD800) code_point = 0xE000;
    std::string text;
    AppendUtf8(text, code_point);
    const Utf8Character character = DecodeUtf8(text, 0);
    ASSERT_TRUE(character.well_formed) << std::uint32_t{code_point};
    ASSERT_EQ(character.code_point, code_point);
    ASSERT_EQ(character.length, text.size()) << std::uint32_t{code_point};
  }
}

TEST(TextTest, DecodesUtf16) {
  const struct {
    const char* name;
    std::string big_endian;
    std::string text;
  } rows[] = {
      {"empty", "", ""},
      {"one byte", "a", "\uFFFD"},
      {"ASCII", "\0A\0B"s, "AB"},
      {"umlaut and Omega", "\0\xFC\x03\xA9"s, "üΩ"},
      {"pair", "\xD8\x3D\xDE\x00"s, "😀"},
      {"first pair", "\xD8\x00\xDC\x00"s, "\U00010000"},
      {"last pair", "\xDB\xFF\xDF\xFF"s, "\U0010FFFF"},
      {"high alone at the end", "\0A\xD8\x3D"s, "A\uFFFD"},
      {"high before a letter", "\xD8\x3D\0A"s, "\uFFFDA"},
      {"two high, one low", "\xD8\x3D\xD8\x3D\xDE\x00"s, "\uFFFD😀"},
      {"low alone", "\xDE\x00\0A"s, "\uFFFDA"},
      {"odd last byte", "\0A\0"s, "A\uFFFD"},
      {"high and half a unit", "\xD8\x3D\xDE"s, "\uFFFD\uFFFD"},
      {"zero", "\0\0"s, "\0"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeUtf16(row.big_endian, true), row.text) << row.name;
    std::string little_endian = row.big_endian;
    for (std::size_t i = 0; i + 1 < little_endian.size(); i += 2)
      std::swap(little_endian[i], little_endian[i + 1]);
    EXPECT_EQ(DecodeUtf16(little_endian, false), row.text) << row.name;
  }
}

}  // namespace
}  // namespace tessary
