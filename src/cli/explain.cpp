#include <array>
#include <cstdlib>
#include <optional>

#include "cli/commands.h"
#include "cli/message_page.h"
#include "cli/tessary.h"
#include "platform/text.h"
#include "ui/message_guide.h"

namespace tessary {
namespace {

// A number as it stands in a protocol or a program: decimal, also unsigned, or hexadecimal.
std::optional<std::int32_t> NumberIn(const std::string& text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  const char* const begin = text.c_str();
  char* end = nullptr;
  const long long value = std::strtoll(begin, &end, hex ? 16 : 10);
  if (text.empty() || *end != '\0' || end == begin) return std::nullopt;
  if (value < INT32_MIN || value > UINT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

// Messages are copied from a protocol with the mark in front of them.
constexpr std::array<std::string_view, 8> kMarks = {"OK", "FEHLER", "Hinweis",  "✔",
                                                    "✘",  "⚠",      "Warnung:", "tessary:"};

std::string WithoutMark(std::string_view text) {
  for (bool found = true; found;) {
    text = TrimBlanks(text);
    found = false;
    for (const std::string_view mark : kMarks) {
      if (!text.starts_with(mark) || !text.substr(mark.size()).starts_with(' ')) continue;
      text.remove_prefix(mark.size());
      found = true;
    }
  }
  return std::string(text);
}

std::vector<const MessageGuide*> GuidesFor(const std::string& wanted) {
  if (const auto number = NumberIn(wanted)) return MessageGuidesOf(*number);
  if (const MessageGuide* guide = FindMessageGuide(wanted)) return {guide};
  return SearchMessageGuides(wanted);
}

void Print(const MessageGuide& guide, Output& output) {
  output.Line(std::string(guide.text));
  if (guide.number != 0) output.Line("  Nummer:  " + NumberText(guide.number));
  output.Line("  Ursache: " + std::string(guide.cause));
  output.Line("  Abhilfe: " + std::string(guide.remedy));
}

}  // namespace

int RunExplain(const CommandLine& line, const CommandSurroundings& around) {
  if (line.operands.empty()) {
    around.output.Text(MessagePage());
    return kExitDone;
  }
  const auto guides = GuidesFor(WithoutMark(line.operands[0]));
  if (guides.empty()) {
    around.messages.Print("tessary: Zu „" + line.operands[0] + "“ gibt es keine Erklärung.");
    return kExitFailed;
  }
  for (const MessageGuide* guide : guides) {
    if (guide != guides.front()) around.output.Line("");
    Print(*guide, around.output);
  }
  return kExitDone;
}

}  // namespace tessary
