// The engine against the slow second opinion: an old report, a new one and a customer's copy.

#include "fuzz/fuzz_target.h"
#include "support/both_engines.h"

using namespace tessary;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 4096;  // The second opinion takes quadratic time.
  if (size > kMostBytes) return 0;
  const auto parts = fuzz::Parts(data, size, 3);
  const auto old_lines = fuzz::FileLines(parts[0]);
  const auto new_lines = fuzz::FileLines(parts[1]);
  const auto customer = fuzz::FileLines(parts[2]);
  fuzz::Require(ReadByBoth(old_lines).agree(), "both read the same");
  fuzz::Require(RoundTripByBoth(old_lines).agree(), "both write the same");
  std::vector<std::string> difference;
  fuzz::Require(CompareByBoth(old_lines, new_lines, difference).agree(), "both compare the same");
  fuzz::Require(ConvertByBoth(customer, difference).agree(), "both apply the same");
  fuzz::Require(ConvertByBoth(old_lines, new_lines).agree(), "also what no comparison wrote");
  return 0;
}
