#include "levels/report_format.h"

#include <array>
#include <iterator>

namespace tessary {
namespace {

// Behind the last property of each level and of those above it.
constexpr auto PropertyEnds() {
  std::array<std::size_t, kLevelCount> ends{};
  for (std::size_t level = 0; level < ends.size(); ++level) {
    for (const OwnerProperty& property : kOwnerProperties) {
      if (property.level <= static_cast<int>(level)) ++ends[level];
    }
  }
  return ends;
}

constexpr auto kPropertyEnds = PropertyEnds();

}  // namespace

std::span<const OwnerProperty> OwnerPropertiesOf(int level) {
  if (level < 0 || level >= kLevelCount) return {};
  const auto place = static_cast<std::size_t>(level);
  const std::size_t begin = place == 0 ? 0 : kPropertyEnds[place - 1];
  return std::span(kOwnerProperties).subspan(begin, kPropertyEnds[place] - begin);
}

}  // namespace tessary
