#include "ui/console/protocol_text.h"

#include <array>
#include <string>
#include <string_view>

#include "ui/printable.h"

namespace tessary {
namespace {

// How the image of a node looks in text. Words have one width, so that the texts line up.
struct Mark {
  std::string_view sign;
  std::string_view word;
  std::string_view colour;
};

constexpr std::array<Mark, 3> kMarks = {{
    {"✔", "OK     ", "\x1b[32m"},
    {"✘", "FEHLER ", "\x1b[31m"},
    {"⚠", "Hinweis", "\x1b[33m"},
}};

constexpr std::string_view kNoColour = "\x1b[0m";
constexpr std::size_t kSignIndent = 2;
constexpr std::size_t kWordIndent = 8;

class ProtocolPrinter {
 public:
  ProtocolPrinter(const ProtocolTree& tree, const TextStyle& style, Output& output)
      : tree_(tree), style_(style), output_(output) {}

  void PrintNode(const ProtocolNode& node, std::size_t depth) {
    std::string line(depth * MarkIndent(style_), ' ');
    line.append(MarkText(node.image, style_));
    output_.Line(line.append(" ").append(Printable(node.text)));
    for (const std::size_t child : node.children) PrintNode(tree_.nodes()[child], depth + 1);
  }

 private:
  const ProtocolTree& tree_;
  const TextStyle& style_;
  Output& output_;
};

}  // namespace

std::string MarkText(ProtocolImage image, const TextStyle& style) {
  const Mark& mark = kMarks[static_cast<std::size_t>(image)];
  std::string text(style.colours ? mark.colour : std::string_view());
  text.append(style.unicode_marks ? mark.sign : mark.word);
  return style.colours ? text.append(kNoColour) : text;
}

std::size_t MarkIndent(const TextStyle& style) {
  return style.unicode_marks ? kSignIndent : kWordIndent;
}

void PrintProtocol(const ProtocolTree& tree, ProtocolPart part, const TextStyle& style,
                   Output& output) {
  ProtocolPrinter printer(tree, style, output);
  for (const std::size_t index : tree.top_level()) {
    const ProtocolNode& node = tree.nodes()[index];
    const bool succeeded = node.image == ProtocolImage::kCorrect && node.children.empty();
    if (part == ProtocolPart::kAll || !succeeded) printer.PrintNode(node, 0);
  }
}

}  // namespace tessary
