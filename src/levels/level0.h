#pragma once

#include "levels/level_base.h"

namespace tessary {

// The top level of a report. It reports failures of Compare under the name of Add, which callers
// that evaluate source texts expect.
class BXLevel0 final : public LevelBase {
 public:
  explicit BXLevel0(const Ref<EngineContext>& context) : LevelBase(context, 0) {}

 private:
  std::string_view CompareProcedure() const override { return "BXLevelBasis_Add"; }
};

}  // namespace tessary
