#include "com/omit_collection.h"

#include <optional>

#include "com/variant.h"

namespace tessary::com {
namespace {

std::optional<DISPID> MemberNamed(IDispatch* object, const wchar_t* name) {
  auto* names = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member))) return {};
  return member;
}

// The value of a member that is asked by one string; nothing when the object raises an error.
std::optional<Variant> Ask(IDispatch* object, DISPID member, BSTR key) {
  VARIANTARG argument{};
  V_VT(&argument) = VT_BSTR;
  V_BSTR(&argument) = key;
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  Variant answer;
  const HRESULT asked =
      object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                     &arguments, answer.Put(), nullptr, nullptr);
  if (FAILED(asked)) return {};
  return answer;
}

bool IsEmptyValue(const Variant& value) {
  if (IsNothing(value.get())) return true;
  return value.type() == VT_BSTR && SysStringLen(V_BSTR(&value.get())) == 0;
}

}  // namespace

OmitCollection::OmitCollection(const VARIANT& collection) {
  if (V_VT(&collection) == VT_ERROR) {
    if (IsNothing(collection)) return;
    throw ComError{DISP_E_TYPEMISMATCH};
  }
  const Variant value = Variant::Copy(collection);
  if (IsNothing(value.get())) return;
  if (value.type() != VT_DISPATCH && value.type() != VT_UNKNOWN) {
    throw ComError{DISP_E_TYPEMISMATCH};
  }
  object_ = ComPtr<IDispatch>::Query(V_UNKNOWN(&value.get()));
  if (!object_) throw ComError{DISP_E_TYPEMISMATCH};
}

bool OmitCollection::Contains(const std::string& key) const {
  const Bstr text{std::string_view(key)};
  if (!Exists(text.get())) return false;
  std::optional<Variant> value = Ask(object_.get(), DISPID_VALUE, text.get());
  if (!value) {
    const std::optional<DISPID> item = MemberNamed(object_.get(), L"Item");
    if (item) value = Ask(object_.get(), *item, text.get());
  }
  return value && !IsEmptyValue(*value);
}

// True as well where the object cannot tell. It is asked first because reading a missing key adds
// it to some kinds of dictionary.
bool OmitCollection::Exists(BSTR key) const {
  const std::optional<DISPID> exists = MemberNamed(object_.get(), L"Exists");
  if (!exists) return true;
  std::optional<Variant> answer = Ask(object_.get(), *exists, key);
  Variant found;
  if (!answer || FAILED(VariantChangeType(found.Put(), answer->Use(), 0, VT_BOOL))) return true;
  return V_BOOL(&found.get()) != VARIANT_FALSE;
}

}  // namespace tessary::com
