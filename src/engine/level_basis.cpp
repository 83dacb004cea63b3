// Adding elements. Every element of a report is told what stands before and behind it in its
// level, and elements of the same name that follow each other are numbered, so that the place of
// an element can later be found again in a report that looks different. Elements that come with a
// status already carry this information and are stored as they are.

#include "engine/level_basis.h"

#include "engine/number_of.h"
#include "platform/text.h"

namespace tessary {

BXLevelBasis::BXLevelBasis(Ref<EngineContext> context) : context_(std::move(context)) {}

BXLevelBasis::~BXLevelBasis() {
  context_->Yield();
  if (m_aElement) context_->Bury(std::move(m_aElement));
}

ElementTable& BXLevelBasis::Array() {
  if (!m_aElement) m_aElement = MakeRef<ElementTable>(context_->pool());
  return *m_aElement;
}

void BXLevelBasis::Add(const AddArguments& arguments, const Property& texts,
                       std::int8_t pending_child) {
  AddElement(MakeElement(arguments, texts, pending_child));
}

void BXLevelBasis::AddAsRead(const Property& texts, std::int8_t pending_child) {
  Element element;
  SetTexts(element, texts);
  AppendReadElement(std::move(element), pending_child);
}

void BXLevelBasis::AddAsRead(const ElementKey& identity, std::int8_t pending_child) {
  Element element;
  element.key = identity;
  AppendReadElement(std::move(element), pending_child);
}

void BXLevelBasis::AppendReadElement(Element&& element, std::int8_t pending_child) {
  element.pending_child = pending_child;
  ElementTable& array = Array();
  FollowLast(element);
  array.Append(std::move(element));
}

void BXLevelBasis::SetTexts(Element& element, const Property& texts) const {
  TextPool& symbols = pool();
  element.key[bxeaName] = symbols.Intern(texts.strName);
  const bool key_is_name =
      texts.strKey.data() == texts.strName.data() && texts.strKey.size() == texts.strName.size();
  element.key[bxeaKey] = key_is_name ? element.key[bxeaName] : symbols.Intern(texts.strKey);
  element.set_value(symbols.Keep(texts.strValue));
}

Element BXLevelBasis::MakeElement(const AddArguments& arguments, const Property& texts,
                                  std::int8_t pending_child) const {
  TextPool& symbols = pool();
  Element element;
  element.status = static_cast<std::int8_t>(arguments.bxsStatus);
  SetTexts(element, texts);
  element.key[bxeaTyp] = symbols.Intern(arguments.strTyp);
  element.key[bxeaPosPrevName] = symbols.Intern(arguments.strPosPrevName);
  element.key[bxeaPosPrevKey] = symbols.Intern(arguments.strPosPrevKey);
  element.key[bxeaPosPrevTyp] = symbols.Intern(arguments.strPosPrevTyp);
  element.key[bxeaPosNextName] = symbols.Intern(arguments.strPosNextName);
  element.key[bxeaPosNextKey] = symbols.Intern(arguments.strPosNextKey);
  element.key[bxeaPosNextTyp] = symbols.Intern(arguments.strPosNextTyp);
  element.key[bxeaPosNr] = symbols.Intern(arguments.strPosNr);
  element.child = arguments.objLevel;
  if (!element.child) element.pending_child = pending_child;
  return element;
}

void BXLevelBasis::AddElement(Element&& element) {
  InProcedure("BXLevelBasis_Add", "Fehler beim Hinzufügen eines Elementes.").Run([&] {
    ElementTable& array = Array();
    if (element.status == bxsUnknown) CheckValuesAround(element);
    array.Append(std::move(element));
  });
}

void BXLevelBasis::CheckValuesAround(Element& element) {
  InPrivateProcedure("CheckValuesAround").Run([&] { FollowLast(element); });
}

// Notes the last element as the one before `element`, and `element` as the one behind it.
void BXLevelBasis::FollowLast(Element& element) {
  if (IsArrayEmpty(m_aElement)) return;
  const std::int32_t last = m_aElement->rows();
  const auto fill = [](Symbol& empty, Symbol text) {
    if (empty == Symbol::kEmpty) empty = text;
  };
  const ElementKey& previous = m_aElement->Row(last).key;
  fill(element.key[bxeaPosPrevName], previous[bxeaName]);
  fill(element.key[bxeaPosPrevKey], previous[bxeaKey]);
  fill(element.key[bxeaPosPrevTyp], previous[bxeaTyp]);
  if (pool().Same(previous[bxeaName], element.key[bxeaName])) NumberRun(last, element);
  m_aElement->FillNext(last, element.key);
}

// Numbers an element that follows one of the same name; the first of a run gets its number only
// now.
void BXLevelBasis::NumberRun(std::int32_t last, Element& element) {
  const Symbol previous = m_aElement->Row(last).key[bxeaPosNr];
  const std::int32_t number = previous == Symbol::kEmpty      ? 1
                              : previous == last_number_text_ ? last_number_
                                                              : NumberOf(pool().Text(previous));
  if (number == INT32_MAX) throw Failure(kOverflow);
  last_number_ = number + 1;
  last_number_text_ = pool().InternNumber(last_number_);
  element.key[bxeaPosNr] = last_number_text_;
  if (previous == Symbol::kEmpty) m_aElement->SetText(last, bxeaPosNr, pool().InternNumber(1));
}

Ref<Level> BXLevelBasis::LastElement() {
  if (!m_aElement) throw Failure(kObjectNotSet);
  return ChildOf(*m_aElement, m_aElement->rows());
}

// The element array of an element's child level. A child that nobody has used has none yet.
Ref<ElementTable> BXLevelBasis::ChildArrayOf(const Element& element) const {
  if (!element.HasChild()) throw Failure(kObjectNotSet);
  return context_->ContentsOf(element);
}

// A row of which nothing is unread any more.
Element BXLevelBasis::Read(ElementTable& array, std::int32_t row) const {
  if (!array.Row(row).unread().empty()) ChildOf(array, row);
  return array.Row(row);
}

bool BXLevelBasis::GetFoundFieldValue(FoundField& field) {
  field = found_field_;
  found_field_.found = false;
  return field.found;
}

}  // namespace tessary
