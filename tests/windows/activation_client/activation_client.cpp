// A program that knows the component by name only and gets it from the system: by the registry, or
// by the manifest that it carries itself. Exit code 0 when everything went as it must; otherwise
// it prints what did not.

#include <cstdio>
#include <thread>

#include "com/com_ptr.h"
#include "com/system.h"

namespace tessary::com {
namespace {

int failures = 0;

void Expect(const char* what, bool is_so) {
  if (is_so) return;
  std::printf("not so: %s\n", what);
  ++failures;
}

class Apartment {
 public:
  explicit Apartment(DWORD kind) { CoInitializeEx(nullptr, kind); }
  ~Apartment() { CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

template <class Interface>
ComPtr<Interface> Create(const wchar_t* prog_id) {
  CLSID class_id = CLSID_NULL;
  ComPtr<Interface> object;
  if (FAILED(CLSIDFromProgID(prog_id, &class_id))) return object;
  CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.PutVoid());
  return object;
}

void UseHere() {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  {
    const auto manager = Create<IBXConvertLLMgr>(L"Tessary.BXConvertLLMgr");
    const auto level = Create<IBXLevelBasis>(L"Tessary.BXLevel7.1");
    Expect("a manager is created", static_cast<bool>(manager));
    Expect("a level is created", static_cast<bool>(level));
    LONG successes = -1;
    if (manager) manager->get_CountCorrectReports(&successes);
    Expect("the manager answers", successes == 0);
    CoFreeUnusedLibrariesEx(0, 0);
    Expect("what is used stays loaded", GetModuleHandleW(L"Tessary.dll") != nullptr);
  }
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  Expect("what is unused is unloaded", GetModuleHandleW(L"Tessary.dll") == nullptr);
}

void UseFromAnotherApartment() {
  const Apartment apartment(COINIT_MULTITHREADED);
  const auto manager = Create<IBXConvertLLMgr>(L"Tessary.BXConvertLLMgr");
  LONG successes = -1;
  if (manager) manager->get_CountCorrectReports(&successes);
  Expect("a proxy answers", successes == 0);
}

}  // namespace
}  // namespace tessary::com

int main() {
  tessary::com::UseHere();
  std::thread(tessary::com::UseFromAnotherApartment).join();
  return tessary::com::failures == 0 ? 0 : 1;
}
