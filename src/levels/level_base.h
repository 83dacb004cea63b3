#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "engine/level_basis.h"
#include "engine/procedure.h"
#include "levels/report_format.h"
#include "report/line_syntax.h"

namespace tessary {

// What all ten level classes have in common: they keep their elements in an inner BXLevelBasis,
// forward to it, and split property lines. The virtual questions at the end are where a level
// differs from the others.
class LevelBase : public Level {
 public:
  void Add(const AddArguments& arguments) override;
  void SetElementArray(Ref<ElementTable> array) override {
    m_objBasis.SetElementArray(std::move(array));
  }
  Ref<ElementTable> ElementArray() override { return m_objBasis.ElementArray(); }
  Ref<Level> LastElement() override { return m_objBasis.LastElement(); }
  void Compare(const Ref<ElementTable>& aOldElement, const Ref<ElementTable>& aNewElement) override;
  void CompareElements(const Ref<ElementTable>& aOldElement, const Ref<ElementTable>& aNewElement,
                       std::string_view strCreateObject) override {
    m_objBasis.CompareElements(aOldElement, aNewElement, strCreateObject, ElementPairing());
  }
  void CheckMissingElements(const Ref<ElementTable>& aSource, const Ref<ElementTable>& aDest,
                            BXStatus bxsStatus) override {
    m_objBasis.CheckMissingElements(aSource, aDest, bxsStatus);
  }
  bool CheckForAddingAllElements(const Ref<ElementTable>& aOldElement,
                                 const Ref<ElementTable>& aNewElement) override {
    return m_objBasis.CheckForAddingAllElements(aOldElement, aNewElement);
  }
  bool GetFoundFieldValue(FoundField& field) override {
    return m_objBasis.GetFoundFieldValue(field);
  }
  // The level number given is ignored: every class writes its own.
  void PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t lngLevel) override;
  void Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) override {
    m_objBasis.Convert(aReport, aDiffFile);
  }
  void SetInsertionObserver(BeforeInsertHandler* observer) override {
    m_objBasis.SetInsertionObserver(observer);
  }
  int ClassNumber() const override { return number_; }
  void ReadLines(std::string_view lines) override;

  // Adds the element of such a line, which has no tabs or blanks at its ends. Leaves the error
  // collection alone; what can be wrong with a line was found out before.
  void AddAsRead(std::string_view line, BXLineType type);
  // The same for a section of which name, key and type are known.
  void AddAsRead(const ElementKey& identity);

 protected:
  LevelBase(const Ref<EngineContext>& context, int number);

  int number() const { return number_; }
  BXLevelBasis& basis() { return m_objBasis; }
  // The level's elements; null or without rows when there are none.
  Ref<ElementTable> Elements() { return ElementArray(); }
  TextPool& pool() const { return *m_objBasis.context().pool(); }
  void Yield() const { m_objBasis.context().Yield(); }
  // A procedure of this class that has no message of its own.
  Procedure InProcedure(std::string_view name) const {
    return {m_objBasis.context().errors(), m_objBasis.LevelClassName(), name};
  }
  // A property line was taken apart: a level may find in it the key or type of the section above.
  virtual void ApplyPropertyRule(const Property& property);
  // Records the elements that only one side has; a list that is a run is compared by place.
  virtual void CheckMissing(const Ref<ElementTable>& aOldElement,
                            const Ref<ElementTable>& aNewElement);
  virtual Pairing ElementPairing() const { return {}; }
  // What has to be renumbered before the level is written.
  virtual void UpdateBeforeWriting() {}
  virtual std::string_view CompareProcedure() const { return "BXLevelBasis_Compare"; }

 private:
  int ChildClass() const { return std::min(number_ + 1, kLevelCount - 1); }

  const int number_;
  BXLevelBasis m_objBasis;
};

}  // namespace tessary
