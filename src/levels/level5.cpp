#include "levels/level5.h"

#include <string>

#include "engine/find_element.h"
#include "engine/number_of.h"
#include "platform/text.h"

namespace tessary {
namespace {

// Writes a line's number into the first "LineID" among its properties, if there is one.
void SetLineID(const Element& line, TextPool& pool, Symbol number) {
  if (!line.child) return;
  const Ref<ElementTable> properties = line.child->ElementArray();
  if (IsArrayEmpty(properties)) return;
  for (std::int32_t row = 1; row <= properties->rows(); ++row) {
    if (!EqualsIgnoreCase(pool.Text(properties->Row(row).key[bxeaName]), "LineID")) continue;
    properties->SetValue(row, pool.Text(number));
    return;
  }
}

}  // namespace

void BXLevel5::UpdatePropertyLineID(std::int32_t lngStartRow, std::int32_t lngStartID) {
  InProcedure("UpdatePropertyLineID").Run([&] {
    const Ref<ElementTable> lines = Elements();
    if (IsArrayEmpty(lines) || lngStartRow < 1) return;
    std::int32_t number = lngStartID;
    for (std::int32_t row = lngStartRow; row <= lines->rows(); ++row) {
      Yield();
      if (!IsLineSection(pool().Text(lines->Row(row).key[bxeaName]))) continue;
      SetLineNumber(*lines, row, number);
      if (number == INT32_MAX) throw Failure(kOverflow);
      ++number;
    }
  });
}

void BXLevel5::SetLineNumber(ElementTable& lines, std::int32_t row, std::int32_t number) {
  const Symbol text = pool().InternNumber(number);
  lines.SetText(row, bxeaKey, text);
  if (row > 1) lines.SetText(row - 1, bxeaPosNextKey, text);
  if (row < lines.rows()) lines.SetText(row + 1, bxeaPosPrevKey, text);
  SetLineID(lines.Row(row), pool(), text);
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
    UpdatePropertyLineID(row, number + 1);
  });
}

}  // namespace tessary
