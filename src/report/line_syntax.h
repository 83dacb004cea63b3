#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/text.h"

// What a single line of a report means; pure text functions that keep no state.

namespace tessary {

// Takes the first line off `text` and returns it without its line end, LF or CRLF.
inline std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (end != std::string_view::npos && !line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

// `line` without tabs and blanks at its ends.
inline std::string_view TrimTabsAndBlanks(std::string_view line) {
  const auto is_outer = [](char c) { return c == ' ' || c == '\t'; };
  while (!line.empty() && is_outer(line.front())) line.remove_prefix(1);
  while (!line.empty() && is_outer(line.back())) line.remove_suffix(1);
  return line;
}

// `line` without any tabs. Tabs mostly indent, so only a line that has some inside is copied, into
// `storage`.
std::string_view WithoutTabs(std::string_view line, std::string& storage);

// What a line at `level`, 0 to 11, is indented with: a tab for every four levels, a blank for each
// of the others.
std::string_view LevelSpace(std::int32_t level);

// True when the line is a section header: its first character is "[" and its last is "]".
bool IsSectionLine(std::string_view strLine);

// True when the line equals "[Line]" without regard to case.
bool IsLineSection(std::string_view strLine);

// The three texts of a property line; views into the line that was split.
struct Property {
  std::string_view strName;
  std::string_view strKey;
  std::string_view strValue;
};

// The name of a property line: what stands before its first "=", or the whole line.
inline std::string_view NameOfProperty(std::string_view strLine) {
  return TrimBlanks(strLine.substr(0, strLine.find('=')));
}

// What stands behind the first "=" of a property line, nothing where there is none.
inline std::string_view ValueOfProperty(std::string_view strLine) {
  const auto equals = strLine.find('=');
  return equals == std::string_view::npos ? std::string_view() : strLine.substr(equals + 1);
}

// Splits a property line at its first "="; a line without one has its whole text as name and key.
// A numbered variable ("User3=@Total;Sum(Price)") gets the name "User" or "Sum", its @-name as
// key and the rest as value, so that it is matched by its @-name and not by its number.
Property SplitProperty(std::string_view strLine);

// The text of a property line, the inverse of SplitProperty: name=key;value where key and name
// differ (without regard to case), else key=value, and the trimmed name alone where the key is
// blank.
std::string JoinProperty(std::string_view strName, std::string_view strKey,
                         std::string_view strValue);

// The same, appended to `line`.
void AppendProperty(std::string_view strName, std::string_view strKey, std::string_view strValue,
                    std::string& line);

}  // namespace tessary
