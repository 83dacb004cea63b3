#pragma once

#include "levels/owner_field_level.h"

namespace tessary {

// Level 4: a text is the key of its line.
class BXLevel4 final : public OwnerFieldLevel {
 public:
  explicit BXLevel4(const Ref<EngineContext>& context) : OwnerFieldLevel(context, 4) {}
};

}  // namespace tessary
