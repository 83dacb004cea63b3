#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/element_table.h"
#include "engine/ref.h"
#include "engine/text_pool.h"

namespace tessary {

// Writes what a level rule found into the last section of the owner's name, and into what the row
// before that section knows of it. Remembers how far a section was looked for, so that looking
// again costs only the rows that have been added since.
class OwnerFields {
 public:
  // `field`: bxeaKey or bxeaTyp. Returns the section's row; nothing happens, and 0 is returned,
  // where the array has no section of that name.
  std::int32_t Set(const Ref<ElementTable>& array, Symbol owner, BXElementArray field,
                   Symbol value);

 private:
  struct Search {
    Ref<ElementTable> array;
    Symbol owner = Symbol::kEmpty;
    std::uint32_t rearrangements = 0;
    std::int32_t searched = 0;
    std::int32_t found = 0;
  };

  std::int32_t LastRowNamed(const Ref<ElementTable>& array, Symbol owner);

  std::array<Search, 2> searches_;
  std::size_t next_search_ = 0;
};

}  // namespace tessary
