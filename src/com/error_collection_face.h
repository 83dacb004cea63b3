#pragma once

#include "com/dual.h"
#include "engine/error_collection.h"

namespace tessary::com {

// An entry of an error collection as it was when it was asked for.
class ErrorEntryFace final : public Dual<IErrorEntry> {
 public:
  explicit ErrorEntryFace(ErrorEntry entry);

  STDMETHODIMP get_Kind(LONG* plngKind) override;
  STDMETHODIMP get_Number(LONG* plngNumber) override;
  STDMETHODIMP get_Source(BSTR* pstrSource) override;
  STDMETHODIMP get_Text(BSTR* pstrText) override;

 private:
  const ErrorEntry entry_;
};

class ErrorCollectionFace final : public Dual<IErrorCollection> {
 public:
  // The one face of a collection on the calling thread.
  static ComPtr<IErrorCollection> Of(const Ref<ErrorCollection>& errors);

  STDMETHODIMP get_Count(LONG* plngCount) override;
  STDMETHODIMP get_Item(LONG lngIndex, IErrorEntry** ppobjEntry) override;
  STDMETHODIMP get__NewEnum(IUnknown** ppobjEnum) override;
  STDMETHODIMP Clear() override;

 private:
  explicit ErrorCollectionFace(Ref<ErrorCollection> errors);
  ~ErrorCollectionFace() override;

  const Ref<ErrorCollection> errors_;
};

}  // namespace tessary::com
