// A candidate set is narrowed column by column. Name, key and type must match; after that a column
// that would leave no candidate ends the search with the first candidate that was there before it.
// The name of the next element is no criterion.

#include "model_find.h"

#include <vector>

#include "platform/text.h"

namespace tessary::model {
namespace {

// Row numbers in ascending order.
using Candidates = std::vector<int>;

Candidates AllRows(const Array& elements) {
  Candidates all;
  for (int row = 1; row <= Count(elements); ++row) all.push_back(row);
  return all;
}

Candidates Narrow(const Array& elements, const Candidates& candidates, Field column,
                  const Row& wanted) {
  Candidates kept;
  for (int row : candidates) {
    if (EqualsIgnoreCase(RowAt(elements, row).*column, wanted.*column)) kept.push_back(row);
  }
  return kept;
}

}  // namespace

int FindElement(const Array& elements, const Row& wanted) {
  if (IsArrayEmpty(elements)) return 0;
  Candidates candidates = AllRows(elements);
  for (Field column : {&Row::name, &Row::key, &Row::typ}) {
    candidates = Narrow(elements, candidates, column, wanted);
    if (candidates.empty()) return 0;
  }
  int result = candidates.front();
  for (Field column : {&Row::prev_name, &Row::prev_key, &Row::prev_typ, &Row::next_key,
                       &Row::next_typ, &Row::pos_nr}) {
    if (candidates.size() == 1) return result;
    candidates = Narrow(elements, candidates, column, wanted);
    if (candidates.empty()) return result;
    result = candidates.front();
  }
  return result;
}

Row Identity(const std::string& name, const std::string& key, const std::string& typ) {
  Row wanted;
  wanted.name = name;
  wanted.key = key;
  wanted.typ = typ;
  return wanted;
}

}  // namespace tessary::model
