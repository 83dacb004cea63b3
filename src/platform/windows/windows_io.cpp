#include "platform/windows/windows_io.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/windows/native_path.h"
#include "platform/windows/windows_errors.h"

namespace tessary {

namespace {

DWORD ChunkSize(std::size_t size) {
  // Network drives refuse very large pieces.
  constexpr std::size_t kLargest = std::size_t{16} << 20;
  return static_cast<DWORD>(std::min(size, kLargest));
}

// Some file servers number no files.
bool HasIndex(const OpenedFile& file) {
  return (file.info.nFileIndexHigh | file.info.nFileIndexLow) != 0;
}

bool TrySeek(HANDLE file, std::uint64_t pos) {
  LARGE_INTEGER distance;
  distance.QuadPart = static_cast<LONGLONG>(pos);
  return SetFilePointerEx(file, distance, nullptr, FILE_BEGIN) != 0;
}

}  // namespace

bool IsSameFile(const OpenedFile& a, const OpenedFile& b) {
  if (!HasIndex(a) && !HasIndex(b)) {
    const std::optional<std::wstring> path = FinalPathOf(a.handle.get());
    const std::optional<std::wstring> other = FinalPathOf(b.handle.get());
    return path && other && _wcsicmp(path->c_str(), other->c_str()) == 0;
  }
  return a.info.dwVolumeSerialNumber == b.info.dwVolumeSerialNumber &&
         a.info.nFileIndexHigh == b.info.nFileIndexHigh &&
         a.info.nFileIndexLow == b.info.nFileIndexLow;
}

std::optional<std::wstring> FinalPathOf(HANDLE file) {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const auto capacity = static_cast<DWORD>(path.size());
    const DWORD size = GetFinalPathNameByHandleW(file, path.data(), capacity, 0);
    if (size == 0) return std::nullopt;
    path.resize(size);
    if (size < capacity) return path;
  }
}

FileHandle TryOpen(const std::wstring& path, DWORD access, DWORD share, DWORD disposition,
                   DWORD attributes) {
  return FileHandle(
      CreateFileW(path.c_str(), access, share, nullptr, disposition, attributes, nullptr));
}

OpenedFile RequireRegular(FileHandle handle) {
  OpenedFile file{std::move(handle), {}};
  if (GetFileType(file.handle.get()) != FILE_TYPE_DISK) throw Failure(kPathFileAccess);
  if (!GetFileInformationByHandle(file.handle.get(), &file.info)) FailWithLastError();
  return file;
}

OpenedFile OpenRegularFile(const std::wstring& path, DWORD access, DWORD share) {
  if (IsFolder(path)) throw Failure(kPathFileAccess);
  FileHandle handle = TryOpen(path, access, share);
  if (!handle.is_open()) FailWithLastError();
  return RequireRegular(std::move(handle));
}

std::size_t ReadSome(HANDLE file, char* buffer, std::size_t size) {
  DWORD count = 0;
  if (!ReadFile(file, buffer, ChunkSize(size), &count, nullptr)) FailWithLastError();
  return count;
}

std::size_t WriteSome(HANDLE file, std::string_view bytes) {
  DWORD count = 0;
  if (!WriteFile(file, bytes.data(), ChunkSize(bytes.size()), &count, nullptr)) FailWithLastError();
  if (count == 0) throw Failure(kDiskFull);
  return count;
}

void WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) bytes.remove_prefix(WriteSome(file, bytes));
}

bool TryResize(HANDLE file, std::uint64_t size) {
  return TrySeek(file, size) && SetEndOfFile(file) && TrySeek(file, 0);
}

void Flush(HANDLE file) {
  if (FlushFileBuffers(file)) return;
  // Some file systems have nothing to flush and say so.
  const DWORD error = GetLastError();
  if (error != ERROR_INVALID_FUNCTION && error != ERROR_NOT_SUPPORTED) FailWith(error);
}

}  // namespace tessary
