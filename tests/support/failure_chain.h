#pragma once

#include <cstdint>

#include "manager/result_log.h"

namespace tessary {

// Fails the test unless every failure in the log of a run was told the way all failures are told:
// a text that names the report or folder, with messages, and entries of known kinds and sources
// that carry `number`, a number of the component's own, or that of a refused access or a broken
// device, for which the component takes some failures.
void ExpectFailureChain(const ResultLog& log, std::int32_t number);

}  // namespace tessary
