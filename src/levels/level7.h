#pragma once

#include <cstdint>
#include <string_view>

#include "levels/level_base.h"

namespace tessary {

// Level 7: the columns of a table. "Columns" states their number; as the program counts columns
// itself, it never counts as a difference. Columns behind it are compared as a run.
class BXLevel7 final : public LevelBase {
 public:
  explicit BXLevel7(const Ref<EngineContext>& context) : LevelBase(context, 7) {}

 private:
  void CheckMissing(const Ref<ElementTable>& aOldElement,
                    const Ref<ElementTable>& aNewElement) override;
  Pairing ElementPairing() const override { return {"Columns", true}; }
  void UpdateBeforeWriting() override { UpdatePropertyColumns(); }

  static bool IsColumnsProperty(std::string_view strName);
  static bool IsColumnSection(std::string_view strName);
  // Stores the number of "[Column]" rows in the first "Columns" property, if there is one.
  void UpdatePropertyColumns();
  void CheckMissingSpecialElements(const Ref<ElementTable>& aSource, const Ref<ElementTable>& aDest,
                                   BXStatus bxsStatus, std::int32_t lngStartRow) {
    basis().CheckMissingSpecialElements(aSource, aDest, bxsStatus, lngStartRow);
  }
};

}  // namespace tessary
