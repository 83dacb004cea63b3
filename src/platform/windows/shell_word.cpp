// Programs take "\" before a quotation mark for its escape, so those at the end are doubled.

#include "platform/shell_word.h"

namespace tessary {
namespace {

constexpr std::string_view kSpecial = " \t&|<>()^;,='`!\"";

}  // namespace

std::string ShellWord(std::string_view argument) {
  if (!argument.empty() && argument.find_first_of(kSpecial) == std::string_view::npos) {
    return std::string(argument);
  }
  std::string word = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') word.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    word.push_back(c);
  }
  return word.append(backslashes, '\\').append("\"");
}

}  // namespace tessary
