// Any bytes as a file whose header is looked for.

#include "fuzz/fuzz_target.h"
#include "manager/user_section.h"
#include "platform/path.h"
#include "platform/profile_string.h"
#include "platform/text.h"
#include "support/memory_files.h"

using namespace tessary;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = JoinPath("", "a.lst");
  MemoryFiles files;
  files.Put(path, fuzz::Bytes(data, size));
  std::int32_t version = 0;
  std::string reference;
  const bool is_report = IsReportFile(files, path, version, reference);
  fuzz::Require(is_report == (version >= 1 && !reference.empty()), "a report has a header");
  fuzz::Require(version == GetReportVersion(files, path), "the version is the header's");
  fuzz::Require(reference == TrimBlanks(GetReportReference(files, path)), "so is the reference");
  for (const char* key : {"Version", "Referenzbeleg", ""}) {
    const std::string value = FindProfileString(files.Get(path), "usersection", key);
    fuzz::Require(value.find('\n') == std::string::npos, "a value is part of a line");
    fuzz::Require(value.size() <= 4 * 2047, "a value is cut");
  }
  BuildDiffFileName(files, path, path);
  return 0;
}
