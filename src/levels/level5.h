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

  void Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) override;

 private:
  void BeforeInsert(const Element& element) override { m_objBasis_BeforeInsert(element); }
  void CompleteInsertions() override { WriteLineIDs(); }
  void m_objBasis_BeforeInsert(const Element& element);
  // UpdatePropertyLineID except for what stands inside the lines, which WriteLineIDs brings up to
  // date.
  void Renumber(std::int32_t first_row, std::int32_t first_number);
  void WriteLineIDs();
  // Whichever way `body` is left, the lines renumbered in it have their numbers inside as well.
  template <class Body>
  void WithLineIDsAtEnd(const Body& body);

  bool line_ids_due_ = false;
};

}  // namespace tessary
