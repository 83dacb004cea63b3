#include "platform/shell_word.h"

#include <algorithm>

namespace tessary {
namespace {

constexpr std::string_view kPlainMarks = "/._-+=,:@%";

bool IsPlain(char c) {
  const auto lower = static_cast<char>(c | 0x20);
  return (c >= '0' && c <= '9') || (lower >= 'a' && lower <= 'z') ||
         kPlainMarks.find(c) != std::string_view::npos || (c & 0x80) != 0;
}

}  // namespace

std::string ShellWord(std::string_view argument) {
  if (!argument.empty() && std::all_of(argument.begin(), argument.end(), IsPlain)) {
    return std::string(argument);
  }
  std::string word = "'";
  for (const char c : argument) {
    if (c == '\'') {
      word.append("'\\''");
    } else {
      word.push_back(c);
    }
  }
  return word.append("'");
}

}  // namespace tessary
