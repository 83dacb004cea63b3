// Both sides are trees of lines. Elements of one level are paired by what identifies them, the k-th
// of several with the k-th; pairs are compared line by line and inside. Of the pairs those that do
// not fit into the longest run in the right order count as moved.

#include "manager/difference_check.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "engine/conversion_observer.h"
#include "levels/level_factory.h"
#include "manager/report_io.h"
#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

struct Line {
  std::string text;      // as both sides are compared
  std::string shown;     // as it stands in the file; a section with what tells it from others
  std::string label;     // what the element is called as a place
  std::string identity;  // equal for elements that the comparison takes for the same
  bool is_section;
  std::int64_t number;
  std::vector<Line> inside;
};

// Reads a report line by line and remembers which line each element comes from. Where blocks are
// not balanced the elements do not stand in the order of the file.
class NumberedReport {
 public:
  explicit NumberedReport(const Ref<EngineContext>& context) : store_(context) {}

  void AddLine(std::string_view line) {
    ++number_;
    store_.AddLine(line);
    if (const Ref<ElementTable> array = store_.ArrayOfLastLine()) {
      sources_[&*array].push_back({number_, std::string(TrimTabsAndBlanks(line))});
    }
  }

  std::vector<Line> Lines() const { return LinesOf(store_.ReportFile()); }

 private:
  struct Source {
    std::int64_t number;
    std::string text;
  };

  std::vector<Line> LinesOf(const Ref<ElementTable>& elements) const {
    std::vector<Line> lines;
    if (IsArrayEmpty(elements)) return lines;
    const std::vector<Source>& sources = sources_.at(&*elements);
    for (std::int32_t row = 1; row <= elements->rows(); ++row) {
      lines.push_back(LineOf(elements->Row(row), elements->pool(),
                             sources.at(static_cast<std::size_t>(row) - 1)));
    }
    return lines;
  }

  Line LineOf(const Element& element, const TextPool& pool, const Source& source) const {
    const ElementTexts texts = {pool.Text(element.key[bxeaName]), pool.Text(element.key[bxeaKey]),
                                pool.Text(element.key[bxeaTyp])};
    Line line{.text = std::string(texts.name),
              .shown = source.text,
              .label = LabelOf(texts),
              .identity = {},
              .is_section = IsSectionLine(texts.name),
              .number = source.number,
              .inside = {}};
    if (line.is_section) {
      line.shown = line.label;
    } else {
      line.text = JoinProperty(texts.name, texts.key, element.value());
    }
    for (const std::string_view text : {texts.name, texts.key, texts.typ}) {
      line.identity.append(FoldCase(text)).push_back('\n');
    }
    if (element.child) line.inside = LinesOf(element.child->ElementArray());
    return line;
  }

  BXReportFile store_;
  std::int64_t number_ = 0;
  std::map<const ElementTable*, std::vector<Source>> sources_;  // by array, of its rows
};

std::vector<Line> LinesOfFile(FileSystem& files, const Ref<EngineContext>& context,
                              const std::string& path) {
  const std::string text = DecodeWindows1252(ReadWholeFile(*files.OpenForReading(path)));
  NumberedReport report(context);
  for (std::string_view rest = text; !rest.empty();) report.AddLine(TakeLine(rest));
  return report.Lines();
}

// The lines as the next run would read them from the file that this one writes.
std::vector<Line> LinesAsWritten(const Ref<EngineContext>& context, const Ref<ElementTable>& tree) {
  BXReportFile writer(context);
  writer.SetReportFile(tree);
  NumberedReport report(context);
  for (std::string line = writer.GetFirstLine(); !line.empty(); line = writer.GetNextLine()) {
    report.AddLine(line);
  }
  return report.Lines();
}

// The places of a longest ascending subsequence.
std::vector<bool> InLongestRun(const std::vector<std::size_t>& values) {
  std::vector<std::size_t> ends;  // by length - 1: the place with the smallest last value
  std::vector<std::optional<std::size_t>> before(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto end = std::lower_bound(
        ends.begin(), ends.end(), values[i],
        [&](std::size_t place, std::size_t value) { return values[place] < value; });
    if (end != ends.begin()) before[i] = *(end - 1);
    if (end == ends.end()) {
      ends.push_back(i);
    } else {
      *end = i;
    }
  }
  std::vector<bool> in_run(values.size());
  std::optional<std::size_t> place;
  if (!ends.empty()) place = ends.back();
  for (; place; place = before[*place]) in_run[*place] = true;
  return in_run;
}

class LineComparison {
 public:
  std::vector<Unreproduced> Run(const std::vector<Line>& result, const std::vector<Line>& wanted) {
    Compare(result, wanted, std::nullopt);
    std::stable_sort(list_.begin(), list_.end(), [](const Unreproduced& a, const Unreproduced& b) {
      return a.reason < b.reason;
    });
    return std::move(list_);
  }

 private:
  using Places = std::vector<std::size_t>;
  struct Group {
    Places result;
    Places wanted;
    bool HasSeveral() const { return result.size() > 1 || wanted.size() > 1; }
  };

  void Add(Deviation reason, const Line* result, const Line* wanted) {
    list_.push_back({reason, place_, wanted ? wanted->number : 0, wanted ? wanted->shown : "",
                     result ? result->shown : ""});
  }

  // `inherited`: why whatever differs here does so, where that is already known.
  void Compare(const std::vector<Line>& result, const std::vector<Line>& wanted,
               std::optional<Deviation> inherited) {
    std::map<std::string, Group> groups;
    for (std::size_t i = 0; i < result.size(); ++i) groups[result[i].identity].result.push_back(i);
    for (std::size_t i = 0; i < wanted.size(); ++i) groups[wanted[i].identity].wanted.push_back(i);
    std::vector<std::optional<std::size_t>> partner(wanted.size());
    for (const auto& [identity, group] : groups) {
      for (std::size_t k = 0; k < std::min(group.result.size(), group.wanted.size()); ++k) {
        partner[group.wanted[k]] = group.result[k];
      }
    }
    const std::vector<bool> moved = Moved(partner);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const Deviation several =
          groups[wanted[i].identity].HasSeveral() ? Deviation::kDuplicate : Deviation::kOther;
      if (!partner[i]) {
        Add(inherited.value_or(several), nullptr, &wanted[i]);
        continue;
      }
      const Line& found = result[*partner[i]];
      if (moved[i]) Add(inherited.value_or(Deviation::kMoved), &found, &wanted[i]);
      ComparePair(found, wanted[i], several, inherited);
    }
    AddSurplus(result, groups, inherited);
  }

  static std::vector<bool> Moved(const std::vector<std::optional<std::size_t>>& partner) {
    std::vector<std::size_t> order;
    for (const auto& place : partner) {
      if (place) order.push_back(*place);
    }
    const std::vector<bool> in_run = InLongestRun(order);
    std::vector<bool> moved(partner.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < partner.size(); ++i) {
      if (partner[i]) moved[i] = !in_run[next++];
    }
    return moved;
  }

  void ComparePair(const Line& found, const Line& wanted, Deviation several,
                   std::optional<Deviation> inherited) {
    if (found.text != wanted.text) {
      const bool same_letters = EqualsIgnoreCase(found.text, wanted.text);
      Add(inherited.value_or(same_letters ? Deviation::kLetterCase : several), &found, &wanted);
    }
    if (!inherited && !wanted.is_section) inherited = Deviation::kBelowProperty;
    if (!inherited && several == Deviation::kDuplicate) inherited = several;
    place_.push_back(wanted.label);
    Compare(found.inside, wanted.inside, inherited);
    place_.pop_back();
  }

  void AddSurplus(const std::vector<Line>& result, const std::map<std::string, Group>& groups,
                  std::optional<Deviation> inherited) {
    for (const auto& [identity, group] : groups) {
      const Deviation reason = group.HasSeveral() ? Deviation::kDuplicate : Deviation::kOther;
      for (std::size_t k = group.wanted.size(); k < group.result.size(); ++k) {
        Add(inherited.value_or(reason), &result[group.result[k]], nullptr);
      }
    }
  }

  std::vector<std::string> place_;
  std::vector<Unreproduced> list_;
};

}  // namespace

std::vector<Unreproduced> CheckDifference(FileSystem& files, const std::string& old_path,
                                          const std::string& new_path,
                                          const std::string& diff_path) {
  SharedErrors errors;
  const Ref<EngineContext> context = NewEngineContext(errors, nullptr);
  Ref<ElementTable> result = ReadReport(files, context, old_path, nullptr);
  if (!diff_path.empty()) {
    const Ref<Level> converted = context->CreateLevel(0);
    converted->Convert(result, ReadReport(files, context, diff_path, nullptr));
    result = converted->ElementArray();
  }
  const std::vector<Line> written = LinesAsWritten(context, result);
  return LineComparison().Run(written, LinesOfFile(files, context, new_path));
}

}  // namespace tessary
