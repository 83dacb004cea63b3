#pragma once

#include <string_view>

#include "levels/owner_field_level.h"
#include "platform/text.h"

namespace tessary {

// Level 6: the properties of a table's lines. "LineID" is the key of its line; as the program
// numbers lines itself, it never counts as a difference.
class BXLevel6 final : public OwnerFieldLevel {
 public:
  explicit BXLevel6(const Ref<EngineContext>& context) : OwnerFieldLevel(context, 6) {}

 private:
  Pairing ElementPairing() const override { return {"LineID", true}; }
};

}  // namespace tessary
