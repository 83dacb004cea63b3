#include "com/error_collection_face.h"

#include <vector>

#include "com/enumerator.h"
#include "com/text.h"
#include "com/variant.h"

namespace tessary::com {
namespace {

const ClassFacts kEntryFacts{CLSID_ErrorEntry, IID_IErrorEntry, nullptr, L"Tessary.ErrorEntry"};
const ClassFacts kCollectionFacts{CLSID_ErrorCollection, IID_IErrorCollection, nullptr,
                                  L"Tessary.ErrorCollection"};

void CopyVariant(const Variant& item, VARIANT* out) { *out = Variant(item).Detach(); }

using VariantEnumerator = Enumerator<IEnumVARIANT, Variant, VARIANT, CopyVariant>;

}  // namespace

ErrorEntryFace::ErrorEntryFace(ErrorEntry entry) : Dual(kEntryFacts), entry_(std::move(entry)) {}

STDMETHODIMP ErrorEntryFace::get_Kind(LONG* plngKind) {
  return Run([&] {
    RequirePointer(plngKind);
    *plngKind = entry_.kind;
  });
}

STDMETHODIMP ErrorEntryFace::get_Number(LONG* plngNumber) {
  return Run([&] {
    RequirePointer(plngNumber);
    *plngNumber = entry_.number;
  });
}

STDMETHODIMP ErrorEntryFace::get_Source(BSTR* pstrSource) {
  return Run([&] { ReturnText(entry_.source, pstrSource); });
}

STDMETHODIMP ErrorEntryFace::get_Text(BSTR* pstrText) {
  return Run([&] { ReturnText(entry_.message, pstrText); });
}

ErrorCollectionFace::ErrorCollectionFace(Ref<ErrorCollection> errors)
    : Dual(kCollectionFacts), errors_(std::move(errors)) {
  thread().SetFace(errors_.get(), static_cast<IErrorCollection*>(this));
}

ErrorCollectionFace::~ErrorCollectionFace() { thread().ForgetFace(errors_.get()); }

ComPtr<IErrorCollection> ErrorCollectionFace::Of(const Ref<ErrorCollection>& errors) {
  IUnknown* known = ThreadState::Current()->FaceOf(errors.get());
  if (known) return ComPtr<IErrorCollection>::Query(known);
  return ComPtr<IErrorCollection>::Share(new ErrorCollectionFace(errors));
}

STDMETHODIMP ErrorCollectionFace::get_Count(LONG* plngCount) {
  return Run([&] {
    RequirePointer(plngCount);
    *plngCount = static_cast<LONG>(errors_->entries().size());
  });
}

STDMETHODIMP ErrorCollectionFace::get_Item(LONG lngIndex, IErrorEntry** ppobjEntry) {
  return Run([&] {
    RequirePointer(ppobjEntry);
    *ppobjEntry = nullptr;
    const std::vector<ErrorEntry>& entries = errors_->entries();
    if (lngIndex < 1 || static_cast<std::size_t>(lngIndex) > entries.size()) {
      throw Failure(kSubscriptOutOfRange);
    }
    const ErrorEntry& entry = entries[static_cast<std::size_t>(lngIndex) - 1];
    *ppobjEntry = NewObject<ErrorEntryFace>(entry).Detach();
  });
}

STDMETHODIMP ErrorCollectionFace::get__NewEnum(IUnknown** ppobjEnum) {
  return Run([&] {
    RequirePointer(ppobjEnum);
    *ppobjEnum = nullptr;
    std::vector<Variant> items;
    for (const ErrorEntry& entry : errors_->entries()) {
      items.push_back(Variant::Object(NewObject<ErrorEntryFace>(entry).Detach()));
    }
    *ppobjEnum = VariantEnumerator::Make(std::move(items)).Detach();
  });
}

STDMETHODIMP ErrorCollectionFace::Clear() {
  return Run([&] {
    if (thread().operating()) throw Failure(kInvalidCall);  // the operation still needs them
    errors_->Reset();
  });
}

}  // namespace tessary::com
