#include "engine/number_of.h"

#include "platform/failure.h"
#include "platform/number.h"

namespace tessary {

std::int32_t NumberOf(std::string_view text) {
  if (const auto number = ToLong(text)) return *number;
  throw Failure(IsNumeric(text) ? kOverflow : kTypeMismatch);
}

}  // namespace tessary
