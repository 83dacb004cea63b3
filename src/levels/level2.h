#pragma once

#include "levels/level_base.h"

namespace tessary {

// Level 2 has no rules of its own.
class BXLevel2 final : public LevelBase {
 public:
  explicit BXLevel2(const Ref<EngineContext>& context) : LevelBase(context, 2) {}
};

}  // namespace tessary
