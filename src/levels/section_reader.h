#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/element_table.h"
#include "engine/ref.h"

namespace tessary {

class EngineContext;
class LevelBase;

// The topmost sections of a report that has been read, as they stand in its file. Another release
// of the report has most of them again, and need not read those.
struct FileSections {
  struct Section {
    // With its header and that of the section behind it. Must outlive the object.
    std::string_view text;
    std::int64_t lines = 0;  // the next header not included
    // True when the element follows from this text alone: no other section sets its key or type,
    // nor this one those of another. False for the last section.
    bool stands_alone = false;
  };

  Ref<ElementTable> elements;     // a row for each section, as they have been read
  std::vector<Section> sections;  // in the order of the rows
};

// Adds the topmost lines of `text`, the contents of a section, to `list`, the empty level object
// that they belong to, and gives what stands below each of them to that element's child level,
// which reads it when it is asked for. The text must be well nested, have no status in any line,
// and live as long as the texts of `list`.
void ReadSection(LevelBase& list, std::string_view text);

// The same for the lines of a whole report, which may be anything. Returns the level of the last
// line, or -1 when the text is not well nested or has lines with a status; `list` is of no use
// then. `line_count` becomes the number of lines, unless -1 is returned. `sections`: may be null;
// those of another release, read with the same context and unchanged since; or none: then they
// become those of this one, unless -1 is returned.
std::int32_t ReadReportText(LevelBase& list, std::string_view text, const EngineContext& context,
                            std::int64_t& line_count, FileSections* sections);

}  // namespace tessary
