// Writing: the tree is laid out as rows of level and text; a row is handed out behind the brace
// lines that its level, compared with that of the row before, makes due. Between two section
// headers of one level an empty block is put back, because reading drops braces.

#include "platform/failure.h"
#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

// The line without tabs and without blanks at its ends.
std::string WithoutIndentation(std::string_view line) {
  std::string text;
  text.reserve(line.size());
  for (const char c : line) {
    if (c != '\t') text += c;
  }
  return std::string(TrimBlanks(text));
}

}  // namespace

std::string BXReportFile::GetFirstLine() {
  const Procedure procedure =
      InProcedure("GetFirstLine", "Fehler beim Ermitteln der ersten Zeile.");
  return procedure.Run([&]() -> std::string {
    m_strLastLine.clear();
    m_strLastOutput.clear();
    m_bBlockOpen = false;
    if (!m_aWrite) m_objLevel[0]->PrepareWriting(m_aWrite, 0);
    if (!m_aWrite || m_aWrite->rows() == 0) return {};
    m_lngRow = 1;
    m_lngLevel = m_aWrite->Level(m_lngRow);
    m_strLastLine = m_aWrite->Text(m_lngRow);
    m_strLastOutput = m_strLastLine;
    return m_strLastLine;
  });
}

std::string BXReportFile::GetNextLine() {
  const Procedure procedure =
      InProcedure("GetNextLine", "Fehler beim Ermitteln der nächsten Zeile.");
  return procedure.Run([&] {
    if (!m_aWrite) throw Failure(kObjectNotSet);
    ++m_lngRow;
    std::string line = m_lngRow > m_aWrite->rows() ? CloseLevel() : NextRow();
    m_strLastOutput = WithoutIndentation(line);
    return line;
  });
}

std::string BXReportFile::NextRow() {
  const std::int32_t level = m_aWrite->Level(m_lngRow);
  const std::string_view text = m_aWrite->Text(m_lngRow);
  std::string bookmark;
  if (CheckForWritingLevelBookmarks(level, text, bookmark)) {
    --m_lngRow;
    return bookmark;
  }
  m_lngLevel = level;
  m_strLastLine = text;
  return LevelToSpaceString(level).append(text);
}

// Behind the last row: one closing brace per level still open above level 1.
std::string BXReportFile::CloseLevel() {
  --m_lngRow;
  if (m_lngLevel <= 1) return {};
  return LevelToSpaceString(m_lngLevel--) + "}";
}

std::string BXReportFile::LevelToSpaceString(std::int32_t lngLevel) const {
  return InProcedure("LevelToSpaceString").Run([&] {
    const auto tabs = static_cast<std::size_t>(lngLevel / 4);
    return std::string(tabs, '\t').append(static_cast<std::size_t>(lngLevel) - 4 * tabs, ' ');
  });
}

bool BXReportFile::CheckForWritingLevelBookmarks(std::int32_t lngLevel, std::string_view strLine,
                                                 std::string& strBookmark) {
  return InProcedure("CheckForWritingLevelBookmarks").Run([&] {
    strBookmark.clear();
    if (lngLevel < m_lngLevel) return BookmarkOnTheWayUp(lngLevel, strLine, strBookmark);
    if (lngLevel == m_lngLevel) return BookmarkBetweenEquals(strLine, strBookmark);
    if (lngLevel <= 1) return false;  // level 1 is implied by the section above
    strBookmark = LevelToSpaceString(lngLevel) + "{";
    m_lngLevel = lngLevel;
    return true;
  });
}

bool BXReportFile::BookmarkBetweenEquals(std::string_view strLine, std::string& strBookmark) {
  if (m_lngLevel < 1) return false;
  const bool close = m_bBlockOpen;
  m_bBlockOpen = !close && NeedsEmptyBlock(strLine);
  if (!close && !m_bBlockOpen) return false;
  strBookmark = LevelToSpaceString(m_lngLevel + 1) + (close ? "}" : "{");
  return true;
}

bool BXReportFile::BookmarkOnTheWayUp(std::int32_t lngLevel, std::string_view strLine,
                                      std::string& strBookmark) {
  if (lngLevel <= 0 && m_lngLevel < 2) return false;
  const bool close = m_bBlockOpen;
  m_bBlockOpen = !close && NeedsEmptyBlock(strLine);
  if (close || m_bBlockOpen) {
    strBookmark = LevelToSpaceString(m_lngLevel + 1) + (close ? "}" : "{");
  } else {
    strBookmark = LevelToSpaceString(m_lngLevel--) + "}";
  }
  return true;
}

// True when the section written last was followed by nothing yet, not even a brace, and another
// section comes.
bool BXReportFile::NeedsEmptyBlock(std::string_view strLine) const {
  return IsSectionLine(strLine) && IsSectionLine(m_strLastLine) &&
         EqualsIgnoreCase(m_strLastLine, m_strLastOutput);
}

}  // namespace tessary
