#pragma once

#include <string_view>

#include "levels/owner_field_level.h"

namespace tessary {

// Level 1: properties that name objects and layers, and the numbered user and sum variables.
class BXLevel1 final : public OwnerFieldLevel {
 public:
  explicit BXLevel1(const Ref<EngineContext>& context) : OwnerFieldLevel(context, 1) {}

 private:
  // "LayerID" is the key of a layer only where it directly follows "Visible"; the one of an object
  // sets nothing.
  const OwnerProperty* GetOwnerField(std::string_view strName) override;
  bool IsLayerProperty();
  void UpdateBeforeWriting() override { UpdateVariableNumbers(); }

  static bool IsVariableProperty(std::string_view strName);
  // Gives the variables consecutive numbers in row order, one counter for both kinds; reading
  // stripped the numbers.
  void UpdateVariableNumbers();
};

}  // namespace tessary
