#pragma once

#include <cstddef>

#include "ui/console/output.h"
#include "ui/repair_guide.h"

namespace tessary {

// Prints the introduction and the numbered steps, each value on a line of its own below its step.
// Sentences are wrapped at `columns`; 0 for not at all. Values never are, so that they can be
// copied.
void PrintRepairGuide(const RepairGuide& guide, std::size_t columns, Output& output);

}  // namespace tessary
