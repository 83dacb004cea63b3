#pragma once

#include "engine/element_table.h"
#include "engine/level.h"

// Clients may put any level below any other, but not below itself.

namespace tessary::com {

// To be asked before `child` is put into `array`, which may be null yet, of `owner`, which may be
// unknown (null). Raises Failure 5 when that would make a cycle. No child makes none.
void RequireNoCycle(const Level* owner, const Ref<ElementTable>& array, const Ref<Level>& child);
// The same before `array`, or rows of it, become those of `level`. No array makes none.
void RequireNoCycle(const Level& level, const Ref<ElementTable>& array);

}  // namespace tessary::com
