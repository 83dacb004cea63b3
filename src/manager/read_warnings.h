#pragma once

#include <string>
#include <vector>

#include "manager/report_io.h"

namespace tessary {

// What deserves attention about a file that has been read: lines left out, blocks left open.
std::vector<std::string> ReadWarnings(const std::string& path, const ReadStatistics& read);

}  // namespace tessary
