#include "levels/level1.h"

#include <string>

#include "engine/section_text.h"

namespace tessary {

const OwnerProperty* BXLevel1::GetOwnerField(std::string_view strName) {
  const OwnerProperty* property = OwnerFieldLevel::GetOwnerField(strName);
  if (!property || property->owner != kLayerSection) return property;
  return IsLayerProperty() ? property : nullptr;
}

bool BXLevel1::IsLayerProperty() {
  return InProcedure("IsLayerProperty").Run([&] {
    const Ref<ElementTable> elements = Elements();
    if (IsArrayEmpty(elements)) return false;
    const Symbol last_key = elements->Row(elements->rows()).key[bxeaKey];
    return pool().Text(last_key) == kBeforeLayerID;
  });
}

bool BXLevel1::IsVariableProperty(std::string_view strName) { return IsComputed(strName, 1); }

void BXLevel1::UpdateVariableNumbers() {
  InProcedure("UpdateVariableNumbers").Run([&] {
    const Ref<ElementTable> elements = Elements();
    if (IsArrayEmpty(elements)) return;
    int number = 0;
    for (std::int32_t row = 1; row <= elements->rows(); ++row) {
      Yield();
      const std::string_view name = pool().Text(elements->Row(row).key[bxeaName]);
      if (!IsVariableProperty(name)) continue;
      const std::string numbered = std::string(name) + std::to_string(++number);
      elements->SetText(row, bxeaName, pool().Intern(numbered));
    }
  });
}

}  // namespace tessary
