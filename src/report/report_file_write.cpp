// Writing: the tree is laid out as rows of level and text; a row is handed out behind the brace
// lines that its level, compared with that of the row before, makes due. Between two section
// headers of one level an empty block is put back, because reading drops braces.

#include <algorithm>

#include "platform/failure.h"
#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

// Most sections are two rows: their header, and all that stands below it. A very long list may have
// few sections.
Ref<WriteTable> NewTableOfBlocks(const Ref<ElementTable>& array) {
  constexpr std::int32_t kMostReserved = 4096;
  auto table = MakeRef<WriteTable>(true);
  if (array) table->Reserve(2 * static_cast<std::size_t>(std::min(array->rows(), kMostReserved)));
  return table;
}

}  // namespace

std::string BXReportFile::GetFirstLine() {
  std::string line;
  AppendFirst(line, false);
  return line;
}

bool BXReportFile::AppendFirst(std::string& text, bool blocks) {
  const Procedure procedure =
      InProcedure("GetFirstLine", "Fehler beim Ermitteln der ersten Zeile.");
  return procedure.Run([&] {
    m_strLastLine = {};
    m_strLastOutput = {};
    m_bBlockOpen = false;
    if (!m_aWrite) {
      if (blocks) m_aWrite = NewTableOfBlocks(m_objLevel[0]->ElementArray());
      m_objLevel[0]->PrepareWriting(m_aWrite, 0);
    }
    if (!m_aWrite || m_aWrite->rows() == 0) return false;
    m_lngRow = 1;
    m_lngLevel = m_aWrite->Level(m_lngRow);
    m_strLastLine = m_aWrite->Text(m_lngRow);
    m_strLastOutput = m_strLastLine;
    text.append(m_strLastLine);
    return !m_strLastLine.empty();
  });
}

std::string BXReportFile::GetNextLine() {
  std::string line;
  AppendNext(line);
  return line;
}

bool BXReportFile::AppendNext(std::string& text) {
  const Procedure procedure =
      InProcedure("GetNextLine", "Fehler beim Ermitteln der nächsten Zeile.");
  return procedure.Run([&] {
    if (!m_aWrite) throw Failure(kObjectNotSet);
    const std::size_t begin = text.size();
    ++m_lngRow;
    if (m_lngRow > m_aWrite->rows()) {
      CloseLevel(text);
    } else {
      AppendRow(text);
    }
    return text.size() > begin;
  });
}

// The row, or the brace line that is due before it.
void BXReportFile::AppendRow(std::string& text) {
  const std::int32_t level = m_aWrite->Level(m_lngRow);
  const std::string_view row = m_aWrite->Text(m_lngRow);
  const Bookmark bookmark = CheckForWritingLevelBookmarks(level, row);
  if (!bookmark.brace.empty()) {
    --m_lngRow;
    return AppendBrace(bookmark, text);
  }
  m_lngLevel = level;
  m_strLastLine = row;
  m_strLastOutput = IsSectionLine(row) ? StripLine(row) : row;  // compared for sections only
  text.append(LevelSpace(level)).append(row);
}

void BXReportFile::AppendBrace(const Bookmark& bookmark, std::string& text) {
  text.append(LevelSpace(bookmark.level)).append(bookmark.brace);
  m_strLastOutput = bookmark.brace;
}

// Behind the last row: one closing brace per level still open above level 1.
void BXReportFile::CloseLevel(std::string& text) {
  --m_lngRow;
  m_strLastOutput = {};
  if (m_lngLevel > 1) AppendBrace({m_lngLevel--, "}"}, text);
}

BXReportFile::Bookmark BXReportFile::CheckForWritingLevelBookmarks(std::int32_t lngLevel,
                                                                   std::string_view strLine) {
  return InProcedure("CheckForWritingLevelBookmarks").Run([&]() -> Bookmark {
    if (lngLevel < m_lngLevel) return BookmarkOnTheWayUp(lngLevel, strLine);
    if (lngLevel == m_lngLevel) return BookmarkBetweenEquals(strLine);
    if (lngLevel <= 1) return {};  // level 1 is implied by the section above
    m_lngLevel = lngLevel;
    return {lngLevel, "{"};
  });
}

BXReportFile::Bookmark BXReportFile::BookmarkBetweenEquals(std::string_view strLine) {
  if (m_lngLevel < 1) return {};
  const bool close = m_bBlockOpen;
  m_bBlockOpen = !close && NeedsEmptyBlock(strLine);
  if (!close && !m_bBlockOpen) return {};
  return {m_lngLevel + 1, close ? "}" : "{"};
}

BXReportFile::Bookmark BXReportFile::BookmarkOnTheWayUp(std::int32_t lngLevel,
                                                        std::string_view strLine) {
  if (lngLevel <= 0 && m_lngLevel < 2) return {};
  const bool close = m_bBlockOpen;
  m_bBlockOpen = !close && NeedsEmptyBlock(strLine);
  if (close || m_bBlockOpen) return {m_lngLevel + 1, close ? "}" : "{"};
  return {m_lngLevel--, "}"};
}

// True when the section written last was followed by nothing yet, not even a brace, and another
// section comes.
bool BXReportFile::NeedsEmptyBlock(std::string_view strLine) const {
  return IsSectionLine(strLine) && IsSectionLine(m_strLastLine) &&
         EqualsIgnoreCase(m_strLastLine, m_strLastOutput);
}

}  // namespace tessary
