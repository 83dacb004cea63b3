#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/diff_text.h"
#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "engine/level.h"
#include "engine/procedure.h"
#include "engine/write_table.h"
#include "levels/owner_fields.h"
#include "levels/section_reader.h"
#include "report/line_syntax.h"

namespace tessary {

// Turns the lines of a report or difference file into the element tree of the level classes, and
// a tree back into lines.
//
// Reading: AddLine for every line in file order on a fresh object, then ReportFile takes the tree.
// Writing: SetReportFile on a fresh object (or lines added as above), GetFirstLine once, then
// GetNextLine until it returns an empty text. AppendFirstBlock and AppendNextBlock do the same for
// callers that collect the lines. Members that fail raise Failure and leave entries in
// the shared error collection under their own names.
class BXReportFile {
 public:
  explicit BXReportFile(Ref<EngineContext> context);

  // The element array of the top level; no array before the first line. The tree is shared, not
  // copied.
  void SetReportFile(Ref<ElementTable> array);
  Ref<ElementTable> ReportFile() const;

  // Reads one line, without its line end. Lines that are empty or blank and lines outside the ten
  // levels are left out.
  void AddLine(std::string_view strLine);

  // Reads all lines of a file, which end in LF or CRLF, on a fresh object, and returns how many
  // they are. The tree is the same as that of AddLine for every line, but the contents of sections
  // are read only when they are asked for, so the text must be one that the context's pool has
  // adopted. `sections`: may be null; those of another release of the report, read with the same
  // context and unchanged since; or none, which become those of this one.
  std::int64_t AddLines(std::string_view strLines, FileSections* sections = nullptr);

  // The first line; empty when there is none. Changes nothing in the tree but the numbers that the
  // levels keep (variables, columns).
  std::string GetFirstLine();
  // The next line, indented; empty at the end. Failure 91 when GetFirstLine found no lines.
  std::string GetNextLine();
  // The same, but what would be returned is appended to `text`; false where it is empty. Lines that
  // are written as they were read may come several at once, with CRLF between them.
  bool AppendFirstBlock(std::string& text) { return AppendFirst(text, true); }
  bool AppendNextBlock(std::string& text) { return AppendNext(text); }

  // Lines left out so far because their level lay outside 0 to 9, brace lines not counted.
  std::int64_t lines_dropped() const { return lines_dropped_; }
  // While reading with AddLine, the array whose last row is the line read last; none where that
  // line was left out or is a brace.
  Ref<ElementTable> ArrayOfLastLine() const;
  // While reading, the level of the line read last: after the last line of a well-formed file 0
  // or 1.
  std::int32_t level() const { return m_lngLevel; }

 private:
  Procedure InProcedure(std::string_view name, std::string_view message = {}) const {
    return {context_->errors(), "BXReportFile", name, message};
  }

  std::string_view StripLine(std::string_view line) {
    return WithoutTabs(TrimTabsAndBlanks(line), stripped_);
  }
  void CheckLine(std::string_view strLine, BXLineType& lineType);
  Level& LevelForLine();
  void AddElement(BXLineType type);
  void AddFieldValue(Symbol strFieldOwner, std::int32_t lngOwnerLevel, BXElementArray bxaeField,
                     Symbol strValue);

  static constexpr std::int32_t kNoLevel = -1;

  // A brace line that is due before a row: none where the brace is empty.
  struct Bookmark {
    std::int32_t level = 0;
    std::string_view brace;
  };

  bool AppendFirst(std::string& text, bool blocks);
  bool AppendNext(std::string& text);
  Bookmark CheckForWritingLevelBookmarks(std::int32_t lngLevel, std::string_view strLine);
  Bookmark BookmarkBetweenEquals(std::string_view strLine);
  Bookmark BookmarkOnTheWayUp(std::int32_t lngLevel, std::string_view strLine);
  bool NeedsEmptyBlock(std::string_view strLine) const;
  void AppendRow(std::string& text);
  void AppendBrace(const Bookmark& bookmark, std::string& text);
  void CloseLevel(std::string& text);

  Ref<EngineContext> context_;
  std::array<Ref<Level>, 10> m_objLevel;  // where the next line of each level is added
  std::int32_t m_lngLevel = 0;
  std::int32_t level_added_to_ = kNoLevel;  // by the line before
  bool last_line_added_ = false;
  std::int64_t lines_dropped_ = 0;
  std::string stripped_;  // storage for the line that lost tabs last
  DiffLine diff_line_;
  OwnerFields owner_fields_;

  Ref<WriteTable> m_aWrite;
  std::int32_t m_lngRow = 0;
  std::string_view m_strLastLine;    // in m_aWrite
  std::string_view m_strLastOutput;  // in m_aWrite or stripped_, or a brace
  bool m_bBlockOpen = false;
};

}  // namespace tessary
