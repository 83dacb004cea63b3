#include "platform/windows/native_path.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/failure.h"
#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/text.h"
#include "platform/windows/system_headers.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_errors.h"

namespace tessary {

namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongNetworkPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view kDevicePrefix = L"\\\\.\\";
constexpr std::wstring_view kNetworkPrefix = L"\\\\";

constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                      "NUL", "CONIN$", "CONOUT$"};
constexpr std::array<std::string_view, 2> kNumberedDevices = {"COM", "LPT"};
// The digits that number devices; some superscript ones are taken for digits.
constexpr std::array<std::string_view, 13> kDeviceNumbers = {
    "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "\u00B9", "\u00B2", "\u00B3"};

bool IsNumberedDevice(std::string_view name) {
  constexpr std::size_t kWordSize = 3;
  if (name.size() <= kWordSize) return false;
  const auto is_word = [&](std::string_view word) {
    return EqualsIgnoreCase(name.substr(0, kWordSize), word);
  };
  return std::any_of(kNumberedDevices.begin(), kNumberedDevices.end(), is_word) &&
         std::find(kDeviceNumbers.begin(), kDeviceNumbers.end(), name.substr(kWordSize)) !=
             kDeviceNumbers.end();
}

void CheckPath(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) throw Failure(kBadFileName);
  if (path.find(':', PathRootLength(path)) != std::string::npos) throw Failure(kBadFileName);
  if (IsDeviceName(FileNameOf(path))) throw Failure(kPathFileAccess);
}

std::size_t LastSeparator(const std::wstring& path) { return path.find_last_of(L'\\'); }

}  // namespace

bool IsDeviceName(std::string_view name) {
  name = name.substr(0, name.find_first_of(".:"));
  while (name.ends_with(' ')) name.remove_suffix(1);
  const auto is_name = [&](std::string_view device) { return EqualsIgnoreCase(name, device); };
  return std::any_of(kDevices.begin(), kDevices.end(), is_name) || IsNumberedDevice(name);
}

std::wstring FullPath(std::string_view path) {
  const std::wstring wide = WideFromUtf8(path);
  std::wstring full(MAX_PATH, L'\0');
  while (true) {
    const auto capacity = static_cast<DWORD>(full.size());
    const DWORD size = GetFullPathNameW(wide.c_str(), capacity, full.data(), nullptr);
    if (size == 0) FailWithLastError();
    full.resize(size);
    if (size < capacity) return full;
  }
}

std::wstring WithLongPathPrefix(std::wstring path) {
  if (path.size() <= kLongestOrdinaryPath || path.starts_with(kLongPrefix)) return path;
  if (!path.starts_with(kNetworkPrefix)) return path.insert(0, kLongPrefix);
  return path.replace(0, kNetworkPrefix.size(), kLongNetworkPrefix);
}

std::wstring NativePath(const std::string& path) {
  CheckPath(path);
  std::wstring full = FullPath(path);
  if (full.starts_with(kDevicePrefix)) throw Failure(kPathFileAccess);
  return WithLongPathPrefix(std::move(full));
}

std::wstring NativeFilePath(const std::string& path) {
  std::wstring native = NativePath(path);
  if (!native.ends_with(L'\\')) return native;
  throw Failure(IsFolder(native) ? kPathFileAccess : kPathNotFound);
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring NativeFolderOf(const std::wstring& path) {
  return path.substr(0, LastSeparator(path) + 1);
}

std::wstring NativeSibling(const std::wstring& path, std::string_view name) {
  return WithLongPathPrefix(NativeFolderOf(path) + WideFromUtf8(name));
}

std::string NativeFileName(const std::wstring& path) {
  return Utf8FromWide(std::wstring_view(path).substr(LastSeparator(path) + 1));
}

}  // namespace tessary
