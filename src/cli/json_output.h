#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/change_journal.h"
#include "cli/difference_texts.h"
#include "engine/error_collection.h"
#include "manager/result_log.h"

namespace tessary {

// What only some operations have to say.
struct JsonDetails {
  bool dry_run = false;
  std::optional<ChangeCounts> changes = {};
  const std::vector<CheckedDifference>* differences = nullptr;  // null where none were checked
};

// The result of an operation as one JSON object with a line end, always valid UTF-8:
// "result", "dry_run" for one, "changes" for a conversion, "verification"
// for a checked comparison, "correct", "errors", "entries" and,
// where there are any, "warnings".
std::string ResultAsJson(bool result, const ResultLog& log,
                         const std::vector<std::string>& warnings, const JsonDetails& details = {});

}  // namespace tessary
