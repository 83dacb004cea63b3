// Any text as the name of a difference file.

#include "fuzz/fuzz_target.h"
#include "manager/user_section.h"
#include "platform/text.h"

using namespace tessary;

namespace {

// Nothing that a number could go on with.
bool IsPlainLetter(char c) { return 'f' <= (c | 0x20) && (c | 0x20) <= 'z'; }

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name = DecodeWindows1252(fuzz::Bytes(data, size));
  const DiffFileName parsed = ParseDiffFileName(name);
  fuzz::Require(name.ends_with(parsed.reference), "the reference is the name's end");
  fuzz::Require(!parsed.IsValid() || name.find('_') != std::string::npos, "versions need a _");
  // A plain name comes back from what was read out of it.
  const bool plain = parsed.IsValid() && IsPlainLetter(parsed.reference.front());
  if (plain) {
    const DiffFileName again =
        ParseDiffFileName(std::to_string(parsed.old_version) + "_" +
                          std::to_string(parsed.new_version) + parsed.reference);
    fuzz::Require(again.old_version == parsed.old_version, "the old version stays");
    fuzz::Require(again.new_version == parsed.new_version, "the new version stays");
    fuzz::Require(again.reference == parsed.reference, "the reference stays");
  }
  return 0;
}
