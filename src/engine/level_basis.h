#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "engine/level.h"
#include "engine/procedure.h"
#include "report/line_syntax.h"

namespace tessary {

class DifferenceTelling;

// How the elements of two lists are paired when they are compared.
struct Pairing {
  std::string_view skipped_key;    // rows of the new list with this key are left out; empty: none
  bool by_identity_alone = false;  // the position columns play no part
};

// The engine behind every level class: one level's element list and all that is done with it.
class BXLevelBasis final : public Level {
 public:
  explicit BXLevelBasis(Ref<EngineContext> context);
  ~BXLevelBasis() override;

  // The name of the class that owns this object; it opens the source text of every error entry.
  // The characters must outlive the object.
  void SetLevelClassName(std::string_view name) { m_strLevelClassName = name; }
  std::string_view LevelClassName() const { return m_strLevelClassName; }
  // The level class that takes part in insertions, or null; must outlive this object.
  void SetBeforeInsertHandler(BeforeInsertHandler* handler) { before_insert_ = handler; }
  EngineContext& context() const { return *context_; }

  // Adds an element whose name, key and value are those of `texts` and no others. `pending_child`:
  // the class number of the child level that it gets on first use when the arguments bring none, or
  // Element::kNoChild.
  void Add(const AddArguments& arguments, const Property& texts, std::int8_t pending_child);

  // Adds an element that has stood in a report. Not under the error convention.
  void AddAsRead(const Property& texts, std::int8_t pending_child);
  // The same for one without a value whose name, key and type are known.
  void AddAsRead(const ElementKey& identity, std::int8_t pending_child);

  void Add(const AddArguments& arguments) override {
    Add(arguments, {arguments.strName, arguments.strKey, arguments.strValue}, Element::kNoChild);
  }
  void SetElementArray(Ref<ElementTable> array) override { m_aElement = std::move(array); }
  Ref<ElementTable> ElementArray() override { return m_aElement; }
  Ref<Level> LastElement() override;
  void Compare(const Ref<ElementTable>&, const Ref<ElementTable>&) override {}
  void CompareElements(const Ref<ElementTable>& aOldElement, const Ref<ElementTable>& aNewElement,
                       std::string_view strCreateObject) override;
  void CheckMissingElements(const Ref<ElementTable>& aSource, const Ref<ElementTable>& aDest,
                            BXStatus bxsStatus) override;
  bool CheckForAddingAllElements(const Ref<ElementTable>& aOldElement,
                                 const Ref<ElementTable>& aNewElement) override;
  bool GetFoundFieldValue(FoundField& field) override;
  void PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t lngLevel) override;
  void Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) override;
  void SetInsertionObserver(BeforeInsertHandler* observer) override {
    insertion_observer_ = observer;
  }

  // CompareElements with another way of pairing.
  void CompareElements(const Ref<ElementTable>& aOldElement, const Ref<ElementTable>& aNewElement,
                       std::string_view strCreateObject, const Pairing& pairing);
  // CheckMissingElements for lists whose order matters: by key and place, from row lngStartRow on.
  // What differs at the same place afterwards is recorded as replaced.
  void CheckMissingSpecialElements(const Ref<ElementTable>& aSource, const Ref<ElementTable>& aDest,
                                   BXStatus bxsStatus, std::int32_t lngStartRow);
  void SetFoundFieldValue(const FoundField& field) { found_field_ = field; }

 private:
  Procedure InProcedure(std::string_view name, std::string_view message) const {
    return {context_->errors(), m_strLevelClassName, name, message};
  }
  Procedure InPrivateProcedure(std::string_view name) const {
    return {context_->errors(), "BXLevelBasis", name};
  }

  TextPool& pool() const { return *context_->pool(); }
  DifferenceTelling Telling() const;
  ElementTable& Array();
  Element MakeElement(const AddArguments& arguments, const Property& texts,
                      std::int8_t pending_child) const;
  void SetTexts(Element& element, const Property& texts) const;
  void AddElement(Element&& element);
  void CheckValuesAround(Element& element);
  void AppendReadElement(Element&& element, std::int8_t pending_child);
  Element Read(ElementTable& array, std::int32_t row) const;
  void FollowLast(Element& element);
  void NumberRun(std::int32_t last, Element& element);
  Ref<Level> ChildOf(ElementTable& array, std::int32_t row) const {
    return context_->ChildOf(array, row);
  }
  Ref<ElementTable> ChildArrayOf(const Element& element) const;

  void Record(const Element& element, BXStatus status);
  void TakeOver(const Ref<ElementTable>& source, std::vector<std::uint8_t> marked, BXStatus status);
  void TakeOverSurplus(const Ref<ElementTable>& source, const Ref<ElementTable>& dest,
                       BXStatus status, std::int32_t start);
  void RecordReplaced(const Ref<ElementTable>& source, const Ref<ElementTable>& dest,
                      BXStatus status, std::int32_t start);
  void ReportUnpaired();
  void ComparePair(const Element& old_element, const Element& new_element, int child_class);
  void PassUnchanged();
  bool ContentsDiffer(const Element& old_element, const Element& new_element);

  void WriteElement(const Element& element, std::int32_t level, WriteTable& lines) const;

  void PrepareConversion(const Ref<ElementTable>& aDiffFile);
  void ApplyDifference(const Ref<ElementTable>& aDiffFile, std::int32_t lngRow);
  void AnnounceInsertion(ElementTable& aDiffFile, std::int32_t lngRow);
  void DeleteElement(const Element& difference);
  void InsertElement(const Element& difference);
  void UpdateElement(const Ref<ElementTable>& aDiffFile, std::int32_t lngRow);
  std::int64_t InsertionRow(const ElementKey& key) const;

  Ref<EngineContext> context_;
  Ref<ElementTable> m_aElement;
  std::string_view m_strLevelClassName;
  BeforeInsertHandler* before_insert_ = nullptr;
  BeforeInsertHandler* insertion_observer_ = nullptr;
  FoundField found_field_;
  // The number of the element added last to a run, as text and as it is.
  Symbol last_number_text_ = Symbol::kEmpty;
  std::int32_t last_number_ = 0;
};

}  // namespace tessary
