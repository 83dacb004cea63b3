// Numbers are kept as the digits of their text until they are rounded, so that no digit is lost on
// the way, however long the text.

#include "platform/number.h"

#include <limits>

#include "platform/text.h"

namespace tessary {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The number 0.whole fraction times ten to the power of (size of whole + exponent).
struct Decimal {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  std::int64_t exponent = 0;

  std::size_t size() const { return whole.size() + fraction.size(); }
  // The digit at a place; 0 behind the last.
  int digit(std::size_t i) const {
    if (i < whole.size()) return whole[i] - '0';
    i -= whole.size();
    return i < fraction.size() ? fraction[i] - '0' : 0;
  }
};

bool TakeSign(std::string_view& rest) {
  if (rest.empty() || (rest[0] != '+' && rest[0] != '-')) return false;
  const bool negative = rest[0] == '-';
  rest.remove_prefix(1);
  return negative;
}

std::string_view TakeDigits(std::string_view& rest) {
  std::size_t count = 0;
  while (count < rest.size() && IsDigit(rest[count])) ++count;
  const std::string_view digits = rest.substr(0, count);
  rest.remove_prefix(count);
  return digits;
}

// Beyond any length a text can have, so that a clamped exponent decides like the true one.
constexpr std::int64_t kLargestExponent = 1'000'000'000'000'000;

// False when `rest` begins with something that is no exponent.
bool TakeExponent(std::string_view& rest, std::int64_t& exponent) {
  if (rest.empty()) return true;
  if (rest[0] != 'e' && rest[0] != 'E') return false;
  rest.remove_prefix(1);
  const bool negative = TakeSign(rest);
  const std::string_view digits = TakeDigits(rest);
  for (const char c : digits) {
    if (exponent < kLargestExponent) exponent = exponent * 10 + (c - '0');
  }
  if (negative) exponent = -exponent;
  return !digits.empty();
}

std::optional<Decimal> ParseDecimal(std::string_view text) {
  std::string_view rest = TrimBlanks(text);
  Decimal decimal;
  decimal.negative = TakeSign(rest);
  decimal.whole = TakeDigits(rest);
  if (!rest.empty() && (rest[0] == '.' || rest[0] == ',')) {
    rest.remove_prefix(1);
    decimal.fraction = TakeDigits(rest);
  }
  if (decimal.size() == 0) return std::nullopt;
  if (!TakeExponent(rest, decimal.exponent) || !rest.empty()) return std::nullopt;
  return decimal;
}

// True when what stands behind the first `end` digits rounds `value`, which those digits give, up.
bool RoundsUp(const Decimal& decimal, std::size_t end, std::int64_t value) {
  const int first = decimal.digit(end);
  if (first != 5) return first > 5;
  for (std::size_t i = end + 1; i < decimal.size(); ++i) {
    if (decimal.digit(i) != 0) return true;
  }
  return value % 2 != 0;
}

}  // namespace

bool IsNumeric(std::string_view text) { return ParseDecimal(text).has_value(); }

std::optional<std::int32_t> ToLong(std::string_view text) {
  const std::optional<Decimal> decimal = ParseDecimal(text);
  if (!decimal) return std::nullopt;

  std::size_t first = 0;
  while (first < decimal->size() && decimal->digit(first) == 0) ++first;
  if (first == decimal->size()) return 0;
  const std::int64_t places = static_cast<std::int64_t>(decimal->whole.size()) -
                              static_cast<std::int64_t>(first) + decimal->exponent;
  using Limits = std::numeric_limits<std::int32_t>;
  constexpr int kMostPlaces = Limits::digits10 + 1;
  if (places > kMostPlaces) return std::nullopt;
  if (places < 0) return 0;

  const std::size_t end = first + static_cast<std::size_t>(places);
  std::int64_t value = 0;
  for (std::size_t i = first; i < end; ++i) value = value * 10 + decimal->digit(i);
  if (RoundsUp(*decimal, end, value)) ++value;
  if (decimal->negative) value = -value;
  if (value < Limits::min() || value > Limits::max()) return std::nullopt;
  return static_cast<std::int32_t>(value);
}

}  // namespace tessary
