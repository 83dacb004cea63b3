// Texts are interned in an open-addressing hash table of entry numbers; what the hash has above
// them tells most other texts apart before an entry is looked at. When a text comes in for the
// first time its case folding is interned too and remembered, so that comparing without
// regard to case costs two look-ups by number.

#include "engine/text_pool.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/ascii_run.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::size_t kBlockSize = 64 * 1024;
constexpr std::size_t kFirstTableSize = 4096;
constexpr std::int32_t kNumberLimit = 1 << 20;

std::uint64_t Mix(std::uint64_t a, std::uint64_t b) {
  const std::uint64_t product = (a ^ b) * 0x9E3779B97F4A7C15u;
  return product ^ (product >> 32);
}

// Texts are short, so the set-up must be cheap: words are read whole, the last two may overlap.
std::uint32_t Hash(std::string_view text) {
  std::uint64_t hash = text.size() * 0xFF51AFD7ED558CCDu;
  if (text.size() <= kWordBytes) {
    hash = Mix(hash, ShortWord(text));
  } else {
    const char* const last = text.data() + text.size() - kWordBytes;
    for (const char* at = text.data(); at < last; at += kWordBytes) hash = Mix(hash, LoadWord(at));
    hash = Mix(hash, LoadWord(last));
  }
  return static_cast<std::uint32_t>(hash ^ (hash >> 29));
}

// For texts of the same size.
bool SameBytes(std::string_view a, std::string_view b) {
  if (a.size() <= kWordBytes) return ShortWord(a) == ShortWord(b);
  const std::size_t last = a.size() - kWordBytes;
  for (std::size_t at = 0; at < last; at += kWordBytes) {
    if (LoadWord(a.data() + at) != LoadWord(b.data() + at)) return false;
  }
  return LoadWord(a.data() + last) == LoadWord(b.data() + last);
}

bool IsFoldedAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c >= 0 && (c < 'A' || c > 'Z'); });
}

}  // namespace

TextPool::TextPool() : table_(kFirstTableSize) {
  entries_.reserve(kFirstTableSize / 2);
  Insert({}, Hash({}) & Mask(), Hash({}));
}

TextPool::~TextPool() = default;

Symbol TextPool::InternFilled(std::string_view text) {
  const std::uint32_t hash = Hash(text);
  const std::uint32_t mask = Mask();
  for (std::uint32_t slot = hash & mask;; slot = (slot + 1) & mask) {
    const std::uint32_t found = table_[slot];
    if (found == 0) return Insert(Keep(text), slot, hash);
    if (((found ^ hash) & ~mask) != 0) continue;
    const std::uint32_t index = (found & mask) - 1;
    const std::string_view known = entries_[index].text();
    if (known.size() == text.size() && SameBytes(known, text)) return static_cast<Symbol>(index);
  }
}

Symbol TextPool::InternNumber(std::int32_t number) {
  if (number < 0 || number >= kNumberLimit) return Intern(std::to_string(number));
  const auto place = static_cast<std::size_t>(number);
  if (place >= numbers_.size()) numbers_.resize(std::max(place + 1, 2 * numbers_.size()));
  if (numbers_[place] == Symbol::kEmpty) numbers_[place] = Intern(std::to_string(number));
  return numbers_[place];
}

Symbol TextPool::Insert(std::string_view text, std::uint32_t slot, std::uint32_t hash) {
  if (entries_.size() >= std::numeric_limits<std::uint32_t>::max() - 1) throw Failure(kOutOfMemory);
  const auto symbol = static_cast<Symbol>(entries_.size());
  const auto size = static_cast<std::uint32_t>(text.size());
  if (size != text.size()) throw Failure(kOutOfMemory);
  entries_.push_back({text.data(), size, symbol});
  table_[slot] = (hash & ~Mask()) | static_cast<std::uint32_t>(entries_.size());
  if (2 * entries_.size() > table_.size()) GrowTable();
  if (!IsFoldedAscii(text)) entries_[Index(symbol)].fold = FoldOf(text, symbol);
  return symbol;
}

Symbol TextPool::FoldOf(std::string_view text, Symbol self) {
  const std::string folded = FoldCase(text);
  return folded == text ? self : Intern(folded);
}

void TextPool::GrowTable() {
  table_.assign(2 * table_.size(), 0);
  const std::uint32_t mask = Mask();
  for (std::uint32_t number = 1; number <= entries_.size(); ++number) {
    const std::uint32_t hash = Hash(entries_[number - 1].text());
    std::uint32_t slot = hash & mask;
    while (table_[slot] != 0) slot = (slot + 1) & mask;
    table_[slot] = (hash & ~mask) | number;
  }
}

std::string_view TextPool::Keep(std::string_view text) {
  if (text.empty()) return {};
  if (IsAdopted(text)) return text;
  if (text.size() > block_left_) {
    const std::size_t size = std::max(kBlockSize, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
    block_next_ = blocks_.back().get();
    block_left_ = size;
  }
  std::memcpy(block_next_, text.data(), text.size());
  const std::string_view kept(block_next_, text.size());
  block_next_ += text.size();
  block_left_ -= text.size();
  return kept;
}

std::string_view TextPool::Adopt(std::string buffer) {
  buffers_.push_back(std::make_unique<std::string>(std::move(buffer)));
  return *buffers_.back();
}

// The buffer adopted last is the one that is being read.
bool TextPool::IsAdopted(std::string_view text) const {
  return std::any_of(buffers_.rbegin(), buffers_.rend(), [&](const auto& buffer) {
    const std::less_equal<const char*> not_after;
    return not_after(buffer->data(), text.data()) &&
           not_after(text.data() + text.size(), buffer->data() + buffer->size());
  });
}

}  // namespace tessary
