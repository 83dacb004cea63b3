#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/element_text.h"
#include "cli/report_access.h"
#include "ui/printable.h"

namespace tessary {
namespace {

constexpr std::size_t kIndentPerLevel = 2;

void PrintElements(EngineContext& context, const Ref<ElementTable>& elements, std::size_t depth,
                   Output& output) {
  if (!elements) return;
  for (std::int32_t row = 1; row <= elements->rows(); ++row) {
    const Element& element = elements->Row(row);
    output.Line(std::string(kIndentPerLevel * depth, ' ') +
                Printable(ElementText(element, elements->pool())));
    PrintElements(context, context.ContentsOf(element), depth + 1, output);
  }
}

}  // namespace

int RunShow(const CommandLine& line, const CommandSurroundings& around) {
  return WithReports(around, [&](const Ref<EngineContext>& context) {
    PrintElements(*context, ReadForCommand(around, context, AbsolutePath(line.operands[0])), 0,
                  around.output);
  });
}

}  // namespace tessary
