#pragma once

#include <string>

#include "com/com_ptr.h"
#include "com/system.h"

// What the objects of the component share as parts of one DLL.

namespace tessary::com {

// Counts something that keeps the DLL loaded: an object that a client holds, or a lock.
class ModuleLock {
 public:
  ModuleLock() noexcept;
  ~ModuleLock();
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
};

void LockModule() noexcept;
void UnlockModule() noexcept;
bool ModuleInUse() noexcept;

// Set once while the DLL is being loaded.
void SetModuleHandle(HINSTANCE instance) noexcept;
HINSTANCE ModuleHandle() noexcept;
// The DLL's own path, also a long one.
std::wstring ModulePath();

// The type library inside the DLL, which needs no registration.
ComPtr<ITypeLib> ModuleTypeLibrary();
// What it says of an interface or a class.
ComPtr<ITypeInfo> TypeInfoOf(const GUID& guid);
// Gives the type library back until it is asked for again.
void ReleaseTypeLibrary() noexcept;

}  // namespace tessary::com
