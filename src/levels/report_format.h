#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "engine/element.h"
#include "platform/text.h"

// What the classic report format says about nesting and about properties that identify the
// section they stand in; data for the level classes and the line store.

namespace tessary {

// Levels are numbered 0 .. kLevelCount - 1; the last one's elements have children of its own class.
inline constexpr int kLevelCount = 10;

inline constexpr std::string_view kObjectSection = "[Object]";
inline constexpr std::string_view kLayerSection = "[Layer]";
inline constexpr std::string_view kColumnSection = "[Column]";

// A property whose value is the key or the type of the section that owns it.
struct OwnerProperty {
  int level;  // of the property
  std::string_view name;
  std::string_view owner;
  std::int8_t owner_level;
  BXElementArray field;  // bxeaKey or bxeaTyp
};

// In the order of the levels.
inline constexpr OwnerProperty kOwnerProperties[] = {
    {1, "ObjectName", kObjectSection, 0, bxeaTyp}, {1, "LinkID", kObjectSection, 0, bxeaKey},
    {1, "LayerID", kLayerSection, 0, bxeaKey},     {4, "Text", "[Line]", 3, bxeaKey},
    {6, "LineID", "[Line]", 5, bxeaKey},           {8, "Text", kColumnSection, 7, bxeaKey},
    {9, "Contents", kColumnSection, 7, bxeaKey},
};

// Where the properties of each level end in the table, and the first letters of their names, small
// a being bit 0.
struct OwnerPropertyPlaces {
  std::array<std::uint8_t, kLevelCount> ends{};
  std::array<std::uint32_t, kLevelCount> letters{};

  constexpr OwnerPropertyPlaces() {
    for (std::size_t level = 0; level < ends.size(); ++level) {
      for (const OwnerProperty& property : kOwnerProperties) {
        const auto its_level = static_cast<std::size_t>(property.level);
        if (its_level <= level) ++ends[level];
        if (its_level == level) letters[level] |= 1u << (LowerAscii(property.name.front()) - 'a');
      }
    }
  }
};
inline constexpr OwnerPropertyPlaces kOwnerPropertyPlaces;

// The owner properties of one level.
inline std::span<const OwnerProperty> OwnerPropertiesOf(int level) {
  if (level < 0 || level >= kLevelCount) return {};
  const auto place = static_cast<std::size_t>(level);
  const std::size_t begin = place == 0 ? 0 : kOwnerPropertyPlaces.ends[place - 1];
  return std::span(kOwnerProperties).subspan(begin, kOwnerPropertyPlaces.ends[place] - begin);
}

// The owner property of this name at this level, without regard to case; null when there is none.
inline const OwnerProperty* FindOwnerProperty(int level, std::string_view name) {
  for (const OwnerProperty& property : OwnerPropertiesOf(level)) {
    if (EqualsIgnoreCase(name, property.name)) return &property;
  }
  return nullptr;
}

// False where the first letter shows that a property of this level, 0 to 9, is none of these.
inline bool MayBeOwnerProperty(int level, char first_letter) {
  const int letter = LowerAscii(first_letter) - 'a';
  return letter >= 0 && letter < 26 &&
         (kOwnerPropertyPlaces.letters[static_cast<std::size_t>(level)] >> letter & 1) != 0;
}

// The key of a layer counts only where it directly follows this property, letter by letter.
inline constexpr std::string_view kBeforeLayerID = "Visible";
constexpr bool DependsOnPrevious(const OwnerProperty& property) {
  return property.owner == kLayerSection;
}
inline bool SetsOwnerBehind(const OwnerProperty& property, std::string_view previous_key) {
  return !DependsOnPrevious(property) || previous_key == kBeforeLayerID;
}

// The level whose sections may own a property of level `level`; -1 when none may.
inline int OwnerLevelOf(int level) {
  const std::span<const OwnerProperty> properties = OwnerPropertiesOf(level);
  return properties.empty() ? -1 : properties.front().owner_level;
}

}  // namespace tessary
