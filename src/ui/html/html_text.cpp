#include "ui/html/html_text.h"

#include "ui/printable.h"

namespace tessary {
namespace {

std::string_view ReferenceFor(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string HtmlText(std::string_view text) {
  const std::string printable = Printable(text);
  std::string result;
  result.reserve(printable.size());
  for (const char c : printable) {
    const std::string_view reference = ReferenceFor(c);
    if (reference.empty()) {
      result.push_back(c);
    } else {
      result.append(reference);
    }
  }
  return result;
}

}  // namespace tessary
