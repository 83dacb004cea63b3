// The system's call by type information converts values, but not what a script engine passes for
// a typed reference: a reference to a variant. Every argument is therefore first brought into the
// form that the member declares. What the member leaves in a reference goes back, converted to
// the type of the caller's variable.

#include "com/dispatch_call.h"

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

// Stores a value in the variable that a by-reference argument refers to.
void StoreIn(VARIANT& target, const Variant& value) {
  if (V_VT(&target) == (VT_BYREF | VT_VARIANT)) {
    Variant copy = value;
    std::swap(*V_VARIANTREF(&target), *copy.Use());
    return;
  }
  const auto type = static_cast<VARTYPE>(V_VT(&target) & ~VT_BYREF);
  const bool fits = type == VT_UNKNOWN && value.type() == VT_DISPATCH;
  const Variant converted = fits ? value : value.As(type);
  switch (type) {
    case VT_BSTR:
      SysFreeString(*V_BSTRREF(&target));
      *V_BSTRREF(&target) = Variant(converted).Detach().bstrVal;
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (*V_UNKNOWNREF(&target)) (*V_UNKNOWNREF(&target))->Release();
      *V_UNKNOWNREF(&target) = Variant(converted).Detach().punkVal;
      break;
    case VT_I2:
    case VT_BOOL:
      *V_I2REF(&target) = V_I2(&converted.get());
      break;
    case VT_I4:
      *V_I4REF(&target) = V_I4(&converted.get());
      break;
    default:
      throw ComError{DISP_E_TYPEMISMATCH};
  }
}

class Arguments {
 public:
  Arguments(ITypeInfo* info, const Member& member, DISPPARAMS& given)
      : given_(given), prepared_(given.rgvarg, given.rgvarg + given.cArgs), values_(given.cArgs) {
    for (UINT argument = 0; argument < given.cArgs; ++argument) {
      Prepare(info, member.ParameterOf(given, argument), argument);
    }
    passed_ = given;
    passed_.rgvarg = prepared_.data();
  }

  DISPPARAMS* passed() { return &passed_; }

  void WriteBack() {
    for (UINT argument = 0; argument < given_.cArgs; ++argument) {
      const bool is_reference = (V_VT(&prepared_[argument]) & VT_BYREF) != 0;
      if (!is_reference || values_[argument].type() == VT_EMPTY) continue;
      if ((V_VT(&given_.rgvarg[argument]) & VT_BYREF) == 0) continue;
      StoreIn(given_.rgvarg[argument], values_[argument]);
    }
  }

 private:
  void Prepare(ITypeInfo* info, const TYPEDESC* parameter, UINT argument) {
    VARIANTARG& prepared = prepared_[argument];
    if (V_VT(&prepared) == (VT_BYREF | VT_VARIANT)) prepared = *V_VARIANTREF(&prepared);
    if (!parameter || IsMissing(prepared)) return;
    const std::optional<Wanted> wanted = WantedBy(info, *parameter);
    if (!wanted) return;
    values_[argument] = ConvertedTo(*wanted, given_.rgvarg[argument]);
    if (!wanted->by_reference) {
      prepared = values_[argument].get();
      return;
    }
    V_VT(&prepared) = static_cast<VARTYPE>(VT_BYREF | wanted->type);
    V_BYREF(&prepared) = &V_NONE(values_[argument].Use());
  }

  DISPPARAMS& given_;
  std::vector<VARIANTARG> prepared_;  // owns nothing
  std::vector<Variant> values_;       // what the prepared arguments refer to, where converted
  DISPPARAMS passed_{};
};

}  // namespace

HRESULT CallByTypeInfo(ITypeInfo* info, void* interface_pointer, DISPID member, WORD flags,
                       DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                       UINT* argument_in_error) {
  const Member called(info, member, flags);
  Arguments prepared(info, called, *arguments);
  const HRESULT done = info->Invoke(interface_pointer, member, flags, prepared.passed(), result,
                                    exception, argument_in_error);
  if (SUCCEEDED(done)) prepared.WriteBack();
  return done;
}

}  // namespace tessary::com
