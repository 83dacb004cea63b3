#pragma once

#include <string>
#include <string_view>

// What a single line of a report means; pure text functions that keep no state.

namespace tessary {

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
