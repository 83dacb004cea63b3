#include "windows/component.h"

namespace tessary::com {
namespace {

template <class Function>
void Find(HMODULE module, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

std::wstring NativePath(const std::string& path) {
  const Bstr wide{std::string_view(path)};
  wchar_t full[MAX_PATH];
  const DWORD size = GetFullPathNameW(wide.get(), MAX_PATH, full, nullptr);
  return {full, size};
}

Component::Component() : module_(LoadLibraryW(NativePath(TESSARY_DLL).c_str())) {
  Find(module_, "DllGetClassObject", get_class_object_);
  Find(module_, "DllCanUnloadNow", can_unload_now_);
}

void Component::Unload() {
  if (module_) FreeLibrary(module_);
  module_ = nullptr;
}

std::string LastError() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return {};
  BSTR source = nullptr;
  BSTR text = nullptr;
  info->GetSource(&source);
  info->GetDescription(&text);
  const std::string last = ToUtf8(source) + ": " + ToUtf8(text);
  SysFreeString(source);
  SysFreeString(text);
  return last;
}

}  // namespace tessary::com
