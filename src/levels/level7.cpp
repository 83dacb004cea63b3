#include "levels/level7.h"

#include <string>

#include "engine/section_text.h"
#include "levels/report_format.h"
#include "platform/text.h"

namespace tessary {

void BXLevel7::CheckMissing(const Ref<ElementTable>& aOldElement,
                            const Ref<ElementTable>& aNewElement) {
  if (!IsColumnsProperty(pool().Text(aNewElement->Row(1).key[bxeaName]))) {
    return LevelBase::CheckMissing(aOldElement, aNewElement);
  }
  constexpr std::int32_t kFirstColumn = 2;
  const std::int32_t old_rows = aOldElement->rows();
  const std::int32_t new_rows = aNewElement->rows();
  if (new_rows > 1 && new_rows >= old_rows) {
    CheckMissingSpecialElements(aNewElement, aOldElement, bxsNew, kFirstColumn);
  } else if (old_rows > 1 && old_rows >= new_rows) {
    CheckMissingSpecialElements(aOldElement, aNewElement, bxsDelete, kFirstColumn);
  }
}

bool BXLevel7::IsColumnsProperty(std::string_view strName) { return IsComputed(strName, 7); }

bool BXLevel7::IsColumnSection(std::string_view strName) {
  return EqualsIgnoreCase(strName, kColumnSection);
}

void BXLevel7::UpdatePropertyColumns() {
  InProcedure("UpdatePropertyColumns").Run([&] {
    const Ref<ElementTable> elements = Elements();
    if (IsArrayEmpty(elements)) return;
    std::int32_t columns = 0;
    std::int32_t property = 0;
    for (std::int32_t row = 1; row <= elements->rows(); ++row) {
      Yield();
      const std::string_view name = pool().Text(elements->Row(row).key[bxeaName]);
      if (IsColumnSection(name)) ++columns;
      if (property == 0 && IsColumnsProperty(name)) property = row;
    }
    if (property != 0) elements->SetValue(property, std::to_string(columns));
  });
}

}  // namespace tessary
