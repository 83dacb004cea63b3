#include "levels/report_format.h"

#include "platform/text.h"

namespace tessary {

const OwnerProperty* FindOwnerProperty(int level, std::string_view name) {
  for (const OwnerProperty& property : kOwnerProperties) {
    if (property.level == level && EqualsIgnoreCase(property.name, name)) return &property;
  }
  return nullptr;
}

int OwnerLevelOf(int level) {
  for (const OwnerProperty& property : kOwnerProperties) {
    if (property.level == level) return property.owner_level;
  }
  return -1;
}

}  // namespace tessary
