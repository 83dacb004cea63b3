// A line of a difference file taken apart and put together, as the second opinion does it.

#include "engine/diff_text.h"
#include "fuzz/fuzz_target.h"
#include "model/model_diff_text.h"
#include "platform/text.h"

using namespace tessary;

namespace {

model::Row RowOf(const DiffLine& line) {
  model::Row row;
  row.status = line.status;
  row.name = line.text;
  std::string* const fields[] = {&row.key,      &row.typ,      &row.prev_name,
                                 &row.prev_key, &row.prev_typ, &row.next_name,
                                 &row.next_key, &row.next_typ, &row.pos_nr};
  for (std::size_t i = 0; i < line.fields.size(); ++i) *fields[i] = line.fields[i];
  return row;
}

bool Same(const model::Row& a, const model::Row& b) {
  return a.status == b.status && a.name == b.name && a.key == b.key && a.typ == b.typ &&
         a.prev_name == b.prev_name && a.prev_key == b.prev_key && a.prev_typ == b.prev_typ &&
         a.next_name == b.next_name && a.next_key == b.next_key && a.next_typ == b.next_typ &&
         a.pos_nr == b.pos_nr;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  DiffLine parsed;
  for (const std::string& line : fuzz::FileLines(fuzz::Bytes(data, size))) {
    DiffTextToElement(line, parsed);
    const model::Row row = RowOf(parsed);
    fuzz::Require(Same(row, model::DiffTextToElement(line)), "lines are taken apart the same");
    std::string description;
    ElementToDiffText(parsed.status, parsed.fields, description);
    fuzz::Require(description == model::ElementToDiffText(row), "and put together the same");
  }
  return 0;
}
