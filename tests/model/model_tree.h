#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The slow second opinion: reading, comparing, writing and applying once more, as simply as the
// rules can be put down, with copies and linear scans and without any thought of speed. Property
// tests hold the real engine against it, so nothing here may share logic with the engine.
//
// The model keeps no error collection; a failure is thrown as tessary::Failure with its number.

namespace tessary::model {

enum Status : int { kDelete = 0, kNew = 1, kUpdate = 2, kUnknown = 3 };
enum class LineType { kSection, kProperty, kUnknown };

struct Level;

// One element. Rows are counted from 1 wherever a row number appears.
struct Row {
  int status = kUnknown;
  std::string name, key, typ;
  std::string prev_name, prev_key, prev_typ;
  std::string next_name, next_key, next_typ;
  std::string pos_nr;
  std::string value;
  std::shared_ptr<Level> child;
};

using Rows = std::vector<Row>;
// Arrays are handed around by reference; null stands for "no array yet".
using Array = std::shared_ptr<Rows>;
using Field = std::string Row::*;

// What a level rule found in a property line and the line store has to write into the owner.
struct FoundField {
  bool found = false;
  std::string owner;
  int owner_level = 0;
  Field field = nullptr;
  std::string value;
};

// A level object; its class is its number, 0 to 9.
struct Level {
  explicit Level(int level_number) : number(level_number) {}

  int number;
  Array rows;
  FoundField found_field;
};

// The number of the class whose objects hang below a level; the last class has children of its own.
int ChildNumber(int number);
std::shared_ptr<Level> NewLevel(int number);

// True for no array and for one without rows.
bool IsArrayEmpty(const Array& array);
// The number of rows, 0 for no array.
int Count(const Array& array);
// Failure 91 for no array, 9 for a row number outside it.
Row& RowAt(const Array& array, int row);
void EraseRow(const Array& array, int row);
// The rows in a new array, children shared; Failure 91 for no array.
Array CopyArray(const Array& array);
// The row number of the first or the last row with this name, 0 if there is none.
int FirstNamed(const Array& array, const std::string& name);
int LastNamed(const Array& array, const std::string& name);

// The child of the last row, which may be null; Failure 91 for no array, 9 for one without rows.
std::shared_ptr<Level> LastElement(const Level& level);
// The array of a level object; Failure 91 when there is no object.
Array ElementArray(const std::shared_ptr<Level>& level);

bool IsSectionLine(const std::string& line);
bool IsLineSection(const std::string& line);

// The whole number that a text stands for; Failure 13 for no number, 6 for one beyond 32 bits.
std::int32_t ToInteger(const std::string& text);
// number + 1; Failure 6 when that does not fit.
std::int32_t Successor(std::int32_t number);

// A tree as text, to compare two of them. Every row gives one line,
//
//   <indent><status> name|key|typ|prevname|prevkey|prevtyp|nextname|nextkey|nexttyp|posnr|value
//
// and below it the rows of its child: indent is two blanks per depth below the level handed in,
// status one of D, N, U and - (unknown). A child that is missing, has no array or no rows gives
// nothing.
std::string Dump(const Level& level);
std::string Dump(const Array& array);

}  // namespace tessary::model
