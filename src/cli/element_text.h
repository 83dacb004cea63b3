#pragma once

#include <string>

#include "engine/element.h"
#include "engine/text_pool.h"

namespace tessary {

// An element as one line for reading: its status in words where it has one, the line it stands
// for, what identifies a section, and for an element of a difference its neighbours and number.
// The text may hold any characters.
std::string ElementText(const Element& element, const TextPool& pool);

}  // namespace tessary
