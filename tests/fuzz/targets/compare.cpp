// Two reports, an old one and a new one, compared by the engine; what comes out is read again.

#include "fuzz/fuzz_target.h"
#include "platform/failure.h"
#include "support/engine_trees.h"

using namespace tessary;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto parts = fuzz::Parts(data, size, 2);
  const TestEngine engine;
  try {
    const auto old_tree = ReadLines(engine.context, fuzz::FileLines(parts[0]));
    const auto new_tree = ReadLines(engine.context, fuzz::FileLines(parts[1]));
    const auto level = engine.NewLevel(0);
    level->Compare(old_tree, new_tree);
    ReadLines(engine.context, WriteLines(engine.context, level->ElementArray()));
  } catch (const Failure&) {
    fuzz::Require(!engine.errors.objErrors->empty(), "a failure leaves entries");
  }
  return 0;
}
