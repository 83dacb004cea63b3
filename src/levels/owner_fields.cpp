#include "levels/owner_fields.h"

#include <algorithm>

namespace tessary {

std::int32_t OwnerFields::Set(const Ref<ElementTable>& array, Symbol owner, BXElementArray field,
                              Symbol value) {
  const std::int32_t row = LastRowNamed(array, owner);
  if (row == 0) return row;
  array->SetText(row, field, value);
  if (row > 1) array->SetText(row - 1, field == bxeaKey ? bxeaPosNextKey : bxeaPosNextTyp, value);
  return row;
}

std::int32_t OwnerFields::LastRowNamed(const Ref<ElementTable>& array, Symbol owner) {
  const auto known = std::find_if(searches_.begin(), searches_.end(), [&](const Search& search) {
    return search.array == array && search.owner == owner &&
           search.rearrangements == array->rearrangements();
  });
  if (known == searches_.end()) next_search_ = (next_search_ + 1) % searches_.size();
  Search& search = known == searches_.end() ? searches_[next_search_] : *known;
  if (known == searches_.end()) search = {array, owner, array->rearrangements(), 0, 0};
  const TextPool& pool = array->pool();
  for (std::int32_t row = array->rows(); row > search.searched; --row) {
    if (!pool.Same(array->Row(row).key[bxeaName], owner)) continue;
    search.found = row;
    break;
  }
  search.searched = array->rows();
  return search.found;
}

}  // namespace tessary
