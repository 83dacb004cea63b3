#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ref.h"

namespace tessary {

// The write array: the lines of a tree in output order, each with its level. Rows count from 1.
class WriteTable : public RefCounted {
 public:
  // A block that has this many bytes takes no more lines, since messages are handled between rows.
  static constexpr std::size_t kFullBlock = 4096;

  // `takes_blocks`: a row may also be several property lines of its level, as they stand in a file:
  // with CRLF between them and, all but the first, with their indentation.
  explicit WriteTable(bool takes_blocks = false) : takes_blocks_(takes_blocks) {}

  bool takes_blocks() const { return takes_blocks_; }
  std::int32_t rows() const { return static_cast<std::int32_t>(rows_.size()); }

  // Makes room for so many rows in all.
  void Reserve(std::size_t rows) { rows_.reserve(rows); }
  // Starts a row; what is appended to the returned text until the next call is the row's text.
  std::string& Append(std::int32_t level);
  void Append(std::int32_t level, std::string_view text) { Append(level).append(text); }
  // The same for a property, not empty and not beginning with "[", which may become part of the row
  // before where the table takes blocks.
  std::string& AppendProperty(std::int32_t level);

  // Drops the rows behind the first `rows`; the last of these must have been ended by EndBlock or
  // by another row.
  void Truncate(std::int32_t rows);
  // What comes next is a row of its own.
  void EndBlock() { block_open_ = false; }

  // Failure 9 when there is no such row. The text is valid until the next Append.
  std::int32_t Level(std::int32_t row) const { return rows_[Place(row)].level; }
  std::string_view Text(std::int32_t row) const;

 private:
  struct Row {
    std::size_t begin;
    std::uint32_t piece;
    std::int32_t level;
  };

  std::size_t Place(std::int32_t row) const;

  const bool takes_blocks_;
  bool block_open_ = false;  // the last row is a block and may go on
  std::vector<Row> rows_;
  std::vector<std::string> pieces_;  // texts of the rows; a single one would move as it grows
};

}  // namespace tessary
