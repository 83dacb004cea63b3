#include "report/line_syntax.h"

#include <algorithm>
#include <iterator>

#include "platform/number.h"
#include "platform/text.h"

namespace tessary {
namespace {

// The prefix that makes a key a numbered variable. It may stand anywhere in the key; the number
// is nevertheless expected behind the key's first characters, which keeps a key such as "XSum12"
// an ordinary one.
std::string_view VariablePrefix(std::string_view key) {
  for (std::string_view prefix : {"User", "Sum"}) {
    if (FindIgnoreCase(key, prefix) != std::string_view::npos) return prefix;
  }
  return {};
}

bool IsNumberedVariable(std::string_view key, std::string_view prefix) {
  return !prefix.empty() && key.size() > prefix.size() && IsNumeric(key.substr(prefix.size()));
}

// The tests may come in any order; this one is quick to say no to an ordinary property.
void SplitVariable(Property& property) {
  const std::string_view value = TrimLeadingBlanks(property.strValue);
  if (!value.starts_with('@')) return;
  const auto semicolon = value.find(';');
  if (semicolon == std::string_view::npos) return;
  const std::string_view prefix = VariablePrefix(property.strKey);
  if (!IsNumberedVariable(property.strKey, prefix)) return;
  property = {prefix, TrimBlanks(value.substr(0, semicolon)), value.substr(semicolon + 1)};
}

}  // namespace

std::string_view WithoutTabs(std::string_view line, std::string& storage) {
  if (line.find('\t') == std::string_view::npos) return line;
  storage.clear();
  std::copy_if(line.begin(), line.end(), std::back_inserter(storage),
               [](char c) { return c != '\t'; });
  return storage;
}

std::string_view LevelSpace(std::int32_t level) {
  constexpr std::string_view kSpace = "\t\t   ";
  const auto tabs = static_cast<std::size_t>(level / 4);
  const auto blanks = static_cast<std::size_t>(level % 4);
  return kSpace.substr(2 - tabs, tabs + blanks);
}

bool IsSectionLine(std::string_view strLine) {
  return !strLine.empty() && strLine.front() == '[' && strLine.back() == ']';
}

bool IsLineSection(std::string_view strLine) { return EqualsIgnoreCase(strLine, "[Line]"); }

Property SplitProperty(std::string_view strLine) {
  const std::string_view line = TrimBlanks(strLine);
  const auto equals = line.find('=');
  if (equals == std::string_view::npos) return {line, line, {}};
  const std::string_view name = TrimBlanks(line.substr(0, equals));
  Property property{name, name, line.substr(equals + 1)};
  if (!name.empty() && !property.strValue.empty()) SplitVariable(property);
  return property;
}

std::string JoinProperty(std::string_view strName, std::string_view strKey,
                         std::string_view strValue) {
  std::string line;
  AppendProperty(strName, strKey, strValue, line);
  return line;
}

void AppendProperty(std::string_view strName, std::string_view strKey, std::string_view strValue,
                    std::string& line) {
  if (!EqualsIgnoreCase(strKey, strName)) {
    line.append(strName).append("=").append(strKey).append(";").append(strValue);
  } else if (!TrimBlanks(strKey).empty()) {
    line.append(strKey).append("=").append(strValue);
  } else {
    line.append(TrimBlanks(strName));
  }
}

}  // namespace tessary
