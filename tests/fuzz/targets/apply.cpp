// A report and a difference file that does not belong to it.

#include "fuzz/fuzz_target.h"
#include "platform/failure.h"
#include "support/engine_trees.h"

using namespace tessary;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto parts = fuzz::Parts(data, size, 2);
  const TestEngine engine;
  try {
    const auto report = ReadLines(engine.context, fuzz::FileLines(parts[0]));
    const auto difference = ReadLines(engine.context, fuzz::FileLines(parts[1]));
    const auto level = engine.NewLevel(0);
    level->Convert(report, difference);
    WriteLines(engine.context, level->ElementArray());
  } catch (const Failure&) {
    fuzz::Require(!engine.errors.objErrors->empty(), "a failure leaves entries");
  }
  return 0;
}
