#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ref.h"

namespace tessary {

// A text of a pool by its number. Equal texts of one pool have equal numbers; 0 is the empty text.
enum class Symbol : std::uint32_t { kEmpty = 0 };

// Keeps the texts of the element trees of one piece of work. Names, keys and types repeat
// throughout a report, so each different text is stored once and elements carry small numbers
// whose comparison, also the one without regard to case, needs no look at the characters.
// All trees that are compared with or applied to each other share one pool.
class TextPool : public RefCounted {
 public:
  TextPool();
  ~TextPool() override;

  // The symbol of `text`. The pool keeps a copy, or refers to an adopted buffer that holds `text`.
  Symbol Intern(std::string_view text) {
    return text.empty() ? Symbol::kEmpty : InternFilled(text);
  }
  // The symbol of a number's decimal text.
  Symbol InternNumber(std::int32_t number);

  // The text of a symbol; valid as long as the pool.
  std::string_view Text(Symbol symbol) const { return entries_[Index(symbol)].text(); }

  // The symbol that stands for all texts that equal this one without regard to case.
  Symbol Fold(Symbol symbol) const { return entries_[Index(symbol)].fold; }
  bool Same(Symbol a, Symbol b) const { return a == b || Fold(a) == Fold(b); }

  // A copy of `text` that lives as long as the pool; no copy is made of a part of an adopted
  // buffer.
  std::string_view Keep(std::string_view text);

  // Takes over a buffer, such as a whole file, whose parts can then be kept without copying.
  std::string_view Adopt(std::string buffer);

 private:
  // There are very many of these in a large report.
  struct Entry {
    const char* data;
    std::uint32_t size;
    Symbol fold;

    std::string_view text() const { return {data, size}; }
  };

  Symbol InternFilled(std::string_view text);
  static std::size_t Index(Symbol symbol) { return static_cast<std::size_t>(symbol); }
  std::uint32_t Mask() const { return static_cast<std::uint32_t>(table_.size() - 1); }
  Symbol Insert(std::string_view text, std::uint32_t slot, std::uint32_t hash);
  Symbol FoldOf(std::string_view text, Symbol self);
  void GrowTable();
  bool IsAdopted(std::string_view text) const;

  std::vector<Entry> entries_;
  // Open addressing: below the mask the number of an entry, from 1 on, above it what the hash has
  // there; 0 where free.
  std::vector<std::uint32_t> table_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* block_next_ = nullptr;
  std::size_t block_left_ = 0;
  std::vector<std::unique_ptr<std::string>> buffers_;
  std::vector<Symbol> numbers_;  // symbols of small non-negative numbers, by number
};

}  // namespace tessary
