#pragma once

#include <string_view>

#include "manager/convert_ll_mgr.h"

namespace tessary {

// What the progress window says of an operation at its beginning.
struct BXConvertLLMgr::Captions {
  std::string_view bold;
  std::string_view first_step;
};

}  // namespace tessary
