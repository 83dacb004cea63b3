// A report is a frame of fixed lines around numbered units, such as one section or one property.
// Which units a release has and what they say follows from their numbers alone, so each report of
// a set is written on its own in one pass.

#include "generated_reports.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace tessary {
namespace {

enum class Edition { kOld, kNew, kCustomer };

struct ShapeInfo {
  std::string_view name;
  Shape shape;
  std::size_t lines_per_unit;
  bool insertions_first;
};

constexpr std::array<ShapeInfo, 7> kShapes = {{
    {"sections", Shape::kSections, 8, false},
    {"siblings", Shape::kSiblings, 1, false},
    {"table", Shape::kTable, 13, false},
    {"twins", Shape::kTwins, 1, false},
    {"lines", Shape::kLines, 5, true},
    {"numbered", Shape::kNumbered, 5, true},
    {"columns", Shape::kColumns, 4, true},
}};

const ShapeInfo& InfoOf(Shape shape) { return kShapes[static_cast<std::size_t>(shape)]; }

class Writer {
 public:
  void Line(std::size_t level, std::string_view text) {
    bytes_.append(level / 4, '\t').append(level % 4, ' ').append(text).append("\r\n");
  }
  void Property(std::size_t level, std::string_view name, const std::string& value) {
    Line(level, std::string(name) + "=" + value);
  }
  void Open(std::size_t level, std::string_view section) {
    Line(level, section);
    Line(level + 1, "{");
  }
  void Close(std::size_t level) { Line(level, "}"); }
  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

// One unit: its number tells it apart from all others, its state what its changing value is.
struct Unit {
  std::string number;
  std::string state;
};

void WriteSection(Writer& out, const Unit& unit) {
  out.Line(0, "[Object]");
  out.Property(1, "ObjectName", "Feld " + unit.number);
  out.Property(1, "LinkID", unit.number);
  out.Property(1, "Type", "Textfeld");
  out.Property(1, "LayerID", "1");
  out.Property(1, "Position", unit.number + ";4500;" + unit.state);
  out.Property(1, "Condition", "Seite() = " + unit.number);
  out.Property(1, "Frame",
               "Gr\xF6\xDF"
               "e 250");
}

void WriteColumn(Writer& out, const Unit& unit) {
  out.Open(7, "[Column]");
  out.Property(8, "Text", "Artikel " + unit.number);
  out.Property(8, "Width", unit.state);
  out.Close(8);
}

void WriteTableRow(Writer& out, const Unit& unit) {
  out.Open(3, "[Line]");
  out.Property(4, "Text", "Zeile " + unit.number);
  out.Open(4, "[Definition]");
  out.Open(5, "[Line]");
  out.Property(6, "LineID", "1");
  out.Property(6, "Height", unit.state);
  out.Close(6);
  out.Close(5);
  out.Close(4);
}

void WriteLine(Writer& out, const Unit& unit) {
  out.Open(3, "[Line]");
  out.Property(4, "Text", "Zeile " + unit.number);
  out.Property(4, "Height", unit.state);
  out.Close(4);
}

void WriteNumberedLine(Writer& out, const Unit& unit) {
  out.Open(5, "[Line]");
  out.Property(6, "LineID", unit.number);
  out.Property(6, "Height", unit.state);
  out.Close(6);
}

void WriteUnit(Writer& out, Shape shape, const Unit& unit) {
  switch (shape) {
    case Shape::kSections:
      return WriteSection(out, unit);
    case Shape::kSiblings:
      return out.Property(1, "Feld" + unit.number, "Wert " + unit.state);
    case Shape::kTable:
      return WriteTableRow(out, unit);
    case Shape::kTwins:
      return out.Property(1, "Absatz", unit.number + ";Wert " + unit.state);
    case Shape::kLines:
      return WriteLine(out, unit);
    case Shape::kNumbered:
      return WriteNumberedLine(out, unit);
    case Shape::kColumns:
      return WriteColumn(out, unit);
  }
}

// How deep the units lie, and what stands above them.
std::size_t OpenUnits(Writer& out, Shape shape) {
  constexpr std::array<std::string_view, 6> kBlocks = {"[@Lines]",     "[Table]", "[Line]",
                                                       "[Definition]", "[Line]",  "[ColumnList]"};
  const std::size_t depth = shape == Shape::kTable || shape == Shape::kLines ? 2
                            : shape == Shape::kNumbered                      ? 4
                            : shape == Shape::kColumns                       ? 6
                                                                             : 0;
  if (shape != Shape::kSections) out.Line(0, "[Object]");
  for (std::size_t level = 1; level <= depth; ++level) out.Open(level, kBlocks[level - 1]);
  if (shape == Shape::kColumns) out.Property(7, "Columns", "1");
  return depth;
}

class Report {
 public:
  Report(Shape shape, std::size_t lines, std::size_t changes, Edition edition)
      : info_(InfoOf(shape)),
        units_(lines / info_.lines_per_unit),
        changes_(changes),
        edition_(edition) {}

  std::string Write() {
    out_.Line(0, "[UserSection]");
    out_.Property(1, "Version", edition_ == Edition::kNew ? "4" : "3");
    out_.Property(1, "Referenzbeleg", "Rechnung");
    const std::size_t depth = OpenUnits(out_, info_.shape);
    if (info_.insertions_first && edition_ == Edition::kNew) {
      for (std::size_t n = 0; n < changes_; ++n) Put(NumberOfInserted(n), false);
    }
    for (std::size_t unit = 0; unit < units_; ++unit) PutWithChange(unit);
    for (std::size_t level = depth; level > 0; --level) out_.Close(level + 1);
    return out_.Take();
  }

 private:
  // Spreads the changes evenly over the units: 0 none, 1 changed, 2 removed, 3 one added behind.
  // Rows of a table are only changed, since a run is compared by place.
  std::size_t ChangeAt(std::size_t unit) const {
    const std::size_t number = unit * changes_ / units_;
    const bool here = (unit + 1) * changes_ / units_ != number;
    return !here ? 0 : info_.shape == Shape::kTable ? 1 : 1 + number % 3;
  }

  // The customer's lines have the numbers of those that the new release adds, so that each addition
  // renumbers all of them.
  std::size_t NumberOf(std::size_t unit) const {
    const bool behind = info_.shape == Shape::kNumbered && edition_ != Edition::kCustomer;
    return behind ? changes_ + unit : unit;
  }
  std::size_t NumberOfInserted(std::size_t n) const {
    return info_.shape == Shape::kNumbered ? n : units_ + n;
  }

  void PutWithChange(std::size_t unit) {
    const bool compared = edition_ == Edition::kNew && !info_.insertions_first;
    const std::size_t change = compared ? ChangeAt(unit) : 0;
    const bool by_customer = edition_ == Edition::kCustomer && unit % 101 == 50;
    if (change != 2) Put(NumberOf(unit), change == 1 || by_customer);
    if (change == 3) Put(units_ + unit, false);
  }

  void Put(std::size_t number, bool changed) {
    const Unit unit{std::to_string(number + 1),
                    changed ? (edition_ == Edition::kNew ? "2500" : "1700") : "1000"};
    WriteUnit(out_, info_.shape, unit);
  }

  const ShapeInfo& info_;
  std::size_t units_;
  std::size_t changes_;
  Edition edition_;
  Writer out_;
};

}  // namespace

ReportSet GenerateReports(Shape shape, std::size_t lines, std::size_t changes) {
  const auto write = [&](Edition edition) {
    return Report(shape, lines, changes, edition).Write();
  };
  return {write(Edition::kOld), write(Edition::kNew), write(Edition::kCustomer)};
}

Shape ShapeNamed(std::string_view name) {
  for (const ShapeInfo& info : kShapes) {
    if (info.name == name) return info.shape;
  }
  throw std::invalid_argument("unknown shape: " + std::string(name));
}

}  // namespace tessary
