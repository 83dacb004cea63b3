#include "com/module.h"

#include <atomic>
#include <mutex>

#include "com/com_error.h"

namespace tessary::com {
namespace {

std::atomic<long> locks{0};
HINSTANCE module_handle = nullptr;

std::mutex type_library_mutex;
ITypeLib* type_library = nullptr;  // no owner object: nothing may run when the DLL is unloaded

}  // namespace

ModuleLock::ModuleLock() noexcept { LockModule(); }
ModuleLock::~ModuleLock() { UnlockModule(); }

void LockModule() noexcept { ++locks; }
void UnlockModule() noexcept { --locks; }
bool ModuleInUse() noexcept { return locks != 0; }

void SetModuleHandle(HINSTANCE instance) noexcept { module_handle = instance; }
HINSTANCE ModuleHandle() noexcept { return module_handle; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size =
        GetModuleFileNameW(module_handle, path.data(), static_cast<DWORD>(path.size()));
    if (size == 0) throw ComError{HRESULT_FROM_WIN32(GetLastError())};
    if (size < path.size()) {
      path.resize(size);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

ComPtr<ITypeLib> ModuleTypeLibrary() {
  const std::lock_guard lock(type_library_mutex);
  if (!type_library) Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &type_library));
  return ComPtr<ITypeLib>::Share(type_library);
}

ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid) {
  ComPtr<ITypeInfo> info;
  Check(ModuleTypeLibrary()->GetTypeInfoOfGuid(guid, info.Put()));
  return info;
}

void ReleaseTypeLibrary() noexcept {
  const std::lock_guard lock(type_library_mutex);
  if (type_library) type_library->Release();
  type_library = nullptr;
}

}  // namespace tessary::com
