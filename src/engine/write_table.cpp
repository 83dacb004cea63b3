#include "engine/write_table.h"

#include <limits>

#include "platform/failure.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

constexpr std::size_t kFullPiece = 64 * 1024;

}  // namespace

std::string& WriteTable::Append(std::int32_t level) {
  if (rows_.size() >= std::numeric_limits<std::int32_t>::max()) throw Failure(kOutOfMemory);
  if (pieces_.empty() || pieces_.back().size() >= kFullPiece) {
    pieces_.emplace_back().reserve(kFullPiece + kFullBlock);
  }
  block_open_ = false;
  rows_.push_back({pieces_.back().size(), static_cast<std::uint32_t>(pieces_.size() - 1), level});
  return pieces_.back();
}

std::string& WriteTable::AppendProperty(std::int32_t level) {
  if (block_open_ && rows_.back().level == level &&
      pieces_.back().size() - rows_.back().begin < kFullBlock) {
    return pieces_.back().append("\r\n").append(LevelSpace(level));
  }
  std::string& text = Append(level);
  block_open_ = takes_blocks_;
  return text;
}

void WriteTable::Truncate(std::int32_t rows) {
  const auto count = static_cast<std::size_t>(rows);
  if (count >= rows_.size()) return;
  pieces_.resize(rows_[count].piece + 1);
  pieces_.back().resize(rows_[count].begin);
  rows_.resize(count);
  block_open_ = false;
}

std::size_t WriteTable::Place(std::int32_t row) const {
  if (row < 1 || row > rows()) throw Failure(kSubscriptOutOfRange);
  return static_cast<std::size_t>(row) - 1;
}

std::string_view WriteTable::Text(std::int32_t row) const {
  const std::size_t place = Place(row);
  const Row& wanted = rows_[place];
  const bool ends_piece = place + 1 == rows_.size() || rows_[place + 1].piece != wanted.piece;
  const std::string_view piece = pieces_[wanted.piece];
  const std::size_t end = ends_piece ? piece.size() : rows_[place + 1].begin;
  return piece.substr(wanted.begin, end - wanted.begin);
}

}  // namespace tessary
