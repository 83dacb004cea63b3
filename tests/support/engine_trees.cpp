#include "support/engine_trees.h"

#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

void DumpRows(const Ref<ElementTable>& tree, std::size_t depth, std::string& text) {
  if (IsArrayEmpty(tree)) return;
  for (std::int32_t row = 1; row <= tree->rows(); ++row) {
    const Element& element = tree->Row(row);
    text.append(2 * depth, ' ').push_back("DNU-"[element.status]);
    for (int column = bxeaName; column <= bxeaPosNr; ++column) {
      text += column == bxeaName ? ' ' : '|';
      text += tree->pool().Text(element.key[static_cast<BXElementArray>(column)]);
    }
    text.append("|").append(element.value()).append("\n");
    DumpRows(ContentsOf(element), depth + 1, text);
  }
}

}  // namespace

Ref<ElementTable> ContentsOf(const Element& element) {
  const TestEngine engine;
  return engine.context->ContentsOf(element);
}

Ref<ElementTable> ReadLines(const Ref<EngineContext>& context,
                            const std::vector<std::string>& lines) {
  BXReportFile store(context);
  for (const std::string& line : lines) {
    if (!TrimBlanks(line).empty()) store.AddLine(line);
  }
  return store.ReportFile();
}

Ref<ElementTable> ReadFileOfLines(const Ref<EngineContext>& context,
                                  const std::vector<std::string>& lines) {
  FileSections none;
  return ReadReleaseOfLines(context, lines, none);
}

Ref<ElementTable> ReadReleaseOfLines(const Ref<EngineContext>& context,
                                     const std::vector<std::string>& lines,
                                     FileSections& sections) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  BXReportFile store(context);
  store.AddLines(context->pool()->Adopt(std::move(text)), &sections);
  return store.ReportFile();
}

std::vector<std::string> WriteLines(const Ref<EngineContext>& context,
                                    const Ref<ElementTable>& tree) {
  BXReportFile store(context);
  store.SetReportFile(tree);
  std::vector<std::string> lines;
  for (std::string line = store.GetFirstLine(); !line.empty(); line = store.GetNextLine()) {
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> WriteBlocks(const Ref<EngineContext>& context,
                                     const Ref<ElementTable>& tree) {
  BXReportFile store(context);
  store.SetReportFile(tree);
  std::vector<std::string> lines;
  std::string block;
  for (bool more = store.AppendFirstBlock(block); more; more = store.AppendNextBlock(block)) {
    block += "\r\n";
    for (std::string_view rest = block; !rest.empty();) lines.emplace_back(TakeLine(rest));
    block.clear();
  }
  return lines;
}

std::string Dump(const Ref<ElementTable>& tree) {
  std::string text;
  DumpRows(tree, 0, text);
  return text;
}

}  // namespace tessary
