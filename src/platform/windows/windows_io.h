#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windows/file_handle.h"

// System calls on native paths and handles. Errors raise Failure except where a function says
// otherwise.

namespace tessary {

// Others may do with the file what they like.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct OpenedFile {
  FileHandle handle;
  BY_HANDLE_FILE_INFORMATION info;

  std::uint64_t size() const { return std::uint64_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow; }
};

// True when both are one file, whatever names they were opened by.
bool IsSameFile(const OpenedFile& a, const OpenedFile& b);

// The path of an open file, links followed; nothing when it has none.
std::optional<std::wstring> FinalPathOf(HANDLE file);

// Calls CreateFile; the result is not open, and the last error set, when that fails.
FileHandle TryOpen(const std::wstring& path, DWORD access, DWORD share,
                   DWORD disposition = OPEN_EXISTING, DWORD attributes = FILE_ATTRIBUTE_NORMAL);

// Opens an existing regular file; 75 for anything else.
OpenedFile OpenRegularFile(const std::wstring& path, DWORD access, DWORD share);

// Takes over an open file; 75 when it is not a regular one.
OpenedFile RequireRegular(FileHandle handle);

std::size_t ReadSome(HANDLE file, char* buffer, std::size_t size);
// Writes as many of the bytes as the system takes at once, at least one, and returns their number.
std::size_t WriteSome(HANDLE file, std::string_view bytes);
void WriteAll(HANDLE file, std::string_view bytes);

// Sets the file's end at `size` and goes back to its beginning; false, and the last error set, when
// that fails.
bool TryResize(HANDLE file, std::uint64_t size);

// Waits until the file is on the disk.
void Flush(HANDLE file);

}  // namespace tessary
