// Bytes of a report, read as a file, to a tree and back to bytes.

#include "fuzz/fuzz_target.h"
#include "levels/level_factory.h"
#include "manager/report_io.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "support/memory_files.h"

using namespace tessary;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string in = JoinPath("", "in.lst");
  const std::string out = JoinPath("", "out.lst");
  MemoryFiles files;
  files.Put(in, fuzz::Bytes(data, size));
  SharedErrors errors;
  try {
    const auto context = NewEngineContext(errors, nullptr);
    const auto tree = ReadReport(files, context, in, nullptr);
    fuzz::Require(errors.objErrors->empty(), "reading succeeds without entries");
    WriteReport(files, out, {context, tree}, nullptr);
    const std::string& written = files.Get(out);
    fuzz::Require(written.empty() || written.ends_with("\r\n"), "every line has its end");
    // A line is indented by at most two tabs and a blank, and stands between at most two braces.
    fuzz::Require(written.size() <= 64 * (size + 1), "the output is linear in the input");
  } catch (const Failure&) {
    fuzz::Require(!errors.objErrors->empty(), "a failure leaves entries");
  }
  return 0;
}
