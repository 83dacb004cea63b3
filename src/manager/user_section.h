#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file_system.h"

// A report's header, the keys "Version" and "Referenzbeleg" of its section "UserSection", and the
// name of the difference file between two versions of a report.

namespace tessary {

// The version of a report; 0 when it is missing, is no number or the path is blank.
std::int32_t GetReportVersion(FileSystem& files, const std::string& path);

// The name of the document that a report belongs to, untrimmed; empty when it is missing.
std::string GetReportReference(FileSystem& files, const std::string& path);

// True when the file is a report: its name has an extension without "~", its version is at least 1
// and its reference is not blank. Both are set as far as they could be read, the reference trimmed.
// Never fails.
bool IsReportFile(FileSystem& files, const std::string& path, std::int32_t& version,
                  std::string& reference);

// Old version, "_", new version and the new report's reference, without an extension.
std::string BuildDiffFileName(FileSystem& files, const std::string& old_path,
                              const std::string& new_path);

struct DiffFileName {
  std::string reference;
  std::int32_t old_version = 0;
  std::int32_t new_version = 0;

  // True when a difference file may have this name: a reference and ascending versions from 1 on.
  bool IsValid() const {
    return !reference.empty() && old_version >= 1 && new_version >= 1 && old_version < new_version;
  }
};

// The reverse of BuildDiffFileName. All digits behind the "_" count as the new version; if nothing
// follows them the last digit is the reference as well.
DiffFileName ParseDiffFileName(std::string_view name);

}  // namespace tessary
