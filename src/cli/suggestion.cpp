#include "cli/suggestion.h"

#include <algorithm>
#include <vector>

#include "platform/ascii_run.h"

namespace tessary {
namespace {

// No known word is nearly as long; this bounds the work for absurd input.
constexpr std::size_t kLongestTyped = 64;
constexpr std::size_t kShortestPrefix = 2;

bool Same(char a, char b) { return LowerAscii(a) == LowerAscii(b); }

// Typing errors worth a suggestion: one in a short word, one for each three characters of a longer.
std::size_t ToleratedDistance(std::string_view word) {
  return std::max<std::size_t>(1, word.size() / 3);
}

std::string_view WithoutDashes(std::string_view word) {
  return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

bool Begins(std::string_view word, std::string_view typed) {
  return typed.size() >= kShortestPrefix && typed.size() < word.size() &&
         std::equal(typed.begin(), typed.end(), word.begin(), Same);
}

}  // namespace

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before;
  std::vector<std::size_t> last(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = Same(a[i - 1], b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && Same(a[i - 1], b[j - 2]) && Same(a[i - 2], b[j - 1]);
      if (exchanged) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before = std::move(last);
    last = std::move(row);
  }
  return last[b.size()];
}

std::optional<std::string_view> SuggestWord(std::string_view typed,
                                            std::span<const std::string_view> known) {
  if (typed.size() > kLongestTyped) return std::nullopt;
  std::optional<std::string_view> best;
  std::size_t best_distance = 0;
  for (const std::string_view word : known) {
    const std::string_view bare = WithoutDashes(word);
    std::size_t distance = EditDistance(WithoutDashes(typed), bare);
    if (distance > ToleratedDistance(bare)) {
      if (!Begins(bare, WithoutDashes(typed))) continue;
      distance = bare.size();
    }
    if (best && distance >= best_distance) continue;
    best = word;
    best_distance = distance;
  }
  return best;
}

}  // namespace tessary
