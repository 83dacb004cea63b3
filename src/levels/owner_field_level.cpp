#include "levels/owner_field_level.h"

namespace tessary {

void OwnerFieldLevel::ApplyPropertyRule(const Property& property) {
  const OwnerProperty* owner = GetOwnerField(property.strKey);
  if (!owner) return;
  FoundField found;
  found.found = true;
  found.owner = pool().Intern(owner->owner);
  found.owner_level = owner->owner_level;
  found.field = static_cast<std::int8_t>(owner->field);
  found.value = pool().Intern(property.strValue);
  basis().SetFoundFieldValue(found);
}

}  // namespace tessary
