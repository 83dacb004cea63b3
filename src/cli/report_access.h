#pragma once

#include <functional>
#include <string>

#include "cli/commands.h"
#include "engine/element_table.h"
#include "engine/engine_context.h"

namespace tessary {

// Calls `work` with a fresh context and turns its failure into messages: the entries that have
// been collected, or the failure's own text. Returns the exit code.
int WithReports(const CommandSurroundings& around,
                const std::function<void(const Ref<EngineContext>&)>& work);

// Reads a file for a command, with a warning for whatever is odd about it. Null for a file without
// lines; raises Failure.
Ref<ElementTable> ReadForCommand(const CommandSurroundings& around,
                                 const Ref<EngineContext>& context, const std::string& path);

}  // namespace tessary
