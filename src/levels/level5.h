#pragma once

#include <cstdint>

#include "levels/level_base.h"

namespace tessary {

// Level 5: the "[Line]" sections of a table, whose keys are their numbers. A line that is inserted
// takes its number from the line that has it, which moves on with all that follow.
class BXLevel5 final : public LevelBase, private BeforeInsertHandler {
 public:
  explicit BXLevel5(const Ref<EngineContext>& context) : LevelBase(context, 5) {
    basis().SetBeforeInsertHandler(this);
  }

  // Numbers the "[Line]" rows from lngStartRow on, beginning with lngStartID: the row's key, what
  // its neighbours know of it, and the property "LineID" inside it. Nothing happens without rows or
  // when lngStartRow lies before the first row.
  void UpdatePropertyLineID(std::int32_t lngStartRow, std::int32_t lngStartID);

 private:
  void BeforeInsert(const Element& element) override { m_objBasis_BeforeInsert(element); }
  void m_objBasis_BeforeInsert(const Element& element);
  void SetLineNumber(ElementTable& lines, std::int32_t row, std::int32_t number);
};

}  // namespace tessary
