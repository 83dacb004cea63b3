// Each inserted line renumbers all that follow, so that a run of insertions goes over the same
// lines again and again. Their keys have to be right at once, since the next insertion looks for
// them; the "LineID" inside each, which takes several steps to reach, is written once when the run
// is over.

#include "levels/level5.h"

#include <algorithm>

#include "engine/find_element.h"
#include "engine/number_of.h"
#include "platform/text.h"

namespace tessary {
namespace {

// Writes a line's number into the first "LineID" among its properties, if there is one.
void SetLineID(Element& line, EngineContext& context) {
  if (!line.unread().empty()) context.ChildOf(line);
  if (!line.child) return;
  const TextPool& pool = *context.pool();
  const Ref<ElementTable> properties = line.child->ElementArray();
  if (IsArrayEmpty(properties)) return;
  for (std::int32_t row = 1; row <= properties->rows(); ++row) {
    if (!EqualsIgnoreCase(pool.Text(properties->Row(row).key[bxeaName]), "LineID")) continue;
    properties->SetValue(row, line.key[bxeaKey]);
    return;
  }
}

}  // namespace

// A line that has not been read yet is read for its number, so writing numbers may fail.
template <class Body>
void BXLevel5::WithLineIDsAtEnd(const Body& body) {
  try {
    body();
  } catch (...) {
    try {
      WriteLineIDs();
    } catch (...) {
      // What went wrong first is what is told.
    }
    throw;
  }
  WriteLineIDs();
}

void BXLevel5::Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) {
  WithLineIDsAtEnd([&] { LevelBase::Convert(aReport, aDiffFile); });
}

void BXLevel5::UpdatePropertyLineID(std::int32_t lngStartRow, std::int32_t lngStartID) {
  WithLineIDsAtEnd([&] { Renumber(lngStartRow, lngStartID); });
}

void BXLevel5::Renumber(std::int32_t first_row, std::int32_t first_number) {
  InProcedure("UpdatePropertyLineID").Run([&] {
    const Ref<ElementTable> lines = Elements();
    if (IsArrayEmpty(lines) || first_row < 1 || first_row > lines->rows()) return;
    const Symbol line_name = pool().Intern("[Line]");
    std::int64_t number = first_number;
    ElementKey* before = nullptr;
    bool before_is_numbered = false;
    // Begins with the row before the first, whose next key is the first one's.
    lines->ChangeFrom(std::max(first_row - 1, 1), [&](Element& line) {
      if (before_is_numbered) line.key[bxeaPosPrevKey] = (*before)[bxeaKey];
      if (number > INT32_MAX) throw Failure(kOverflow);
      const bool skipped = first_row > 1 && !before;
      if (!skipped) Yield();
      before_is_numbered = !skipped && pool().Same(line.key[bxeaName], line_name);
      if (before_is_numbered) {
        line.key[bxeaKey] = pool().InternNumber(static_cast<std::int32_t>(number++));
        line.line_id_due = line_ids_due_ = true;
        if (before) (*before)[bxeaPosNextKey] = line.key[bxeaKey];
      }
      before = &line.key;
    });
    if (number > INT32_MAX) throw Failure(kOverflow);
  });
}

void BXLevel5::WriteLineIDs() {
  if (!line_ids_due_) return;
  line_ids_due_ = false;
  const Ref<ElementTable> lines = Elements();
  if (IsArrayEmpty(lines)) return;
  lines->ChangeFrom(1, [&](Element& line) {
    if (line.line_id_due) SetLineID(line, basis().context());
    line.line_id_due = false;
  });
}

void BXLevel5::m_objBasis_BeforeInsert(const Element& element) {
  InProcedure("m_objBasis_BeforeInsert").Run([&] {
    const Ref<ElementTable> lines = Elements();
    if (!IsLineSection(pool().Text(element.key[bxeaName])) || IsArrayEmpty(lines)) return;
    const std::int32_t row = FindElement(lines, element.key);
    if (row == 0) return;
    const std::string_view key = pool().Text(element.key[bxeaKey]);
    const std::int32_t number = key.empty() ? 0 : NumberOf(key);
    if (number == INT32_MAX) throw Failure(kOverflow);
    Renumber(row, number + 1);
  });
}

}  // namespace tessary
