// Writing a level: one line per element, in row order, and behind each element all lines of its
// child level. A line is the element's description, where it has a known status, and its text.

#include "engine/diff_text.h"
#include "engine/level_basis.h"
#include "engine/section_text.h"
#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {

void BXLevelBasis::PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t lngLevel) {
  const Procedure procedure =
      InProcedure("BXLevelBasis_PrepareWriting", "Fehler beim Vorbereiten des Schreibvorganges.");
  const Descent descent(*context_);
  procedure.Run([&] {
    if (IsArrayEmpty(m_aElement)) return;
    if (!aWrite) aWrite = MakeRef<WriteTable>();
    AsReadWriter as_read;
    for (std::int32_t row = 1; row <= m_aElement->rows(); ++row) {
      context_->Yield();
      const Element& element = m_aElement->Row(row);
      WriteElement(element, lngLevel, *aWrite);
      if (!element.unread().empty()) {
        if (as_read.Append(element.unread(), element.pending_child, *aWrite)) continue;
        ChildOf(*m_aElement, row);
      }
      if (element.child) element.child->PrepareWriting(aWrite, 0);
    }
  });
}

void BXLevelBasis::WriteElement(const Element& element, std::int32_t level,
                                WriteTable& lines) const {
  const auto text = [&](BXElementArray column) { return pool().Text(element.key[column]); };
  const std::string_view name = text(bxeaName);
  const bool is_plain =
      element.status == bxsUnknown && !name.starts_with('[') && !TrimBlanks(name).empty();
  std::string& line = is_plain ? lines.AppendProperty(level) : lines.Append(level);
  if (element.status != bxsUnknown) {
    ElementToDiffText(static_cast<BXStatus>(element.status),
                      {text(bxeaKey), text(bxeaTyp), text(bxeaPosPrevName), text(bxeaPosPrevKey),
                       text(bxeaPosPrevTyp), text(bxeaPosNextName), text(bxeaPosNextKey),
                       text(bxeaPosNextTyp), text(bxeaPosNr)},
                      line);
  }
  if (IsSectionLine(name)) {
    line.append(name);
  } else if (!TrimBlanks(name).empty()) {
    AppendProperty(name, text(bxeaKey), element.value(), line);
  } else if (!TrimBlanks(text(bxeaKey)).empty()) {
    line.append(text(bxeaKey)).append("=").append(element.value());
  }
}

}  // namespace tessary
