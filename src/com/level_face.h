#pragma once

#include "com/connection_point.h"
#include "com/dual.h"
#include "engine/level.h"

namespace tessary::com {

// A level object as clients see it: one of the ten classes, or the engine class by itself. Sinks
// hear of insertions for as long as this object is held.
class LevelFace final : public Dual<IBXLevelBasis>,
                        public IConnectionPointContainer,
                        private BeforeInsertHandler {
 public:
  // A new level object of a class number, or of the engine class.
  static ComPtr<IDispatch> New(int number);
  // The one face of a level object on the calling thread; none for none.
  static ComPtr<IBXLevelBasis> Of(const Ref<Level>& level);
  // The level object behind an argument, none for none; DISP_E_TYPEMISMATCH for a foreign
  // object or one of another thread.
  static Ref<Level> LevelOf(ThreadState& thread, IUnknown* object);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    return Dual::QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Dual::AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return Dual::Release(); }

  STDMETHODIMP Add(BSTR strName, ::bxsBXStatus bxsStatus, BSTR strKey, BSTR strTyp,
                   BSTR strPosPrevName, BSTR strPosPrevKey, BSTR strPosPrevTyp, BSTR strPosNextName,
                   BSTR strPosNextKey, BSTR strPosNextTyp, BSTR strPosNr, BSTR strValue,
                   IBXLevelBasis* objLevel, ::bxltBXLineType bxltLineType) override;
  STDMETHODIMP putref_ElementArray(IXArrayDB* aElement) override;
  STDMETHODIMP get_ElementArray(IXArrayDB** ppaElement) override;
  STDMETHODIMP get_LastElement(IBXLevelBasis** ppobjLevel) override;
  STDMETHODIMP Compare(IXArrayDB** aOldElement, IXArrayDB** aNewElement) override;
  STDMETHODIMP CompareElements(IXArrayDB** aOldElement, IXArrayDB** aNewElement,
                               BSTR strCreateObject) override;
  STDMETHODIMP CheckMissingElements(IXArrayDB** aSource, IXArrayDB** aDest,
                                    ::bxsBXStatus bxsStatus) override;
  STDMETHODIMP CheckForAddingAllElements(IXArrayDB** aOldElement, IXArrayDB** aNewElement,
                                         VARIANT_BOOL* pblnResult) override;
  STDMETHODIMP GetFoundFieldValue(BSTR* strFieldOwner, LONG* lngOwnerLevel,
                                  ::bxeaBXElementArray* bxaeField, BSTR* strValue,
                                  VARIANT_BOOL* pblnResult) override;
  STDMETHODIMP PrepareWriting(IXArrayDB** aWrite, LONG lngLevel) override;
  STDMETHODIMP Convert(IXArrayDB* aReport, IXArrayDB* aDiffFile) override;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

 private:
  explicit LevelFace(Ref<Level> level);
  ~LevelFace() override;

  void* FindMore(REFIID iid) override;
  void BeforeInsert(const Element& element) override;
  // The element array behind an argument, which this level may take over without getting below
  // itself.
  Ref<ElementTable> Elements(IXArrayDB* array) const;
  Ref<ElementTable> Elements(IXArrayDB** array) const;

  const ContextUse use_{thread()};
  const Ref<Level> level_;
  ConnectionPoint before_insert_{*this, thread(), DIID__IBXLevelBasisEvents};
};

}  // namespace tessary::com
