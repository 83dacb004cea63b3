#include "platform/number.h"

#include <gtest/gtest.h>

#include <string>

namespace tessary {
namespace {

using namespace std::string_literals;

constexpr auto kTooLarge = std::nullopt;

TEST(NumberTest, NumericTexts) {
  const struct {
    std::string text;
    std::optional<std::int32_t> value;
  } rows[] = {
      {"0", 0},
      {"7", 7},
      {"007", 7},
      {"  12  ", 12},
      {"+5", 5},
      {"-5", -5},
      {"-0", 0},
      {"4.", 4},
      {".4", 0},
      {"4,2", 4},
      {",9", 1},
      {"1e3", 1000},
      {"1E+3", 1000},
      {"1234e-2", 12},
      {"-1.5e1", -15},
      {"0.00012e5", 12},
      {"1.e1", 10},
      // Halves go to the even neighbour.
      {"0.5", 0},
      {"1.5", 2},
      {"2.5", 2},
      {"-0.5", 0},
      {"-1.5", -2},
      {"-2.5", -2},
      {"2.50000", 2},
      {"2.5000000000000000000000000000000000001", 3},
      {"2.4999999999999999999999999999999999999", 2},
      {"0.49999999999999999999999999999999", 0},
      {"5e-1", 0},
      {"0.05", 0},
      {"9.5", 10},
      {"0.6", 1},
      // The bounds of 32 bits, after rounding.
      {"2147483647", 2147483647},
      {"2147483647.4", 2147483647},
      {"2147483647.5", kTooLarge},
      {"2147483648", kTooLarge},
      {"-2147483648", -2147483647 - 1},
      {"-2147483648.5", -2147483647 - 1},
      {"-2147483649", kTooLarge},
      {"9999999999", kTooLarge},
      {"10000000000", kTooLarge},
      {"1e10", kTooLarge},
      // Exponents beyond every bound.
      {"1e99999999999999999999999", kTooLarge},
      {"-1e99999999999999999999999", kTooLarge},
      {"1e-99999999999999999999999", 0},
      {"0e99999999999999999999999", 0},
      {"0." + std::string(100000, '0') + "3e100001", 3},
      {"3" + std::string(100000, '0') + "e-100000", 3},
      {std::string(100000, '0') + "3", 3},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(IsNumeric(row.text)) << row.text.substr(0, 80);
    EXPECT_EQ(ToLong(row.text), row.value) << row.text.substr(0, 80);
  }
}

TEST(NumberTest, OtherTexts) {
  const std::string rows[] = {
      "",      " ",     ".",     ",",    "+",    "-",     "+-1", "1-",    "- 1",  "1 2",
      "abc",   "1a",    "a1",    "1e",   "1e+",  "e3",    ".e3", "1e3.5", "1e 3", "1 e3",
      "1.2.3", "1,2,3", "1.2,3", "&H10", "0x10", "\t1",   "1\r", "1\0"s,  "١",    "1\u00A0",
      "inf",   "nan",   "1d3",   "(1)",  "1€",   "1_000", "--1", "1e--3",
  };
  for (const std::string& text : rows) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(ToLong(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tessary
