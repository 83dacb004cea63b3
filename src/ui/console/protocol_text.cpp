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
    const Mark& mark = kMarks[static_cast<std::size_t>(node.image)];
    const std::string_view sign = style_.unicode_marks ? mark.sign : mark.word;
    std::string line(depth * (style_.unicode_marks ? kSignIndent : kWordIndent), ' ');
    if (style_.colours) line.append(mark.colour);
    line.append(sign);
    if (style_.colours) line.append(kNoColour);
    output_.Line(line.append(" ").append(Printable(node.text)));
    for (const std::size_t child : node.children) PrintNode(tree_.nodes()[child], depth + 1);
  }

 private:
  const ProtocolTree& tree_;
  const TextStyle& style_;
  Output& output_;
};

}  // namespace

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
