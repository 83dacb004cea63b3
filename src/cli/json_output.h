#pragma once

#include <string>
#include <vector>

#include "engine/error_collection.h"
#include "manager/result_log.h"

namespace tessary {

// The result of an operation as one JSON object with a line end, always valid UTF-8:
// "result", "dry_run" for one, "correct", "errors", "entries" and, where there are any, "warnings".
std::string ResultAsJson(bool result, const ResultLog& log,
                         const std::vector<std::string>& warnings, bool dry_run = false);

}  // namespace tessary
