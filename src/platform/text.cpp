#include "platform/text.h"

namespace tessary {

std::string_view TrimLeadingBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::string_view TrimBlanks(std::string_view text) {
  const std::string_view rest = TrimLeadingBlanks(text);
  return rest.substr(0, rest.find_last_not_of(' ') + 1);
}

}  // namespace tessary
