// Reading: the nesting level is a running counter that section headers and braces move. A line is
// added to the level object of its level, which is looked up as the child of the element added last
// one level up whenever the level is not that of the line before; these references are never
// cleared, so a line after a double "{" may hang below an older section.

#include <algorithm>

#include "levels/report_format.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

bool IsBlankOrTab(char c) { return c == ' ' || c == '\t'; }

AddArguments ArgumentsOf(const DiffLine& line, BXLineType type) {
  AddArguments arguments;
  arguments.strName = line.text;
  arguments.bxsStatus = line.status;
  arguments.bxltLineType = type;
  if (line.status == bxsUnknown) return arguments;
  arguments.strKey = line.fields[0];
  arguments.strTyp = line.fields[1];
  arguments.strPosPrevName = line.fields[2];
  arguments.strPosPrevKey = line.fields[3];
  arguments.strPosPrevTyp = line.fields[4];
  arguments.strPosNextName = line.fields[5];
  arguments.strPosNextKey = line.fields[6];
  arguments.strPosNextTyp = line.fields[7];
  arguments.strPosNr = line.fields[8];
  return arguments;
}

}  // namespace

BXReportFile::BXReportFile(Ref<EngineContext> context) : context_(std::move(context)) {
  m_objLevel[0] = context_->CreateLevel(0);
}

void BXReportFile::SetReportFile(Ref<ElementTable> array) {
  InProcedure("ReportFile").Run([&] { m_objLevel[0]->SetElementArray(std::move(array)); });
  level_added_to_ = kNoLevel;
}

Ref<ElementTable> BXReportFile::ReportFile() const {
  return InProcedure("ReportFile").Run([&] { return m_objLevel[0]->ElementArray(); });
}

void BXReportFile::AddLine(std::string_view strLine) {
  InProcedure("AddLine", "Fehler beim Auswerten einer Zeile.").Run([&] {
    const std::string_view line = StripLine(strLine);
    if (line.empty()) return;
    DiffTextToElement(line, diff_line_);
    BXLineType type = bxltProperty;
    CheckLine(diff_line_.text, type);
    if (type == bxltUnknown) return;
    if (m_lngLevel < 0 || m_lngLevel >= kLevelCount) {
      ++lines_dropped_;
      return;
    }
    AddElement(type);
  });
}

// The line without tabs anywhere and without blanks at its ends. Tabs mostly indent, so only a
// line that has some inside is copied.
std::string_view BXReportFile::StripLine(std::string_view line) {
  while (!line.empty() && IsBlankOrTab(line.front())) line.remove_prefix(1);
  while (!line.empty() && IsBlankOrTab(line.back())) line.remove_suffix(1);
  if (line.find('\t') == std::string_view::npos) return line;
  stripped_.clear();
  std::copy_if(line.begin(), line.end(), std::back_inserter(stripped_),
               [](char c) { return c != '\t'; });
  return stripped_;
}

void BXReportFile::CheckLine(std::string_view strLine, BXLineType& lineType) {
  InProcedure("CheckLine").Run([&] {
    lineType = bxltProperty;
    if (IsSectionLine(strLine)) {
      lineType = bxltSection;
      if (m_lngLevel == 0 || m_lngLevel == 1) m_lngLevel = IsLinesSection(strLine) ? 1 : 0;
    } else if (IsBlockStart(strLine)) {
      lineType = bxltUnknown;
      MoveLevel(1);
    } else if (IsBlockEnd(strLine)) {
      lineType = bxltUnknown;
      MoveLevel(-1);
    } else if (m_lngLevel == 0) {
      m_lngLevel = 1;
    }
  });
}

bool BXReportFile::IsLinesSection(std::string_view strLine) {
  return EqualsIgnoreCase(strLine, kLinesSection);
}

void BXReportFile::MoveLevel(std::int32_t by) {
  const std::int64_t level = std::int64_t{m_lngLevel} + by;
  if (level < INT32_MIN || level > INT32_MAX) throw Failure(kOverflow);
  m_lngLevel = static_cast<std::int32_t>(level);
}

Level& BXReportFile::LevelForLine() {
  const auto level = static_cast<std::size_t>(m_lngLevel);
  if (level > 0 && m_lngLevel != level_added_to_) {
    const Ref<Level>& above = m_objLevel[level - 1];
    if (!above) throw Failure(kObjectNotSet);
    m_objLevel[level] = above->LastElement();
  }
  if (!m_objLevel[level]) throw Failure(kObjectNotSet);
  level_added_to_ = m_lngLevel;
  return *m_objLevel[level];
}

void BXReportFile::AddElement(BXLineType type) {
  Level& level = LevelForLine();
  level.Add(ArgumentsOf(diff_line_, type));
  FoundField found;
  if (level.GetFoundFieldValue(found)) {
    AddFieldValue(found.owner, found.owner_level, static_cast<BXElementArray>(found.field),
                  found.value);
  }
}

// Writes what a level rule found into the last section of the owner's name, and into what the
// row before that section knows of it.
void BXReportFile::AddFieldValue(Symbol strFieldOwner, std::int32_t lngOwnerLevel,
                                 BXElementArray bxaeField, Symbol strValue) {
  InProcedure("AddFieldValue").Run([&] {
    if (lngOwnerLevel < 0 || lngOwnerLevel != OwnerLevelOf(m_lngLevel)) return;
    const Ref<Level>& owner_level = m_objLevel[static_cast<std::size_t>(lngOwnerLevel)];
    if (!owner_level) throw Failure(kObjectNotSet);
    const Ref<ElementTable> array = owner_level->ElementArray();
    if (IsArrayEmpty(array)) return;
    const std::int32_t row = LastRowNamed(array, strFieldOwner);
    if (row == 0) return;
    array->SetText(row, bxaeField, strValue);
    if (row == 1) return;
    array->SetText(row - 1, bxaeField == bxeaKey ? bxeaPosNextKey : bxeaPosNextTyp, strValue);
  });
}

std::int32_t BXReportFile::LastRowNamed(const Ref<ElementTable>& array, Symbol owner) {
  const auto known =
      std::find_if(owner_searches_.begin(), owner_searches_.end(), [&](const OwnerSearch& search) {
        return search.array == array && search.owner == owner &&
               search.rearrangements == array->rearrangements();
      });
  if (known == owner_searches_.end()) next_search_ = (next_search_ + 1) % owner_searches_.size();
  OwnerSearch& search = known == owner_searches_.end() ? owner_searches_[next_search_] : *known;
  if (known == owner_searches_.end()) search = {array, owner, array->rearrangements(), 0, 0};
  const TextPool& pool = array->pool();
  for (std::int32_t row = array->rows(); row > search.searched; --row) {
    if (!pool.Same(array->Row(row).key[bxeaName], owner)) continue;
    search.found = row;
    break;
  }
  search.searched = array->rows();
  return search.found;
}

}  // namespace tessary
