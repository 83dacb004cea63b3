#pragma once

#include <string_view>

#include "levels/level_base.h"
#include "levels/report_format.h"

namespace tessary {

// A level in which a property's value is the key or the type of the section that owns it, as the
// table of owner properties says.
class OwnerFieldLevel : public LevelBase {
 protected:
  using LevelBase::LevelBase;

  // What the property of this name sets, or null.
  virtual const OwnerProperty* GetOwnerField(std::string_view strName) {
    return FindOwnerProperty(number(), strName);
  }

 private:
  void ApplyPropertyRule(const Property& property) override;
};

}  // namespace tessary
