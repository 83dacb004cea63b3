#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/ref.h"
#include "engine/text_pool.h"
#include "platform/failure.h"

namespace tessary {

class Level;

enum BXStatus : std::int32_t { bxsDelete = 0, bxsNew = 1, bxsUpdate = 2, bxsUnknown = 3 };

enum BXLineType : std::int32_t { bxltSection = 0, bxltProperty = 1, bxltUnknown = 2 };

// The columns of an element array.
enum BXElementArray : std::int32_t {
  bxeaStatus = 0,
  bxeaName = 1,
  bxeaKey = 2,
  bxeaTyp = 3,
  bxeaPosPrevName = 4,
  bxeaPosPrevKey = 5,
  bxeaPosPrevTyp = 6,
  bxeaPosNextName = 7,
  bxeaPosNextKey = 8,
  bxeaPosNextTyp = 9,
  bxeaPosNr = 10,
  bxeaValue = 11,
  bxeaElement = 12,
};

enum BXLevelBasisErrors : std::int32_t { bxlbeCheckMissingElements = 0 };

// What identifies an element and tells its place: the columns bxeaName to bxeaPosNr.
class ElementKey {
 public:
  ElementKey() = default;
  // An element looked up by its identity alone; the position columns are empty.
  ElementKey(Symbol name, Symbol key, Symbol typ) : texts_{name, key, typ} {}

  Symbol operator[](BXElementArray column) const { return texts_[Place(column)]; }
  Symbol& operator[](BXElementArray column) { return texts_[Place(column)]; }

  // The identity without the position.
  ElementKey Identity() const { return {(*this)[bxeaName], (*this)[bxeaKey], (*this)[bxeaTyp]}; }

 private:
  static std::size_t Place(BXElementArray column) {
    return static_cast<std::size_t>(column) - bxeaName;
  }
  std::array<Symbol, bxeaPosNr> texts_{};
};

// One row of an element array: a section or a property of a report. Its texts live in the pool of
// the array. The child level is the object that holds a section's contents; one that nobody has
// asked for yet is only noted by the number of its class, since most properties never need theirs.
struct Element {
  static constexpr std::int8_t kNoChild = -1;

  ElementKey key;
  Ref<Level> child;
  std::int8_t status = bxsUnknown;
  std::int8_t pending_child = kNoChild;
  bool line_id_due = false;  // a table line whose "LineID" does not yet state the number in its key

  bool HasChild() const { return child || pending_child != kNoChild; }
  // No text while the contents are unread.
  std::string_view value() const { return unread_ ? std::string_view() : text(); }
  // Not while the contents are unread, which raises Failure 5; 7 for a text whose size does not
  // fit.
  void set_value(std::string_view kept) {
    if (unread_) throw Failure(kInvalidCall);
    set_text(kept);
  }

  // The lines of a file that the pending child level will read when it comes into being; empty
  // where there are none.
  std::string_view unread() const { return unread_ ? text() : std::string_view(); }
  // For a section of a file, which has no value and whose child level is pending.
  void set_unread(std::string_view lines) {
    set_text(lines);
    unread_ = true;
  }
  // Null: without a child level from now on.
  void set_child(Ref<Level> level);

 private:
  std::string_view text() const { return {text_, text_size_}; }
  void set_text(std::string_view kept) {
    const auto size = static_cast<std::uint32_t>(kept.size());
    if (size != kept.size()) throw Failure(kOutOfMemory);
    text_ = kept.data();
    text_size_ = size;
  }

  // The value of a property, or the unread lines of a section. Large reports have very many
  // elements, so the order of the members leaves no gaps.
  bool unread_ = false;
  std::uint32_t text_size_ = 0;
  const char* text_ = nullptr;
};
static_assert(sizeof(void*) != 8 || sizeof(Element) == 64);

}  // namespace tessary
