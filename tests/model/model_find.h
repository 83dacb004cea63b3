#pragma once

#include <string>

#include "model_tree.h"

namespace tessary::model {

// The row of the element that matches `wanted` best, 0 when there is none. Of `wanted` the name,
// the key, the type, the six neighbour texts and the number count; status, value and child do not.
int FindElement(const Array& elements, const Row& wanted);

// Search values that give only name, key and type.
Row Identity(const std::string& name, const std::string& key, const std::string& typ);

}  // namespace tessary::model
