#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace tessary {

// Why a page cannot be written to `path`, as a German sentence; empty when it can. Of existing
// files only earlier pages and empty files are overwritten, so that a report, a difference file or
// a backup never is.
std::string WhyNoPage(FileSystem& files, const std::string& path);

// Writes the page. Returns why it could not be written; empty when it is on the disk.
std::string WritePage(FileSystem& files, const std::string& path, std::string_view html);

}  // namespace tessary
