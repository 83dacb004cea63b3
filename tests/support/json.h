#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace tessary {

// Members stay in the order in which they were written.
using Json = nlohmann::ordered_json;

// Compiled once: each kind of text that is parsed directly would take seconds to compile.
Json ParseJson(const std::string& text);

}  // namespace tessary
