#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model_convert.h"
#include "model_tree.h"

namespace tessary::model {

// A property line taken apart into name, key and value; the other texts of the row stay empty. A
// numbered user or sum variable has its @-name as key.
Row SplitProperty(const std::string& line);
// The property line of an element.
std::string JoinProperty(const std::string& name, const std::string& key, const std::string& value);

// A level class's Add: makes the child when there is none, keys a section, takes a property line
// (in `name`) apart and notes a value that belongs to the owner in the level's found field.
void AddToLevel(Level& level, Row element, LineType type);

// n / 4 tabs and n % 4 blanks.
std::string LevelToSpaceString(int level);

// Lines to tree and back.
class ReportFile {
 public:
  ReportFile();

  const Array& report_file() const { return levels_[0]->rows; }
  void set_report_file(const Array& rows) { levels_[0]->rows = rows; }
  // Reads one line. Failure 91 when a level object is missing, 9 when the level above has no rows
  // left, 13 or 6 from a number that is none.
  void AddLine(const std::string& line);

  // The first line of what is written, or nothing; then the next one until nothing is left.
  // Failure 91 for a next line without anything to write.
  std::string GetFirstLine();
  std::string GetNextLine();

  // The steps of reading and writing, for tests of their own.
  LineType CheckLine(const std::string& line);
  void AddFieldValue(const std::string& owner, int owner_level, Field field,
                     const std::string& value);
  int level() const { return level_; }
  void set_write_array(const WriteArray& lines) { lines_ = lines; }

 private:
  bool CheckForWritingLevelBookmarks(int level, const std::string& line, std::string& bookmark);
  bool NeedsEmptyBlock(const std::string& line) const;

  std::vector<std::shared_ptr<Level>> levels_;  // ten; never reset to null once set
  int level_ = 0;
  WriteArray lines_;
  int row_ = 0;
  std::string last_line_;
  std::string last_output_;
  bool block_open_ = false;
};

// The tree of a file's lines; lines of blanks are dropped. Failures as in AddLine.
Array ReadLines(const std::vector<std::string>& lines);
// The lines of a tree as they go into a file; renumbers in the tree.
std::vector<std::string> WriteLines(const Array& rows);

}  // namespace tessary::model
