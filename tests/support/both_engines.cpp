#include "support/both_engines.h"

#include <functional>

#include "model/model_compare.h"
#include "model/model_convert.h"
#include "model/model_report.h"
#include "model/random_reports.h"
#include "platform/failure.h"
#include "support/engine_trees.h"

namespace tessary {
namespace {

using Lines = std::vector<std::string>;

std::string Outcome(const std::function<std::string()>& work) {
  try {
    return work();
  } catch (const Failure& failure) {
    return "failure " + std::to_string(failure.number());
  }
}

using Reader = Ref<ElementTable> (*)(const Ref<EngineContext>&, const Lines&);
using Teller = std::string (*)(const Ref<ElementTable>&);

std::string TellNothing(const Ref<ElementTable>&) { return {}; }

// What the work comes to, whichever way the engine reads. Telling a tree reads all of it, so what
// is written is also looked at without.
std::string EngineOutcome(const std::function<std::string(Reader, Teller)>& work) {
  for (const Teller tell : {&TellNothing, &Dump}) {
    const std::string by_line = Outcome([&] { return work(&ReadLines, tell); });
    const std::string by_file = Outcome([&] { return work(&ReadFileOfLines, tell); });
    if (by_line != by_file) return "by line\n" + by_line + "by file\n" + by_file;
    if (tell == &Dump) return by_file;
  }
  return {};
}

std::string EngineCompare(const Lines& old_lines, const Lines& new_lines, Lines& difference) {
  return EngineOutcome([&](Reader read, Teller tell) {
    const TestEngine engine;
    const auto old_tree = read(engine.context, old_lines);
    const auto new_tree = read(engine.context, new_lines);
    const auto level = engine.NewLevel(0);
    level->Compare(old_tree, new_tree);
    const std::string tree = tell(level->ElementArray());
    difference = WriteLines(engine.context, level->ElementArray());
    return tree + "--\n" + model::Text(difference) + "--\n" + tell(old_tree) + "--\n" +
           tell(new_tree);
  });
}

std::string ModelCompare(const Lines& old_lines, const Lines& new_lines) {
  return Outcome([&] {
    const auto old_tree = model::ReadLines(old_lines);
    const auto new_tree = model::ReadLines(new_lines);
    model::Level level(0);
    model::Compare(level, old_tree, new_tree);
    const std::string tree = model::Dump(level.rows);
    return tree + "--\n" + model::Text(model::WriteLines(level.rows)) + "--\n" +
           model::Dump(old_tree) + "--\n" + model::Dump(new_tree);
  });
}

std::string EngineConvert(const Lines& report, const Lines& difference) {
  return EngineOutcome([&](Reader read, Teller tell) {
    const TestEngine engine;
    const auto report_tree = read(engine.context, report);
    const auto diff_tree = read(engine.context, difference);
    engine.NewLevel(0)->Convert(report_tree, diff_tree);
    const std::string tree = tell(report_tree);
    return tree + "--\n" + model::Text(WriteLines(engine.context, report_tree));
  });
}

std::string ModelConvert(const Lines& report, const Lines& difference) {
  return Outcome([&] {
    const auto report_tree = model::ReadLines(report);
    const auto diff_tree = model::ReadLines(difference);
    model::ConvertReport(report_tree, diff_tree);
    const std::string tree = model::Dump(report_tree);
    return tree + "--\n" + model::Text(model::WriteLines(report_tree));
  });
}

}  // namespace

BothOutcomes ReadByBoth(const Lines& lines) {
  return {EngineOutcome([&](Reader read, Teller tell) {
            const TestEngine engine;
            return tell(read(engine.context, lines));
          }),
          Outcome([&] { return model::Dump(model::ReadLines(lines)); })};
}

BothOutcomes RoundTripByBoth(const Lines& lines) {
  const auto by_engine = [&](Reader read, Teller) {
    const TestEngine engine;
    return model::Text(WriteLines(engine.context, read(engine.context, lines)));
  };
  return {EngineOutcome(by_engine),
          Outcome([&] { return model::Text(model::WriteLines(model::ReadLines(lines))); })};
}

BothOutcomes CompareByBoth(const Lines& old_lines, const Lines& new_lines, Lines& difference) {
  difference.clear();
  return {EngineCompare(old_lines, new_lines, difference), ModelCompare(old_lines, new_lines)};
}

BothOutcomes ConvertByBoth(const Lines& report, const Lines& difference) {
  return {EngineConvert(report, difference), ModelConvert(report, difference)};
}

}  // namespace tessary
