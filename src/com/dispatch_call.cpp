// The system's call by type information converts values, but not what a script engine passes for
// a typed reference: a reference to a variant. Every argument is therefore first brought into the
// form that the member declares. What the member leaves in a reference goes back, converted to
// the type of the caller's variable; a variable that cannot take it is refused before the member
// runs.

#include "com/dispatch_call.h"

#include <cstring>
#include <optional>
#include <vector>

#include "com/com_ptr.h"
#include "com/variant.h"

namespace tessary::com {
namespace {

// A member of a type, or none.
class Member {
 public:
  Member(ITypeInfo* info, DISPID id, WORD flags) : info_(info) {
    for (UINT index = 0; SUCCEEDED(info_->GetFuncDesc(index, &function_)); ++index) {
      if (function_->memid == id && (function_->invkind & flags) != 0) return;
      info_->ReleaseFuncDesc(function_);
    }
    function_ = nullptr;
  }
  ~Member() {
    if (function_) info_->ReleaseFuncDesc(function_);
  }
  Member(const Member&) = delete;
  Member& operator=(const Member&) = delete;

  // The declared type of the parameter that an argument is for, or null.
  const TYPEDESC* ParameterOf(const DISPPARAMS& arguments, UINT argument) const {
    if (!function_) return nullptr;
    DISPID parameter = static_cast<DISPID>(arguments.cArgs - 1 - argument);
    if (argument < arguments.cNamedArgs) parameter = arguments.rgdispidNamedArgs[argument];
    if (parameter == DISPID_PROPERTYPUT) parameter = function_->cParams - 1;
    if (parameter < 0 || parameter >= function_->cParams) return nullptr;
    return &function_->lprgelemdescParam[parameter].tdesc;
  }

 private:
  ITypeInfo* info_;
  FUNCDESC* function_ = nullptr;
};

// What a parameter takes, as far as the system's own conversion does not cover it.
struct Wanted {
  bool by_reference = false;
  VARTYPE type = VT_EMPTY;
  IID interface_id = IID_NULL;  // of a VT_DISPATCH
};

struct NamedType {
  TYPEKIND kind;
  IID guid;
};

NamedType TypeOfReference(ITypeInfo* info, HREFTYPE reference) {
  ComPtr<ITypeInfo> named;
  Check(info->GetRefTypeInfo(reference, named.Put()));
  TYPEATTR* attributes = nullptr;
  Check(named->GetTypeAttr(&attributes));
  const NamedType type{attributes->typekind, attributes->guid};
  named->ReleaseTypeAttr(attributes);
  return type;
}

// Nothing for a parameter that takes a plain value.
std::optional<Wanted> WantedBy(ITypeInfo* info, const TYPEDESC& parameter) {
  if (parameter.vt != VT_PTR) return std::nullopt;
  const TYPEDESC& target = *parameter.lptdesc;
  if (target.vt == VT_PTR && target.lptdesc->vt == VT_USERDEFINED) {
    return Wanted{true, VT_DISPATCH, TypeOfReference(info, target.lptdesc->hreftype).guid};
  }
  if (target.vt != VT_USERDEFINED) return Wanted{true, target.vt, IID_NULL};
  const NamedType type = TypeOfReference(info, target.hreftype);
  if (type.kind == TKIND_ENUM) return Wanted{true, VT_I4, IID_NULL};
  return Wanted{false, VT_DISPATCH, type.guid};
}

bool IsMissing(const VARIANT& value) {
  return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

Variant ObjectAs(const Variant& value, const IID& interface_id) {
  if (IsNothing(value.get())) return Variant::Object(nullptr);
  if (value.type() != VT_DISPATCH && value.type() != VT_UNKNOWN) {
    throw ComError{DISP_E_TYPEMISMATCH};
  }
  void* object = nullptr;
  if (FAILED(V_UNKNOWN(&value.get())->QueryInterface(interface_id, &object))) {
    throw ComError{DISP_E_TYPEMISMATCH};
  }
  return Variant::Object(static_cast<IDispatch*>(object));  // every interface declared here is dual
}

Variant ConvertedTo(const Wanted& wanted, const VARIANT& argument) {
  const Variant value = Variant::Copy(argument);
  if (wanted.type == VT_DISPATCH) return ObjectAs(value, wanted.interface_id);
  return value.type() == VT_NULL ? Variant().As(wanted.type) : value.As(wanted.type);
}

// The variable of the caller that a by-reference argument refers to, found through references to
// variants that refer to further ones. Nothing can be stored where the argument is a plain value.
class Variable {
 public:
  Variable() = default;
  explicit Variable(VARIANTARG& argument) : place_(&argument) {
    constexpr int kMostReferences = 16;
    for (int followed = 0; V_VT(place_) == (VT_BYREF | VT_VARIANT); ++followed) {
      if (followed == kMostReferences) throw ComError{DISP_E_TYPEMISMATCH};
      is_variant_ = true;
      place_ = V_VARIANTREF(place_);
      RequirePointer(place_);
    }
    if (IsTyped()) RequirePointer(V_BYREF(place_));
  }

  const VARIANT& value() const { return *place_; }
  bool CanBeStored() const { return is_variant_ || IsTyped(); }

  // Raises DISP_E_TYPEMISMATCH when a value of this type can never be stored.
  void RequireRoomFor(VARTYPE wanted) const {
    if (!IsTyped()) return;
    const bool is_number = NumberSize(type()) > 0 && NumberSize(wanted) > 0;
    const bool is_object = IsObject(type()) && IsObject(wanted);
    if (type() != wanted && !is_number && !is_object) throw ComError{DISP_E_TYPEMISMATCH};
  }

  void Store(const Variant& value) {
    if (!IsTyped()) {
      Variant copy = value;
      std::swap(*place_, *copy.Use());
    } else if (IsObject(type())) {
      auto* object = Variant(value).Detach().punkVal;
      std::swap(*V_UNKNOWNREF(place_), object);
      if (object) object->Release();
    } else if (type() == VT_BSTR) {
      BSTR text = Variant(value).Detach().bstrVal;
      std::swap(*V_BSTRREF(place_), text);
      SysFreeString(text);
    } else {
      const Variant converted = value.As(type());
      std::memcpy(V_BYREF(place_), &V_NONE(&converted.get()), NumberSize(type()));
    }
  }

 private:
  VARTYPE type() const { return static_cast<VARTYPE>(V_VT(place_) & ~VT_BYREF); }
  bool IsTyped() const { return (V_VT(place_) & VT_BYREF) != 0; }
  static bool IsObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }
  // 0 for what is no number.
  static std::size_t NumberSize(VARTYPE type) {
    switch (type) {
      case VT_I1:
      case VT_UI1:
        return 1;
      case VT_I2:
      case VT_UI2:
      case VT_BOOL:
        return 2;
      case VT_I4:
      case VT_UI4:
      case VT_INT:
      case VT_UINT:
      case VT_R4:
        return 4;
      case VT_I8:
      case VT_UI8:
      case VT_R8:
      case VT_CY:
        return 8;
      default:
        return 0;
    }
  }

  VARIANT* place_ = nullptr;
  bool is_variant_ = false;
};

class Arguments {
 public:
  // `in_error`, which may be null, tells which argument the constructor had to do with last.
  Arguments(ITypeInfo* info, const Member& member, DISPPARAMS& given, UINT* in_error)
      : prepared_(given.cArgs), values_(given.cArgs), results_(given.cArgs) {
    for (UINT argument = 0; argument < given.cArgs; ++argument) {
      if (in_error) *in_error = argument;
      Prepare(info, member.ParameterOf(given, argument), given.rgvarg[argument], argument);
    }
    passed_ = given;
    passed_.rgvarg = prepared_.data();
  }

  DISPPARAMS* passed() { return &passed_; }

  void WriteBack() {
    for (std::size_t argument = 0; argument < results_.size(); ++argument) {
      if (results_[argument]) results_[argument]->Store(values_[argument]);
    }
  }

 private:
  void Prepare(ITypeInfo* info, const TYPEDESC* parameter, VARIANTARG& given, UINT argument) {
    const Variable variable(given);
    VARIANTARG& prepared = prepared_[argument];
    prepared = variable.value();
    if (!parameter || IsMissing(prepared)) return;
    const std::optional<Wanted> wanted = WantedBy(info, *parameter);
    if (!wanted) return;
    if (wanted->by_reference) variable.RequireRoomFor(wanted->type);
    values_[argument] = ConvertedTo(*wanted, prepared);
    if (!wanted->by_reference) {
      prepared = values_[argument].get();
      return;
    }
    V_VT(&prepared) = static_cast<VARTYPE>(VT_BYREF | wanted->type);
    V_BYREF(&prepared) = &V_NONE(values_[argument].Use());
    if (variable.CanBeStored()) results_[argument] = variable;
  }

  std::vector<VARIANTARG> prepared_;  // owns nothing
  std::vector<Variant> values_;       // what the prepared arguments refer to, where converted
  std::vector<std::optional<Variable>> results_;  // where to store them after the call
  DISPPARAMS passed_{};
};

}  // namespace

HRESULT CallByTypeInfo(ITypeInfo* info, void* interface_pointer, DISPID member, WORD flags,
                       DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                       UINT* argument_in_error) {
  const Member called(info, member, flags);
  Arguments prepared(info, called, *arguments, argument_in_error);
  const HRESULT done = info->Invoke(interface_pointer, member, flags, prepared.passed(), result,
                                    exception, argument_in_error);
  if (FAILED(done)) return done;
  try {
    prepared.WriteBack();
  } catch (const ComError&) {
    if (result) VariantClear(result);  // a failed call has none
    throw;
  }
  return done;
}

}  // namespace tessary::com
