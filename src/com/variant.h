#pragma once

#include <utility>

#include "com/com_error.h"
#include "com/system.h"
#include "com/text.h"

namespace tessary::com {

// Owner of one variant.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  Variant(const Variant& other) : Variant(Copy(other.value_)) {}
  Variant(Variant&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  static Variant Long(LONG number) {
    Variant variant;
    V_VT(&variant.value_) = VT_I4;
    V_I4(&variant.value_) = number;
    return variant;
  }
  static Variant Text(Bstr text) {
    Variant variant;
    V_VT(&variant.value_) = VT_BSTR;
    V_BSTR(&variant.value_) = text.Detach();
    return variant;
  }
  // Takes over the reference; null is the object reference Nothing.
  static Variant Object(IDispatch* reference) {
    Variant variant;
    V_VT(&variant.value_) = VT_DISPATCH;
    V_DISPATCH(&variant.value_) = reference;
    return variant;
  }
  // A copy that refers to nothing outside itself.
  static Variant Copy(const VARIANT& source) {
    Variant variant;
    Check(VariantCopyInd(&variant.value_, const_cast<VARIANT*>(&source)));
    return variant;
  }

  VARTYPE type() const { return V_VT(&value_); }
  const VARIANT& get() const { return value_; }
  VARIANT* Put() {
    VariantClear(&value_);
    return &value_;
  }
  VARIANT* Use() { return &value_; }
  VARIANT Detach() { return std::exchange(value_, VARIANT{}); }

  // The value as another type, by the rules that hold everywhere; DISP_E_TYPEMISMATCH where there
  // is none. Numbers are written and read without regard to the user's settings.
  Variant As(VARTYPE wanted) const {
    Variant variant;
    Check(VariantChangeTypeEx(&variant.value_, const_cast<VARIANT*>(&value_), LOCALE_INVARIANT,
                              VARIANT_NOVALUEPROP, wanted));
    return variant;
  }

 private:
  VARIANT value_;
};

// True for all ways in which a caller says that there is no object or value.
inline bool IsNothing(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_ERROR:
      return V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return V_UNKNOWN(&value) == nullptr;
    default:
      return false;
  }
}

}  // namespace tessary::com
