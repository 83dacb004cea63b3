#pragma once

#include "engine/engine_context.h"
#include "engine/level.h"
#include "engine/ref.h"

namespace tessary {

// A new level object of class BXLevel0 .. BXLevel9 by its number; Failure 429 for any other number.
Ref<Level> CreateLevel(const Ref<EngineContext>& context, int number);

// A context for one piece of work whose levels are the ten classes. `errors` and `loop` must
// outlive it; `loop` may be null.
Ref<EngineContext> NewEngineContext(SharedErrors& errors, MessageLoop* loop);

}  // namespace tessary
