#include "engine/write_table.h"

#include <limits>

#include "platform/failure.h"

namespace tessary {

std::string& WriteTable::Append(std::int32_t level) {
  if (rows_.size() >= std::numeric_limits<std::int32_t>::max()) throw Failure(kOutOfMemory);
  rows_.push_back({texts_.size(), level});
  return texts_;
}

void WriteTable::Truncate(std::int32_t rows) {
  const auto count = static_cast<std::size_t>(rows);
  if (count >= rows_.size()) return;
  texts_.resize(rows_[count].begin);
  rows_.resize(count);
}

std::size_t WriteTable::Place(std::int32_t row) const {
  if (row < 1 || row > rows()) throw Failure(kSubscriptOutOfRange);
  return static_cast<std::size_t>(row) - 1;
}

std::string_view WriteTable::Text(std::int32_t row) const {
  const std::size_t place = Place(row);
  const std::size_t begin = rows_[place].begin;
  const std::size_t end = place + 1 < rows_.size() ? rows_[place + 1].begin : texts_.size();
  return std::string_view(texts_).substr(begin, end - begin);
}

}  // namespace tessary
