// Reading: the nesting level is a running counter that section headers and braces move. A line is
// added to the level object of its level, which is looked up as the child of the element added last
// one level up whenever the level is not that of the line before; these references are never
// cleared, so a line after a double "{" may hang below an older section.

#include "engine/section_text.h"
#include "levels/level_base.h"
#include "levels/report_format.h"
#include "platform/failure.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

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
    last_line_added_ = false;
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

Ref<ElementTable> BXReportFile::ArrayOfLastLine() const {
  if (!last_line_added_) return nullptr;
  return m_objLevel[static_cast<std::size_t>(level_added_to_)]->ElementArray();
}

void BXReportFile::CheckLine(std::string_view strLine, BXLineType& lineType) {
  InProcedure("CheckLine").Run([&] { lineType = FollowLevel(strLine, m_lngLevel); });
}

std::int64_t BXReportFile::AddLines(std::string_view strLines, FileSections* sections) {
  std::int64_t count = 0;
  const Ref<Level> top = context_->CreateLevel(0);
  // What can fail here, memory above all, could fail with any line.
  const Procedure procedure = InProcedure("AddLine", "Fehler beim Auswerten einer Zeile.");
  const std::int32_t level = procedure.Run([&] {
    return ReadReportText(static_cast<LevelBase&>(*top), strLines, *context_, count, sections);
  });
  if (level >= 0) {
    m_objLevel[0] = top;
    m_lngLevel = level;
    return count;
  }
  count = 0;
  while (!strLines.empty()) {
    context_->Yield();
    ++count;
    AddLine(TakeLine(strLines));
  }
  return count;
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
  last_line_added_ = true;
  FoundField found;
  if (level.GetFoundFieldValue(found)) {
    AddFieldValue(found.owner, found.owner_level, static_cast<BXElementArray>(found.field),
                  found.value);
  }
}

void BXReportFile::AddFieldValue(Symbol strFieldOwner, std::int32_t lngOwnerLevel,
                                 BXElementArray bxaeField, Symbol strValue) {
  InProcedure("AddFieldValue").Run([&] {
    if (lngOwnerLevel < 0 || lngOwnerLevel != OwnerLevelOf(m_lngLevel)) return;
    const Ref<Level>& owner_level = m_objLevel[static_cast<std::size_t>(lngOwnerLevel)];
    if (!owner_level) throw Failure(kObjectNotSet);
    const Ref<ElementTable> array = owner_level->ElementArray();
    if (IsArrayEmpty(array)) return;
    owner_fields_.Set(array, strFieldOwner, bxaeField, strValue);
  });
}

}  // namespace tessary
