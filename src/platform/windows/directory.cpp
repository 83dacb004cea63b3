#include "platform/windows/directory.h"

#include "platform/failure.h"
#include "platform/windows/native_path.h"
#include "platform/windows/system_headers.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_errors.h"
#include "platform/windows/windows_io.h"

namespace tessary {

namespace {

// Goes through the entries of a folder.
class FolderSearch {
 public:
  explicit FolderSearch(const std::wstring& pattern)
      : search_(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry_, FindExSearchNameMatch,
                                 nullptr, FIND_FIRST_EX_LARGE_FETCH)) {}
  ~FolderSearch() {
    if (found()) FindClose(search_);
  }
  FolderSearch(const FolderSearch&) = delete;
  FolderSearch& operator=(const FolderSearch&) = delete;

  bool found() const { return search_ != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& entry() const { return entry_; }
  bool Next() { return FindNextFileW(search_, &entry_) != 0; }

 private:
  WIN32_FIND_DATAW entry_{};
  HANDLE search_;
};

std::wstring WithSeparator(std::wstring folder) {
  if (!folder.ends_with(L'\\')) folder.push_back(L'\\');
  return folder;
}

bool IsLink(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

bool IsRegular(const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  if (!IsLink(entry)) return true;
  const std::wstring path = WithLongPathPrefix(WithSeparator(folder) + entry.cFileName);
  return TryOpen(path, 0, kShareAll).is_open();
}

[[noreturn]] void FailSearching(const std::wstring& folder, DWORD error) {
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  const bool is_file =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  if (is_file || error == ERROR_FILE_NOT_FOUND) throw Failure(kPathNotFound);
  FailWith(error);
}

}  // namespace

std::vector<std::string> RegularFileNames(const std::wstring& folder) {
  std::vector<std::string> names;
  FolderSearch search(WithLongPathPrefix(WithSeparator(folder) + L'*'));
  if (!search.found()) {
    // The root of an empty drive has no entry at all, not even itself.
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND && IsFolder(folder)) return names;
    FailSearching(folder, error);
  }
  do {
    if (IsRegular(folder, search.entry())) names.push_back(Utf8FromWide(search.entry().cFileName));
  } while (search.Next());
  if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES) FailWith(error);
  return names;
}

}  // namespace tessary
