#include "support/both_engines.h"

#include <functional>

#include "engine/section_text.h"
#include "model/model_compare.h"
#include "model/model_convert.h"
#include "model/model_report.h"
#include "model/random_reports.h"
#include "platform/failure.h"
#include "report/line_syntax.h"
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

// The lines with the indentation that they would be written with.
Lines Indented(const Lines& lines) {
  Lines indented;
  std::int32_t level = 0;
  for (const std::string& line : lines) {
    const std::string_view text = TrimTabsAndBlanks(line);
    if (!text.empty()) FollowLevel(text, level);
    const bool fits = level >= 0 && level <= kDeepestLevel;
    indented.push_back(std::string(fits ? LevelSpace(level) : "") + std::string(text));
  }
  return indented;
}

// A way through the engine: how it reads, how it writes, and whether the trees are told of in
// between, which reads all of them.
class Way {
 public:
  enum Reading { kByLine, kByFile, kByFileIndented, kKnowingOtherRelease };

  Way(Reading reading, bool tells) : reading_(reading), tells_(tells) {}

  Ref<ElementTable> Read(const TestEngine& engine, const Lines& lines) {
    if (reading_ == kByLine) return ReadLines(engine.context, lines);
    if (reading_ == kByFile) return ReadFileOfLines(engine.context, lines);
    if (reading_ == kByFileIndented) return ReadFileOfLines(engine.context, Indented(lines));
    return ReadReleaseOfLines(engine.context, lines, sections_);
  }
  Lines Write(const TestEngine& engine, const Ref<ElementTable>& tree) const {
    return reading_ == kByLine ? WriteLines(engine.context, tree)
                               : WriteBlocks(engine.context, tree);
  }
  std::string Tell(const Ref<ElementTable>& tree) const { return tells_ ? Dump(tree) : ""; }

 private:
  Reading reading_;
  bool tells_;
  FileSections sections_;
};

// What the work comes to, whichever way it goes.
std::string EngineOutcome(const std::function<std::string(Way&)>& work) {
  const auto outcome = [&](Way::Reading reading, bool tells) {
    Way way(reading, tells);
    return Outcome([&] { return work(way); });
  };
  const std::string told = outcome(Way::kByLine, true);
  const std::string untold = outcome(Way::kByLine, false);
  for (const auto reading : {Way::kByFile, Way::kByFileIndented, Way::kKnowingOtherRelease}) {
    const bool tells = reading == Way::kKnowingOtherRelease;
    const std::string other = outcome(reading, tells);
    if (other == (tells ? told : untold)) continue;
    return "by line\n" + (tells ? told : untold) + "way " + std::to_string(reading) + "\n" + other;
  }
  return told;
}

std::string EngineCompare(const Lines& old_lines, const Lines& new_lines, Lines& difference) {
  return EngineOutcome([&](Way& way) {
    const TestEngine engine;
    const auto new_tree = way.Read(engine, new_lines);
    const auto old_tree = way.Read(engine, old_lines);
    const auto level = engine.NewLevel(0);
    level->Compare(old_tree, new_tree);
    const std::string tree = way.Tell(level->ElementArray());
    difference = way.Write(engine, level->ElementArray());
    return tree + "--\n" + model::Text(difference) + "--\n" + way.Tell(old_tree) + "--\n" +
           way.Tell(new_tree);
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
  return EngineOutcome([&](Way& way) {
    const TestEngine engine;
    const auto report_tree = way.Read(engine, report);
    const auto diff_tree = way.Read(engine, difference);
    engine.NewLevel(0)->Convert(report_tree, diff_tree);
    const std::string tree = way.Tell(report_tree);
    return tree + "--\n" + model::Text(way.Write(engine, report_tree));
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
  return {EngineOutcome([&](Way& way) {
            const TestEngine engine;
            return way.Tell(way.Read(engine, lines));
          }),
          Outcome([&] { return model::Dump(model::ReadLines(lines)); })};
}

BothOutcomes RoundTripByBoth(const Lines& lines) {
  const auto by_engine = [&](Way& way) {
    const TestEngine engine;
    return model::Text(way.Write(engine, way.Read(engine, lines)));
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
