#pragma once

#include "levels/owner_field_level.h"

namespace tessary {

// Level 8: a text is the key of its column.
class BXLevel8 final : public OwnerFieldLevel {
 public:
  explicit BXLevel8(const Ref<EngineContext>& context) : OwnerFieldLevel(context, 8) {}
};

}  // namespace tessary
