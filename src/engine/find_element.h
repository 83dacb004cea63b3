#pragma once

#include <array>
#include <cstdint>

#include "engine/element.h"
#include "engine/element_table.h"

namespace tessary {

// The position columns by which several elements of one identity are told apart, in the order in
// which they count. The name of the next element is deliberately not among them.
inline constexpr std::array<BXElementArray, 6> kPositionColumns = {
    bxeaPosPrevName, bxeaPosPrevKey, bxeaPosPrevTyp, bxeaPosNextKey, bxeaPosNextTyp, bxeaPosNr};

// The row of the element that matches `wanted`, or 0 when `aElements` holds none of its name, key
// and type. Among several, those that agree in the first position column are preferred, among
// these the ones that agree in the second, and so on until a column leaves none; of the elements
// that are then left the first in the array wins. All texts are compared without regard to case.
inline std::int32_t FindElement(const Ref<ElementTable>& aElements, const ElementKey& wanted) {
  return IsArrayEmpty(aElements) ? 0 : aElements->Find(wanted);
}

}  // namespace tessary
