#include "support/json.h"

namespace tessary {

Json ParseJson(const std::string& text) { return Json::parse(text); }

}  // namespace tessary
