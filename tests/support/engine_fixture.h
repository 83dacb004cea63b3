#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/element_table.h"
#include "engine/error_collection.h"
#include "engine/level_basis.h"
#include "platform/message_loop.h"
#include "support/engine_trees.h"

namespace tessary {

// The columns of an element, for tests to write down as far as they matter.
struct RowTexts {
  BXStatus status = bxsUnknown;
  std::string_view name = {};
  std::string_view key = {};
  std::string_view typ = {};
  std::string_view prev_name = {};
  std::string_view prev_key = {};
  std::string_view prev_typ = {};
  std::string_view next_name = {};
  std::string_view next_key = {};
  std::string_view next_typ = {};
  std::string_view pos_nr = {};
  std::string_view value = {};
  Ref<Level> child = {};
};

// A property and a section as the level classes store them.
RowTexts PropertyRow(std::string_view name, std::string_view value, Ref<Level> child = {});
RowTexts SectionRow(std::string_view header, Ref<Level> child = {});
inline RowTexts WithStatus(BXStatus status, RowTexts row) {
  row.status = status;
  return row;
}

AddArguments ArgumentsOf(const RowTexts& row);
ElementKey KeyOf(TextPool& pool, const RowTexts& row);
Element ElementOf(TextPool& pool, const RowTexts& row);

// An array of these rows as they stand, without any bookkeeping.
Ref<ElementTable> TableOf(const Ref<EngineContext>& context, std::initializer_list<RowTexts> rows);
// A level object of class `number` with an array of these rows.
Ref<Level> LevelOf(const Ref<EngineContext>& context, int number,
                   std::initializer_list<RowTexts> rows);
// The engine class on its own, under the name of a level class.
Ref<BXLevelBasis> NewBasis(const Ref<EngineContext>& context,
                           std::string_view class_name = "BXLevel2");

// One column of all rows; the status as D, N, U or -.
std::vector<std::string> Column(const Ref<ElementTable>& table, BXElementArray column);
// The rows as "<status> name|key|value", those of a child indented by two blanks below its element.
std::vector<std::string> Brief(const Ref<ElementTable>& table);
// The rows of a write array as "level text".
std::vector<std::string> WriteRows(const Ref<WriteTable>& lines);

// The entries of a collection as "kind number source: message".
std::vector<std::string> Entries(const SharedErrors& errors);
// How such an entry of kind 4 reads.
std::string EntryText(std::int32_t number, std::string_view source, std::string_view message);
// The same with the message that belongs to the number.
std::string EntryText(std::int32_t number, std::string_view source);

// A message loop that raises a failure at one of its turns. It must not be armed for a turn that a
// level object takes when it goes away.
class FailingLoop : public MessageLoop {
 public:
  void FailAt(int turn, std::int32_t number) {
    turns_left_ = turn;
    number_ = number;
  }
  int turns() const { return turns_; }
  void Yield() override;

 private:
  int turns_ = 0;
  int turns_left_ = 0;
  std::int32_t number_ = 0;
};

// An engine whose long loops can be made to fail.
struct FailingEngine {
  SharedErrors errors;
  FailingLoop loop;
  Ref<EngineContext> context = NewEngineContext(errors, &loop);
};

}  // namespace tessary
