#pragma once

#include <cstdint>
#include <string_view>

#include "engine/element.h"
#include "engine/ref.h"
#include "engine/write_table.h"
#include "platform/failure.h"

namespace tessary {

class ElementTable;

// Hears of an element that Convert is about to insert, before the place for it is looked for.
class BeforeInsertHandler {
 public:
  virtual ~BeforeInsertHandler() = default;
  virtual void BeforeInsert(const Element& element) = 0;
  // What has been put off until a run of insertions is over must be done now: something other than
  // an insertion follows, or somebody else may look.
  virtual void CompleteInsertions() {}
};

// The arguments of Add: an element's columns and what kind of line it comes from. The texts need
// to live only as long as the call.
struct AddArguments {
  std::string_view strName;
  BXStatus bxsStatus = bxsUnknown;
  std::string_view strKey;
  std::string_view strTyp;
  std::string_view strPosPrevName;
  std::string_view strPosPrevKey;
  std::string_view strPosPrevTyp;
  std::string_view strPosNextName;
  std::string_view strPosNextKey;
  std::string_view strPosNextTyp;
  std::string_view strPosNr;
  std::string_view strValue;
  Ref<Level> objLevel;
  BXLineType bxltLineType = bxltUnknown;
};

// A value that a level rule found in a property line and that belongs to the section that owns
// the property: the section's name and level, and the column that takes the value.
struct FoundField {
  bool found = false;
  std::int8_t owner_level = 0;
  std::int8_t field = bxeaKey;
  Symbol owner = Symbol::kEmpty;
  Symbol value = Symbol::kEmpty;
};

// The element list of one nesting level: the interface that the ten level classes implement, and
// the engine class behind them. A failure leaves every member as an exception of type Failure,
// with the entries of the error convention in the shared error collection.
class Level : public RefCounted {
 public:
  // Appends one element.
  virtual void Add(const AddArguments& arguments) = 0;

  // The element array; the setter takes a reference, it does not copy. No array before the first
  // Add.
  virtual void SetElementArray(Ref<ElementTable> array) = 0;
  virtual Ref<ElementTable> ElementArray() = 0;

  // The child level of the last row, none where that row has none. Failure 91 without an array,
  // 9 without rows.
  virtual Ref<Level> LastElement() = 0;

  // Adds the differences between two element arrays of this level to this object's own array.
  // Both inputs are used up: rows that were recorded as new or deleted are gone from them.
  virtual void Compare(const Ref<ElementTable>& aOldElement,
                       const Ref<ElementTable>& aNewElement) = 0;

  // The steps of a comparison. CompareElements records the elements of the new array that differ
  // from their counterpart in the old one; `strCreateObject` is the class identifier of the level
  // that receives the differences inside an element, or empty.
  virtual void CompareElements(const Ref<ElementTable>& aOldElement,
                               const Ref<ElementTable>& aNewElement,
                               std::string_view strCreateObject) = 0;
  // Records the elements of `aSource` that `aDest` lacks with status `bxsStatus` and deletes them
  // from `aSource`.
  virtual void CheckMissingElements(const Ref<ElementTable>& aSource,
                                    const Ref<ElementTable>& aDest, BXStatus bxsStatus) = 0;
  // Where one array is empty, records all elements of the other and empties it. True when that was
  // so.
  virtual bool CheckForAddingAllElements(const Ref<ElementTable>& aOldElement,
                                         const Ref<ElementTable>& aNewElement) = 0;

  // Hands out what a level rule found during the last Add; true once for each found value.
  virtual bool GetFoundFieldValue(FoundField& field) = 0;

  // Appends the lines of this level and all below it to `aWrite`, which is created when needed.
  virtual void PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t lngLevel) = 0;

  // Makes `aReport` this level's array and applies the differences of `aDiffFile` to it, which is
  // put into the order deletions, insertions, updates. After a failure the differences applied so
  // far stay applied.
  virtual void Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) = 0;

  // Who hears of insertions after the level class itself, with the element's child level in place;
  // or null. Must outlive this object or be taken back.
  virtual void SetInsertionObserver(BeforeInsertHandler* observer) = 0;

  // Adds the elements of a section's lines in a file, which are well nested, have no status, and
  // live as long as the context's texts. Only for an empty list of a level class; Failure 5 else.
  virtual void ReadLines(std::string_view) { throw Failure(kInvalidCall); }

  // 0 to 9 for the level classes, kNoLevelClass for the engine class by itself.
  static constexpr int kNoLevelClass = -1;
  virtual int ClassNumber() const { return kNoLevelClass; }
};

// The number of the level class with this class identifier ("Tessary.BXLevel1" ..
// "Tessary.BXLevel9"); Failure 429 for any other.
int LevelClassNumber(std::string_view class_identifier);

}  // namespace tessary
