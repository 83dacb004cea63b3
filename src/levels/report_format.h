#pragma once

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

// The section header that does not return to level 0 when it is met at level 0 or 1.
inline constexpr std::string_view kLinesSection = "[@Lines]";
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

// The owner properties of one level.
std::span<const OwnerProperty> OwnerPropertiesOf(int level);

// The owner property of this name at this level, without regard to case; null when there is none.
inline const OwnerProperty* FindOwnerProperty(int level, std::string_view name) {
  for (const OwnerProperty& property : OwnerPropertiesOf(level)) {
    if (EqualsIgnoreCase(name, property.name)) return &property;
  }
  return nullptr;
}

// The level whose sections may own a property of level `level`; -1 when none may.
inline int OwnerLevelOf(int level) {
  const std::span<const OwnerProperty> properties = OwnerPropertiesOf(level);
  return properties.empty() ? -1 : properties.front().owner_level;
}

}  // namespace tessary
