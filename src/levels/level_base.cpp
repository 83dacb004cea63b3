#include "levels/level_base.h"

#include "levels/section_reader.h"

namespace tessary {
namespace {

constexpr std::array<std::string_view, kLevelCount> kClassNames = {
    "BXLevel0", "BXLevel1", "BXLevel2", "BXLevel3", "BXLevel4",
    "BXLevel5", "BXLevel6", "BXLevel7", "BXLevel8", "BXLevel9"};

// The class identifier of the level that receives the differences inside an element; the last
// level is not descended below.
constexpr std::array<std::string_view, kLevelCount> kChildClasses = {
    "Tessary.BXLevel1", "Tessary.BXLevel2",
    "Tessary.BXLevel3", "Tessary.BXLevel4",
    "Tessary.BXLevel5", "Tessary.BXLevel6",
    "Tessary.BXLevel7", "Tessary.BXLevel8",
    "Tessary.BXLevel9", ""};

}  // namespace

LevelBase::LevelBase(const Ref<EngineContext>& context, int number)
    : number_(number), m_objBasis(context) {
  m_objBasis.SetLevelClassName(kClassNames[static_cast<std::size_t>(number)]);
}

void LevelBase::ReadLines(std::string_view lines) { ReadSection(*this, lines); }

void LevelBase::AddAsRead(std::string_view line, BXLineType type) {
  const Property texts = type == bxltSection ? Property{line, line, {}} : SplitProperty(line);
  m_objBasis.AddAsRead(texts, static_cast<std::int8_t>(ChildClass()));
}

void LevelBase::AddAsRead(const ElementKey& identity) {
  m_objBasis.AddAsRead(identity, static_cast<std::int8_t>(ChildClass()));
}

void LevelBase::Add(const AddArguments& arguments) {
  InProcedure("BXLevelBasis_Add").Run([&] {
    Property texts{arguments.strName, arguments.strKey, arguments.strValue};
    if (arguments.bxltLineType == bxltSection && texts.strKey.empty()) {
      texts.strKey = texts.strName;
    }
    if (arguments.bxltLineType == bxltProperty) {
      texts = SplitProperty(arguments.strName);
      ApplyPropertyRule(texts);
    }
    m_objBasis.Add(arguments, texts, static_cast<std::int8_t>(ChildClass()));
  });
}

void LevelBase::ApplyPropertyRule(const Property&) {}

void LevelBase::Compare(const Ref<ElementTable>& aOldElement,
                        const Ref<ElementTable>& aNewElement) {
  InProcedure(CompareProcedure()).Run([&] {
    if (IsArrayEmpty(aOldElement) && IsArrayEmpty(aNewElement)) return;
    if (CheckForAddingAllElements(aOldElement, aNewElement)) return;
    CheckMissing(aOldElement, aNewElement);
    CompareElements(aOldElement, aNewElement, kChildClasses[static_cast<std::size_t>(number_)]);
  });
}

void LevelBase::CheckMissing(const Ref<ElementTable>& aOldElement,
                             const Ref<ElementTable>& aNewElement) {
  CheckMissingElements(aNewElement, aOldElement, bxsNew);
  CheckMissingElements(aOldElement, aNewElement, bxsDelete);
}

void LevelBase::PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t) {
  UpdateBeforeWriting();
  m_objBasis.PrepareWriting(aWrite, number_);
}

}  // namespace tessary
