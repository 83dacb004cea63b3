// A walk through the levels below an array, with a stack of its own. An array on the way from the
// root to the place of the walk must not come again; one whose levels have all been seen is not
// walked through twice, so that arrays shared by several levels cost no more than their size. Of
// these the height is kept, since another way may lead to them further down.

#include "com/nesting.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "platform/failure.h"

namespace tessary::com {
namespace {

constexpr int kDeepest = 200;

// What must not be met on the walk, beside what leads to itself.
struct Forbidden {
  const ElementTable* array = nullptr;
  const Level* level = nullptr;
};

class Walk {
 public:
  explicit Walk(Forbidden forbidden) : forbidden_(forbidden) {}

  void Through(Ref<ElementTable> root) {
    Enter(std::move(root));
    while (!path_.empty()) Step();
  }

 private:
  static constexpr int kOnPath = -1;

  struct Place {
    Ref<ElementTable> array;
    std::int32_t row = 0;
    int height = 1;  // of what has been seen so far
  };

  void Enter(Ref<ElementTable> array) {
    if (!array) return;
    if (array.get() == forbidden_.array) throw Failure(kInvalidCall);
    const auto [known, is_new] = heights_.try_emplace(array.get(), kOnPath);
    if (!is_new) return Reached(known->second);
    if (path_.size() == kDeepest) throw Failure(kOutOfStack);
    path_.push_back({std::move(array)});
  }

  // An array below the place of the walk has this height.
  void Reached(int height) {
    if (height == kOnPath) throw Failure(kInvalidCall);
    if (path_.size() + static_cast<std::size_t>(height) > kDeepest) throw Failure(kOutOfStack);
    path_.back().height = std::max(path_.back().height, height + 1);
  }

  void Step() {
    Place& place = path_.back();
    if (place.row < place.array->rows()) {
      const Ref<Level> child = place.array->Row(++place.row).child;
      if (!child) return;
      if (child.get() == forbidden_.level) throw Failure(kInvalidCall);
      return Enter(child->ElementArray());
    }
    const int height = place.height;
    heights_[place.array.get()] = height;
    path_.pop_back();
    if (!path_.empty()) Reached(height);
  }

  const Forbidden forbidden_;
  std::vector<Place> path_;
  std::unordered_map<const ElementTable*, int> heights_;
};

}  // namespace

void RequireTree(const Ref<ElementTable>& array) { Walk({}).Through(array); }

void RequireNoCycle(const Level* owner, const Ref<ElementTable>& array, const Ref<Level>& child) {
  if (!child) return;
  if (child.get() == owner) throw Failure(kInvalidCall);
  Walk({array.get(), owner}).Through(child->ElementArray());
}

void RequireNoCycle(const Level& level, const Ref<ElementTable>& array) {
  Walk({nullptr, &level}).Through(array);
}

}  // namespace tessary::com
