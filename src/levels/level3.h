#pragma once

#include "levels/level_base.h"

namespace tessary {

// Level 3: a list that begins with a "[Line]" is compared as a run of lines.
class BXLevel3 final : public LevelBase {
 public:
  explicit BXLevel3(const Ref<EngineContext>& context) : LevelBase(context, 3) {}

 private:
  void CheckMissing(const Ref<ElementTable>& aOldElement,
                    const Ref<ElementTable>& aNewElement) override;
  void CheckMissingSpecialElements(const Ref<ElementTable>& aSource, const Ref<ElementTable>& aDest,
                                   BXStatus bxsStatus, std::int32_t lngStartRow) {
    basis().CheckMissingSpecialElements(aSource, aDest, bxsStatus, lngStartRow);
  }
};

}  // namespace tessary
