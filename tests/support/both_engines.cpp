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

std::string EngineCompare(const Lines& old_lines, const Lines& new_lines, Lines& difference) {
  const TestEngine engine;
  return Outcome([&] {
    const auto old_tree = ReadLines(engine.context, old_lines);
    const auto new_tree = ReadLines(engine.context, new_lines);
    const auto level = engine.NewLevel(0);
    level->Compare(old_tree, new_tree);
    const std::string tree = Dump(level->ElementArray());
    difference = WriteLines(engine.context, level->ElementArray());
    return tree + "--\n" + model::Text(difference) + "--\n" + Dump(old_tree) + "--\n" +
           Dump(new_tree);
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
  const TestEngine engine;
  return Outcome([&] {
    const auto report_tree = ReadLines(engine.context, report);
    const auto diff_tree = ReadLines(engine.context, difference);
    engine.NewLevel(0)->Convert(report_tree, diff_tree);
    const std::string tree = Dump(report_tree);
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
  const TestEngine engine;
  return {Outcome([&] { return Dump(ReadLines(engine.context, lines)); }),
          Outcome([&] { return model::Dump(model::ReadLines(lines)); })};
}

BothOutcomes RoundTripByBoth(const Lines& lines) {
  const TestEngine engine;
  const auto by_engine = [&] {
    return model::Text(WriteLines(engine.context, ReadLines(engine.context, lines)));
  };
  return {Outcome(by_engine),
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
