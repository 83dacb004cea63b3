#include "engine/level.h"

#include <new>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::string_view kClassPrefix = "Tessary.BXLevel";

}  // namespace

void Element::set_child(Ref<Level> level) {
  child = std::move(level);
  pending_child = kNoChild;
  if (unread_) set_text({});
  unread_ = false;
}

int LevelClassNumber(std::string_view class_identifier) {
  const bool fits = class_identifier.size() == kClassPrefix.size() + 1 &&
                    EqualsIgnoreCase(class_identifier.substr(0, kClassPrefix.size()), kClassPrefix);
  const int number = fits ? class_identifier.back() - '0' : -1;
  if (number < 1 || number > 9) throw Failure(kCannotCreateObject);
  return number;
}

Ref<Level> EngineContext::CreateLevel(int number) {
  return create_level_(Ref<EngineContext>(this), number);
}

void EngineContext::Bury(Ref<ElementTable> array) noexcept {
  try {
    buried_.push_back(std::move(array));
  } catch (const std::bad_alloc&) {
    return;  // it goes now, with nested calls
  }
  if (burying_) return;
  burying_ = true;
  while (!buried_.empty()) {
    const Ref<ElementTable> next = std::move(buried_.back());
    buried_.pop_back();
  }
  burying_ = false;
}

Ref<Level> EngineContext::NewChild(const Element& element) {
  Ref<Level> child = CreateLevel(element.pending_child);
  if (!element.unread().empty()) child->ReadLines(element.unread());
  return child;
}

Ref<Level> EngineContext::ChildOf(ElementTable& array, std::int32_t row) {
  const Element& element = array.Row(row);
  if (element.child || !element.HasChild()) return element.child;
  Ref<Level> child = NewChild(element);
  array.SetChild(row, child);
  return child;
}

Ref<Level> EngineContext::ChildOf(Element& element) {
  if (!element.child && element.HasChild()) element.set_child(NewChild(element));
  return element.child;
}

Ref<ElementTable> EngineContext::ContentsOf(const Element& element) {
  if (element.child) return element.child->ElementArray();
  return element.unread().empty() ? nullptr : NewChild(element)->ElementArray();
}

}  // namespace tessary
