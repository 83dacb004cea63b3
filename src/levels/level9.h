#pragma once

#include "levels/owner_field_level.h"

namespace tessary {

// The deepest level: contents are the key of their column. Children are of the same class.
class BXLevel9 final : public OwnerFieldLevel {
 public:
  explicit BXLevel9(const Ref<EngineContext>& context) : OwnerFieldLevel(context, 9) {}
};

}  // namespace tessary
