#include "com/registration.h"

#include <string>

#include "com/class_table.h"
#include "com/com_error.h"
#include "com/com_ptr.h"
#include "com/module.h"
#include "com/system.h"

// The system exports these two; not every set of headers declares them.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help_folder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor, LCID locale,
                                        SYSKIND system);
}

namespace tessary::com {
namespace {

constexpr wchar_t kVersion[] = L".1";
constexpr WORD kTypeLibraryMajor = 1;
constexpr WORD kTypeLibraryMinor = 0;

void CheckRegistry(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw ComError{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
}

// Owner of an open registry key.
class RegistryKey {
 public:
  RegistryKey(HKEY parent, const std::wstring& path) {
    CheckRegistry(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  &key_, nullptr));
  }
  ~RegistryKey() { RegCloseKey(key_); }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// Turns HKEY_CLASSES_ROOT, which shows the machine's and the current user's classes as one, into
// one of these parts: what is written or deleted must not land in the other.
class ClassesOf {
 public:
  explicit ClassesOf(RegistrationScope scope)
      : classes_(scope == RegistrationScope::kMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER,
                 L"Software\\Classes") {
    CheckRegistry(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_.get()));
  }
  ~ClassesOf() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
  ClassesOf(const ClassesOf&) = delete;
  ClassesOf& operator=(const ClassesOf&) = delete;

 private:
  RegistryKey classes_;
};

std::wstring Braced(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring ClassPath(const CreatableClass& entry) { return L"CLSID\\" + Braced(entry.class_id); }
std::wstring ProgId(const CreatableClass& entry) { return std::wstring(L"Tessary.") + entry.name; }

// Sets a value below HKEY_CLASSES_ROOT; a null name is the key's own value.
void SetValue(const std::wstring& path, const wchar_t* name, const std::wstring& value) {
  const RegistryKey key(HKEY_CLASSES_ROOT, path);
  const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  CheckRegistry(RegSetValueExW(key.get(), name, 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(value.c_str()), size));
}

void DeleteTree(const std::wstring& path) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, path.c_str());
  if (status != ERROR_FILE_NOT_FOUND) CheckRegistry(status);
}

void RegisterProgId(const std::wstring& prog_id, const CreatableClass& entry) {
  SetValue(prog_id, nullptr, entry.description);
  SetValue(prog_id + L"\\CLSID", nullptr, Braced(entry.class_id));
}

void RegisterClass(const CreatableClass& entry, const std::wstring& path) {
  const std::wstring class_path = ClassPath(entry);
  const std::wstring versioned = ProgId(entry) + kVersion;
  SetValue(class_path, nullptr, entry.description);
  SetValue(class_path + L"\\InprocServer32", nullptr, path);
  SetValue(class_path + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  SetValue(class_path + L"\\ProgID", nullptr, versioned);
  SetValue(class_path + L"\\VersionIndependentProgID", nullptr, ProgId(entry));
  SetValue(class_path + L"\\TypeLib", nullptr, Braced(LIBID_Tessary));
  SetValue(class_path + L"\\Version", nullptr, L"1.0");
  SetValue(class_path + L"\\Programmable", nullptr, L"");
  RegisterProgId(versioned, entry);
  RegisterProgId(ProgId(entry), entry);
  SetValue(ProgId(entry) + L"\\CurVer", nullptr, versioned);
}

bool HasKey(const std::wstring& path, REGSAM view) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ | view, &key);
  if (status != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

// True when the DLL of the other architecture is registered; both share the ProgIDs.
bool IsRegisteredForOtherBits(const CreatableClass& entry) {
  return HasKey(ClassPath(entry), sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
}

void UnregisterClass(const CreatableClass& entry) {
  DeleteTree(ClassPath(entry));
  if (IsRegisteredForOtherBits(entry)) return;
  DeleteTree(ProgId(entry) + kVersion);
  DeleteTree(ProgId(entry));
}

// The system writes type libraries past the turned HKEY_CLASSES_ROOT, so it must be told as well
// whose they are.
void RegisterTypeLibrary(RegistrationScope scope) {
  std::wstring path = ModulePath();
  const auto function =
      scope == RegistrationScope::kCurrentUser ? RegisterTypeLibForUser : RegisterTypeLib;
  Check(function(ModuleTypeLibrary().get(), path.data(), nullptr));
}

// Where the type library is registered for programs of 32 or 64 bit.
std::wstring TypeLibraryPath(bool for_64_bit) {
  const std::wstring version =
      std::to_wstring(kTypeLibraryMajor) + L"." + std::to_wstring(kTypeLibraryMinor) + L"\\0\\";
  return L"TypeLib\\" + Braced(LIBID_Tessary) + L"\\" + version +
         (for_64_bit ? L"win64" : L"win32");
}

void UnregisterTypeLibrary(RegistrationScope scope) {
  constexpr bool kIs64Bit = sizeof(void*) == 8;
  if (!HasKey(TypeLibraryPath(kIs64Bit), 0)) return;  // the system's answers to that differ
  // The system would take the keys of the interfaces away, which the other DLL needs as well.
  if (HasKey(TypeLibraryPath(!kIs64Bit), 0)) return DeleteTree(TypeLibraryPath(kIs64Bit));
  constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  const auto function =
      scope == RegistrationScope::kCurrentUser ? UnRegisterTypeLibForUser : UnRegisterTypeLib;
  Check(function(LIBID_Tessary, kTypeLibraryMajor, kTypeLibraryMinor, LOCALE_NEUTRAL, kSystem));
}

}  // namespace

void Register(RegistrationScope scope) {
  const ClassesOf classes(scope);
  const std::wstring path = ModulePath();
  for (const CreatableClass& entry : CreatableClasses()) RegisterClass(entry, path);
  RegisterTypeLibrary(scope);
}

void Unregister(RegistrationScope scope) {
  const ClassesOf classes(scope);
  for (const CreatableClass& entry : CreatableClasses()) UnregisterClass(entry);
  UnregisterTypeLibrary(scope);
}

}  // namespace tessary::com
