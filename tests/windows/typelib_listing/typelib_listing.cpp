// Lists the type library inside a DLL: interfaces with their slots, names, parameters and
// defaults, enumerations and classes.
//   typelib_listing DLL            prints the listing
//   typelib_listing DLL FILE       compares it with a file; exit code 1 and both lines where they
//                                  first differ

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace {

std::string Utf8(const wchar_t* text) {
  if (!text) return {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

std::string Taken(BSTR text) {
  const std::string utf8 = Utf8(text);
  SysFreeString(text);
  return utf8;
}

std::string GuidText(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return Utf8(text);
}

std::string NameOf(ITypeInfo* info, MEMBERID member) {
  BSTR name = nullptr;
  info->GetDocumentation(member, &name, nullptr, nullptr, nullptr);
  return Taken(name);
}

std::string HelpOf(ITypeInfo* info, MEMBERID member) {
  BSTR help = nullptr;
  info->GetDocumentation(member, nullptr, &help, nullptr, nullptr);
  return Taken(help);
}

std::string TypeText(ITypeInfo* info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeText(info, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
      ITypeInfo* named = nullptr;
      info->GetRefTypeInfo(type.hreftype, &named);
      const std::string name = NameOf(named, MEMBERID_NIL);
      named->Release();
      return name;
    }
    case VT_I4:
    case VT_INT:
      return "Long";
    case VT_BSTR:
      return "String";
    case VT_BOOL:
      return "Boolean";
    case VT_VARIANT:
      return "Variant";
    case VT_DISPATCH:
      return "Object";
    case VT_UNKNOWN:
      return "IUnknown*";
    case VT_HRESULT:
      return "HRESULT";
    case VT_VOID:
      return "void";
    default:
      return "vt" + std::to_string(type.vt);
  }
}

std::string ValueText(const VARIANT& value) {
  if (V_VT(&value) == VT_BSTR) return '"' + Utf8(V_BSTR(&value)) + '"';
  VARIANT text;
  VariantInit(&text);
  VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR);
  return Taken(V_BSTR(&text));
}

std::string ParameterText(ITypeInfo* info, const ELEMDESC& parameter, const std::string& name) {
  const USHORT flags = parameter.paramdesc.wParamFlags;
  std::string text = "[";
  text += flags & PARAMFLAG_FIN ? "in" : "";
  text += flags & PARAMFLAG_FOUT ? (flags & PARAMFLAG_FIN ? ",out" : "out") : "";
  text += flags & PARAMFLAG_FRETVAL ? ",retval" : "";
  text += flags & PARAMFLAG_FOPT ? ",optional" : "";
  text += "] " + TypeText(info, parameter.tdesc) + " " + name;
  if (flags & PARAMFLAG_FHASDEFAULT) {
    text += " = " + ValueText(parameter.paramdesc.pparamdescex->varDefaultValue);
  }
  return text;
}

const char* KindText(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return "get ";
    case INVOKE_PROPERTYPUT:
      return "put ";
    case INVOKE_PROPERTYPUTREF:
      return "putref ";
    default:
      return "";
  }
}

void ListFunction(ITypeInfo* info, UINT index, std::ostream& out) {
  FUNCDESC* function = nullptr;
  if (FAILED(info->GetFuncDesc(index, &function))) return;
  BSTR names[32] = {};
  UINT count = 0;
  info->GetNames(function->memid, names, 32, &count);
  out << "  " << function->oVft / static_cast<int>(sizeof(void*)) << " id " << function->memid
      << " " << KindText(function->invkind) << Taken(names[0]) << "(";
  for (SHORT at = 0; at < function->cParams; ++at) {
    // The value of a property that is set has no name of its own.
    const std::string name = static_cast<UINT>(at) + 1 < count ? Taken(names[at + 1]) : "";
    out << (at > 0 ? ", " : "") << ParameterText(info, function->lprgelemdescParam[at], name);
  }
  out << ") " << TypeText(info, function->elemdescFunc.tdesc);
  if (function->wFuncFlags != 0) out << " flags " << function->wFuncFlags;
  out << " - " << HelpOf(info, function->memid) << "\n";
  info->ReleaseFuncDesc(function);
}

void ListMembers(ITypeInfo* info, std::ostream& out) {
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  for (UINT index = 0; index < attributes->cVars; ++index) {
    VARDESC* variable = nullptr;
    info->GetVarDesc(index, &variable);
    out << "  " << NameOf(info, variable->memid) << " = " << ValueText(*variable->lpvarValue)
        << "\n";
    info->ReleaseVarDesc(variable);
  }
  for (UINT index = 0; index < attributes->cFuncs; ++index) ListFunction(info, index, out);
  for (UINT index = 0; attributes->typekind == TKIND_COCLASS && index < attributes->cImplTypes;
       ++index) {
    HREFTYPE reference = 0;
    INT flags = 0;
    ITypeInfo* implemented = nullptr;
    info->GetRefTypeOfImplType(index, &reference);
    info->GetImplTypeFlags(index, &flags);
    info->GetRefTypeInfo(reference, &implemented);
    out << "  " << (flags & IMPLTYPEFLAG_FDEFAULT ? "default " : "")
        << (flags & IMPLTYPEFLAG_FSOURCE ? "source " : "") << NameOf(implemented, MEMBERID_NIL)
        << "\n";
    implemented->Release();
  }
  info->ReleaseTypeAttr(attributes);
}

void ListType(ITypeInfo* info, std::ostream& out) {
  static const char* const kinds[] = {"enum",          "record", "module", "interface",
                                      "dispinterface", "class",  "alias",  "union"};
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  ITypeInfo* vtable = nullptr;
  HREFTYPE reference = 0;
  // Of a dual interface the view with the slots.
  const bool dual = attributes->typekind == TKIND_DISPATCH &&
                    (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0 &&
                    SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) &&
                    SUCCEEDED(info->GetRefTypeInfo(reference, &vtable));
  out << "\n" << (dual ? "dual interface" : kinds[attributes->typekind]) << " "
      << NameOf(info, MEMBERID_NIL) << " " << GuidText(attributes->guid) << " flags "
      << attributes->wTypeFlags << " - " << HelpOf(info, MEMBERID_NIL) << "\n";
  info->ReleaseTypeAttr(attributes);
  ListMembers(dual ? vtable : info, out);
  if (vtable) vtable->Release();
}

std::string Listing(ITypeLib* library) {
  std::ostringstream out;
  TLIBATTR* attributes = nullptr;
  BSTR name = nullptr;
  BSTR help = nullptr;
  library->GetLibAttr(&attributes);
  library->GetDocumentation(-1, &name, &help, nullptr, nullptr);
  out << "library " << Taken(name) << " " << GuidText(attributes->guid) << " "
      << attributes->wMajorVerNum << "." << attributes->wMinorVerNum << " - " << Taken(help)
      << "\n";
  library->ReleaseTLibAttr(attributes);
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    ITypeInfo* info = nullptr;
    library->GetTypeInfo(index, &info);
    ListType(info, out);
    info->Release();
  }
  return out.str();
}

int Compare(const std::string& listing, const wchar_t* path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  std::istringstream found(listing);
  std::string wanted_line;
  std::string found_line;
  for (int line = 1;; ++line) {
    const bool has_wanted = static_cast<bool>(std::getline(file, wanted_line));
    const bool has_found = static_cast<bool>(std::getline(found, found_line));
    if (!has_wanted && !has_found) return 0;
    if (has_wanted && has_found && wanted_line == found_line) continue;
    std::printf("line %d\n- %s\n+ %s\n", line, has_wanted ? wanted_line.c_str() : "(end)",
                has_found ? found_line.c_str() : "(end)");
    return 1;
  }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  ITypeLib* library = nullptr;
  if (FAILED(LoadTypeLibEx(arguments[1], REGKIND_NONE, &library))) {
    std::printf("cannot load the type library\n");
    return 2;
  }
  const std::string listing = Listing(library);
  library->Release();
  if (count > 2) return Compare(listing, arguments[2]);
  std::fwrite(listing.data(), 1, listing.size(), stdout);
  return 0;
}
