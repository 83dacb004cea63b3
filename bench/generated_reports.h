#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Reports of any size for measuring. Their lines are about 20 bytes long, in Windows-1252 and with
// CRLF, and the same arguments always give the same bytes.

namespace tessary {

enum class Shape {
  kSections,  // many small sections, with a few properties each
  kSiblings,  // one section whose lines all are properties of their own names
  kTable,     // lines and columns of tables, nested through all ten levels
  kTwins,     // one section whose lines all have the same name
  kLines,     // a run of "[Line]" sections on level 3; insertions come first in it
  kNumbered,  // a run of numbered "[Line]" sections on level 5; insertions come first in it
  kColumns,   // a run of "[Column]" sections; insertions come first in it
};

// Two releases of a report and a customer's copy of the first.
struct ReportSet {
  std::string old_report;
  std::string new_report;
  std::string customer_report;
};

// `lines` is the approximate number of lines of the old report. Of the `changes` between the
// releases a third each are changed, removed and added elements; in a table all are changed ones,
// and where the shape speaks of insertions all are added ones. The customer has changed a few
// values.
ReportSet GenerateReports(Shape shape, std::size_t lines, std::size_t changes);

// The shape of a name ("sections", "siblings", ...); raises std::invalid_argument for any other.
Shape ShapeNamed(std::string_view name);

}  // namespace tessary
