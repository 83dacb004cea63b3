#include "support/engine_fixture.h"

namespace tessary {
namespace {

char StatusSign(const Element& element) { return "DNU-"[element.status]; }

void AppendBrief(const Ref<ElementTable>& table, std::size_t depth,
                 std::vector<std::string>& lines) {
  if (IsArrayEmpty(table)) return;
  for (std::int32_t row = 1; row <= table->rows(); ++row) {
    const Element& element = table->Row(row);
    std::string line(2 * depth, ' ');
    line.append({StatusSign(element), ' '}).append(table->pool().Text(element.key[bxeaName]));
    line.append("|").append(table->pool().Text(element.key[bxeaKey]));
    lines.push_back(line.append("|").append(element.value()));
    AppendBrief(ContentsOf(element), depth + 1, lines);
  }
}

}  // namespace

RowTexts PropertyRow(std::string_view name, std::string_view value, Ref<Level> child) {
  return {.name = name, .key = name, .value = value, .child = std::move(child)};
}

RowTexts SectionRow(std::string_view header, Ref<Level> child) {
  return {.name = header, .key = header, .child = std::move(child)};
}

AddArguments ArgumentsOf(const RowTexts& row) {
  return {row.name,     row.status,   row.key,       row.typ,      row.prev_name,
          row.prev_key, row.prev_typ, row.next_name, row.next_key, row.next_typ,
          row.pos_nr,   row.value,    row.child,     bxltUnknown};
}

ElementKey KeyOf(TextPool& pool, const RowTexts& row) {
  ElementKey key(pool.Intern(row.name), pool.Intern(row.key), pool.Intern(row.typ));
  key[bxeaPosPrevName] = pool.Intern(row.prev_name);
  key[bxeaPosPrevKey] = pool.Intern(row.prev_key);
  key[bxeaPosPrevTyp] = pool.Intern(row.prev_typ);
  key[bxeaPosNextName] = pool.Intern(row.next_name);
  key[bxeaPosNextKey] = pool.Intern(row.next_key);
  key[bxeaPosNextTyp] = pool.Intern(row.next_typ);
  key[bxeaPosNr] = pool.Intern(row.pos_nr);
  return key;
}

Element ElementOf(TextPool& pool, const RowTexts& row) {
  Element element;
  element.key = KeyOf(pool, row);
  element.status = static_cast<std::int8_t>(row.status);
  element.set_value(pool.Keep(row.value));
  element.child = row.child;
  return element;
}

Ref<ElementTable> TableOf(const Ref<EngineContext>& context, std::initializer_list<RowTexts> rows) {
  Ref<ElementTable> table = MakeRef<ElementTable>(context->pool());
  for (const RowTexts& row : rows) table->Append(ElementOf(*context->pool(), row));
  return table;
}

Ref<Level> LevelOf(const Ref<EngineContext>& context, int number,
                   std::initializer_list<RowTexts> rows) {
  Ref<Level> level = context->CreateLevel(number);
  level->SetElementArray(TableOf(context, rows));
  return level;
}

Ref<BXLevelBasis> NewBasis(const Ref<EngineContext>& context, std::string_view class_name) {
  Ref<BXLevelBasis> basis = MakeRef<BXLevelBasis>(context);
  basis->SetLevelClassName(class_name);
  return basis;
}

std::vector<std::string> Column(const Ref<ElementTable>& table, BXElementArray column) {
  std::vector<std::string> texts;
  for (std::int32_t row = 1; table && row <= table->rows(); ++row) {
    const Element& element = table->Row(row);
    if (column == bxeaStatus) {
      texts.emplace_back(1, StatusSign(element));
    } else if (column == bxeaValue) {
      texts.emplace_back(element.value());
    } else {
      texts.emplace_back(table->pool().Text(element.key[column]));
    }
  }
  return texts;
}

std::vector<std::string> Brief(const Ref<ElementTable>& table) {
  std::vector<std::string> lines;
  AppendBrief(table, 0, lines);
  return lines;
}

std::vector<std::string> WriteRows(const Ref<WriteTable>& lines) {
  std::vector<std::string> rows;
  for (std::int32_t row = 1; lines && row <= lines->rows(); ++row) {
    rows.push_back(std::to_string(lines->Level(row)).append(" ").append(lines->Text(row)));
  }
  return rows;
}

std::vector<std::string> Entries(const SharedErrors& errors) {
  std::vector<std::string> texts;
  for (const ErrorEntry& entry : errors.objErrors->entries()) {
    texts.push_back(std::to_string(entry.kind) + " " + std::to_string(entry.number) + " " +
                    entry.source + ": " + entry.message);
  }
  return texts;
}

std::string EntryText(std::int32_t number, std::string_view source, std::string_view message) {
  return ("4 " + std::to_string(number) + " ").append(source).append(": ").append(message);
}

std::string EntryText(std::int32_t number, std::string_view source) {
  return EntryText(number, source, RunTimeErrorText(number));
}

void FailingLoop::Yield() {
  ++turns_;
  if (turns_left_ > 0 && --turns_left_ == 0) throw Failure(number_);
}

}  // namespace tessary
