#pragma once

#include <string>
#include <string_view>

namespace tessary {

// `path`, which must not be empty, made absolute and normalised by the system's own rules.
std::wstring FullPath(std::string_view path);

// The same in the form for system calls: a path that is too long for ordinary ones gets the prefix
// that lifts the limit. Raises 52 for a text that is no path (an empty one, one with a zero byte or
// with a ":" that would name something inside a file) and 75 for the name of a device.
std::wstring NativePath(const std::string& path);

// The same for a file; 75 or 76 for a path that ends like a folder's.
std::wstring NativeFilePath(const std::string& path);

// The longest path that needs no prefix; folders leave room for a short file name.
constexpr std::size_t kLongestOrdinaryPath = 247;

// `path` as FullPath gives it, with the prefix if it is too long without.
std::wstring WithLongPathPrefix(std::wstring path);

// True when a native path names an existing folder.
bool IsFolder(const std::wstring& path);

// The folder of a native path, and that folder's file `name`.
std::wstring NativeFolderOf(const std::wstring& path);
std::wstring NativeSibling(const std::wstring& path, std::string_view name);

// The native path's last component.
std::string NativeFileName(const std::wstring& path);

// True for a name that stands for a device, such as "nul", "COM1.txt" or "CONOUT$".
bool IsDeviceName(std::string_view name);

}  // namespace tessary
