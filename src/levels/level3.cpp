#include "levels/level3.h"

namespace tessary {

void BXLevel3::CheckMissing(const Ref<ElementTable>& aOldElement,
                            const Ref<ElementTable>& aNewElement) {
  if (!IsLineSection(pool().Text(aNewElement->Row(1).key[bxeaName]))) {
    return LevelBase::CheckMissing(aOldElement, aNewElement);
  }
  if (aNewElement->rows() < aOldElement->rows()) {
    CheckMissingSpecialElements(aOldElement, aNewElement, bxsDelete, 1);
  } else {
    CheckMissingSpecialElements(aNewElement, aOldElement, bxsNew, 1);
  }
}

}  // namespace tessary
