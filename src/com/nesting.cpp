// A walk through all levels below an array, with a list of its own instead of the stack. Arrays
// that several levels share are walked through once.

#include "com/nesting.h"

#include <unordered_set>
#include <vector>

#include "platform/failure.h"

namespace tessary::com {
namespace {

class Walk {
 public:
  // Neither may be met on the way; null forbids nothing.
  Walk(const ElementTable* forbidden_array, const Level* forbidden_level)
      : forbidden_array_(forbidden_array), forbidden_level_(forbidden_level) {}

  void Through(Ref<ElementTable> root) {
    Note(std::move(root));
    while (!waiting_.empty()) {
      const Ref<ElementTable> array = std::move(waiting_.back());
      waiting_.pop_back();
      for (std::int32_t row = 1; row <= array->rows(); ++row) Meet(array->Row(row).child);
    }
  }

 private:
  void Meet(const Ref<Level>& child) {
    if (!child) return;
    if (child.get() == forbidden_level_) throw Failure(kInvalidCall);
    Note(child->ElementArray());
  }

  void Note(Ref<ElementTable> array) {
    if (!array) return;
    if (array.get() == forbidden_array_) throw Failure(kInvalidCall);
    if (noted_.insert(array.get()).second) waiting_.push_back(std::move(array));
  }

  const ElementTable* const forbidden_array_;
  const Level* const forbidden_level_;
  std::vector<Ref<ElementTable>> waiting_;
  std::unordered_set<const ElementTable*> noted_;
};

}  // namespace

void RequireNoCycle(const Level* owner, const Ref<ElementTable>& array, const Ref<Level>& child) {
  if (!child) return;
  if (child.get() == owner) throw Failure(kInvalidCall);
  Walk(array.get(), owner).Through(child->ElementArray());
}

void RequireNoCycle(const Level& level, const Ref<ElementTable>& array) {
  Walk(nullptr, &level).Through(array);
}

}  // namespace tessary::com
