#pragma once

#include "engine/element_table.h"
#include "engine/level.h"

// Clients may put any level below any other. The engine walks down the levels by recursion, so it
// may be given only what is a tree and not too deep.

namespace tessary::com {

// Raises Failure 5 when `array` or a level below it leads back to itself, 28 when levels are
// nested deeper than any report can be. Null is an empty tree.
void RequireTree(const Ref<ElementTable>& array);

// To be asked before `child` is put into `array`, which may be null yet, of `owner`, which may be
// unknown (null). Raises Failure 5 when that would make a cycle, else what RequireTree raises.
void RequireNoCycle(const Level* owner, const Ref<ElementTable>& array, const Ref<Level>& child);
// The same before `array` becomes the array of `level`.
void RequireNoCycle(const Level& level, const Ref<ElementTable>& array);

}  // namespace tessary::com
