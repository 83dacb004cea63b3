// The entry points of the DLL.

#include <cwchar>

#include "com/class_factory.h"
#include "com/class_table.h"
#include "com/com_error.h"
#include "com/module.h"
#include "com/registration.h"
#include "com/system.h"
#include "com/thread_state.h"

namespace {

using namespace tessary::com;

constexpr ErrorOrigin kOrigin{IID_IClassFactory, L"Tessary"};

// Registers as a whole or not at all.
HRESULT RegisterIn(RegistrationScope scope) {
  const HRESULT registered = Guarded(kOrigin, [&] { Register(scope); });
  if (FAILED(registered)) Guarded(kOrigin, [&] { Unregister(scope); });
  return FAILED(registered) ? SELFREG_E_CLASS : S_OK;
}

HRESULT UnregisterIn(RegistrationScope scope) {
  return FAILED(Guarded(kOrigin, [&] { Unregister(scope); })) ? SELFREG_E_CLASS : S_OK;
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID process_ends) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      SetModuleHandle(instance);
      return StartThreadStates();
    case DLL_THREAD_DETACH:
      EndThreadState();
      break;
    case DLL_PROCESS_DETACH:
      if (!process_ends) EndAllThreadStates();
      break;
    default:
      break;
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, LPVOID* object) {
  return Guarded(kOrigin, [&] {
    RequirePointer(object);
    *object = nullptr;
    const CreatableClass* const found = FindClass(class_id);
    if (!found) throw ComError{CLASS_E_CLASSNOTAVAILABLE};
    Check(NewClassFactory(*found)->QueryInterface(iid, object));
  });
}

STDAPI DllCanUnloadNow() {
  if (ModuleInUse()) return S_FALSE;
  ReleaseTypeLibrary();
  return S_OK;
}

STDAPI DllRegisterServer() { return RegisterIn(RegistrationScope::kMachine); }

STDAPI DllUnregisterServer() { return UnregisterIn(RegistrationScope::kMachine); }

// "user" as command line registers for the current user, "machine" or none for the machine.
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  const wchar_t* const choice = command_line && *command_line ? command_line : L"machine";
  const bool user = _wcsicmp(choice, L"user") == 0;
  if (!user && _wcsicmp(choice, L"machine") != 0) return E_INVALIDARG;
  const auto scope = user ? RegistrationScope::kCurrentUser : RegistrationScope::kMachine;
  return install ? RegisterIn(scope) : UnregisterIn(scope);
}
