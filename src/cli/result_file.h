#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace tessary {

// A file that a run writes about itself. Of existing files only earlier ones of the kind, told by
// how they begin, and empty files are overwritten, so that a report, a difference file or a backup
// never is.
struct ResultFileKind {
  std::string_view beginning;
  std::string_view name;     // "Die Protokollseite"
  std::string_view no_such;  // "keine Protokollseite"
};

extern const ResultFileKind kPageFile;
extern const ResultFileKind kJournalFile;

// Why the file cannot be written to `path`, as a German sentence; empty when it can.
std::string WhyNoResultFile(FileSystem& files, const ResultFileKind& kind, const std::string& path);

// Writes the file. Returns why it could not be written; empty when it is on the disk.
std::string WriteResultFile(FileSystem& files, const ResultFileKind& kind, const std::string& path,
                            std::string_view contents);

}  // namespace tessary
