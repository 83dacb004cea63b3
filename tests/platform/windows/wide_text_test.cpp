#include "platform/windows/wide_text.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/text.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

TEST(WideTextTest, EveryTextSurvivesTheWayInAndOut) {
  const struct {
    std::string utf8;
    std::wstring wide;
  } rows[] = {
      {"", L""},
      {"Rechnung.lst", L"Rechnung.lst"},
      {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
      {"äöüß€", L"\u00E4\u00F6\u00FC\u00DF\u20AC"},
      {"Ω中文", L"\u03A9\u4E2D\u6587"},
      {"\uFFFD\uFFFF", L"\uFFFD\uFFFF"},
      {"\U00010000\U0001F4C4\U0010FFFF", L"\xD800\xDC00\xD83D\xDCC4\xDBFF\xDFFF"},
      {"x\xED\xA0\x80y", L"x\xD800y"},
      {"\xED\xAF\xBF", L"\xDBFF"},
      {"\xED\xB0\x80", L"\xDC00"},
      {"\xED\xBF\xBF", L"\xDFFF"},
      {"\xED\xB0\x80\xED\xA0\x80", L"\xDC00\xD800"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Utf8FromWide(row.wide), row.utf8);
    EXPECT_EQ(WideFromUtf8(row.utf8), row.wide) << row.utf8;
  }
}

TEST(WideTextTest, HalfAPairIsNoUtf8) {
  EXPECT_EQ(ToValidUtf8(Utf8FromWide(L"a\xD800")), "a\uFFFD\uFFFD\uFFFD");
}

TEST(WideTextTest, OtherBytesAreRefused) {
  for (const char* const text : {"\xFF", "a\x80", "\xC3", "\xED\xA0", "\xED\xA0z", "\xC0\x80",
                                 "\xF4\x90\x80\x80", "\xF0\x9F\x93"}) {
    EXPECT_EQ(FailureNumber([&] { WideFromUtf8(text); }), kBadFileName) << text;
  }
}

}  // namespace
}  // namespace tessary
