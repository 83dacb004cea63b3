#include "support/memory_files.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/profile_string.h"

namespace tessary {

class MemoryFiles::Reader final : public FileReader {
 public:
  explicit Reader(std::string contents) : contents_(std::move(contents)) {}

  std::size_t Read(char* buffer, std::size_t size) override {
    const std::size_t count = contents_.copy(buffer, size, pos_);
    pos_ += count;
    return count;
  }

  std::size_t SizeHint() const override { return contents_.size() - pos_; }

 private:
  std::string contents_;
  std::size_t pos_ = 0;
};

class MemoryFiles::Replacement final : public FileReplacement {
 public:
  Replacement(MemoryFiles& files, std::string path) : files_(files), path_(std::move(path)) {}

  void Write(std::string_view bytes) override { contents_.append(bytes); }

  void Commit() override {
    if (std::exchange(committed_, true)) throw Failure(kInvalidCall);
    const bool in_place = files_.IsInPlace(path_) && files_.files_.contains(path_);
    if (in_place) files_.files_[path_].clear();
    const std::size_t free_space = files_.FreeSpace();
    if (contents_.size() > free_space) {
      if (in_place) files_.files_[path_] = contents_.substr(0, free_space);
      damaged_ = in_place;
      throw Failure(kDiskFull);
    }
    files_.files_[path_] = std::move(contents_);
  }

  bool Damaged() const override { return damaged_; }

 private:
  MemoryFiles& files_;
  std::string path_;
  std::string contents_;
  bool committed_ = false;
  bool damaged_ = false;
};

std::string MemoryFiles::Normalised(const std::string& path) {
  // There is one root, whatever drive a path names.
  const std::size_t root = PathRootLength(path);
  std::string result(root > 0 ? 1 : 0, kPathSeparator);
  for (const char c : path.substr(root)) {
    const char next = IsPathSeparator(c) ? kPathSeparator : c;
    if (next != kPathSeparator || !result.ends_with(kPathSeparator)) result.push_back(next);
  }
  if (result.size() > PathRootLength(result) && result.ends_with(kPathSeparator)) result.pop_back();
  return result;
}

std::string MemoryFiles::Resolved(const std::string& path) const {
  const std::string normalised = Normalised(path);
  const auto link = links_.find(normalised);
  return link == links_.end() ? normalised : link->second;
}

bool MemoryFiles::HasFolder(const std::string& normalised) const {
  const bool is_root = normalised.size() == PathRootLength(normalised);
  return is_root || folders_.contains(normalised);
}

void MemoryFiles::RequireFolderOf(const std::string& normalised) const {
  if (normalised.empty() || normalised.find('\0') != std::string::npos) throw Failure(kBadFileName);
  if (!HasFolder(ParentFolderOf(normalised))) throw Failure(kPathNotFound);
}

const std::string& MemoryFiles::Existing(const std::string& path) const {
  const std::string resolved = Resolved(path);
  RequireFolderOf(resolved);
  if (HasFolder(resolved)) throw Failure(kPathFileAccess);
  const auto file = files_.find(resolved);
  if (file == files_.end()) throw Failure(kFileNotFound);
  return file->second;
}

void MemoryFiles::Put(const std::string& path, std::string contents) {
  const std::string resolved = Resolved(path);
  PutFolder(ParentFolderOf(resolved));
  files_[resolved] = std::move(contents);
}

void MemoryFiles::PutFolder(const std::string& path) {
  std::string folder = Normalised(path);
  while (!HasFolder(folder)) {
    folders_.insert(folder);
    folder = ParentFolderOf(folder);
  }
}

const std::string& MemoryFiles::Get(const std::string& path) const { return Existing(path); }

void MemoryFiles::Remove(const std::string& path) {
  files_.erase(Normalised(path));
  links_.erase(Normalised(path));
}

void MemoryFiles::SetReadOnly(const std::string& path, bool read_only) {
  if (read_only) {
    read_only_.insert(Normalised(path));
  } else {
    read_only_.erase(Normalised(path));
  }
}

bool MemoryFiles::IsInPlace(const std::string& normalised) const {
  return all_in_place_ || in_place_.contains(normalised);
}

std::size_t MemoryFiles::FreeSpace() const {
  std::size_t used = 0;
  for (const auto& [path, contents] : files_) used += contents.size();
  return capacity_ - std::min(used, capacity_);
}

void MemoryFiles::PutLink(const std::string& link, const std::string& target) {
  PutFolder(ParentFolderOf(Normalised(link)));
  links_[Normalised(link)] = Normalised(target);
}

bool MemoryFiles::FileExists(const std::string& path) { return files_.contains(Resolved(path)); }

bool MemoryFiles::FolderExists(const std::string& path) {
  return !path.empty() && HasFolder(Normalised(path));
}

std::vector<std::string> MemoryFiles::ListFiles(const std::string& folder) {
  const std::string wanted = Normalised(folder);
  if (wanted.empty()) throw Failure(kBadFileName);
  if (!HasFolder(wanted)) throw Failure(kPathNotFound);
  std::vector<std::string> names;
  for (const auto& [path, contents] : files_) {
    if (ParentFolderOf(path) == wanted) names.push_back(FileNameOf(path));
  }
  for (const auto& [link, target] : links_) {
    if (ParentFolderOf(link) == wanted && files_.contains(target))
      names.push_back(FileNameOf(link));
  }
  DropServiceFiles(names);
  SortFileNames(names);
  return names;
}

std::unique_ptr<FileReader> MemoryFiles::OpenForReading(const std::string& path) {
  return std::make_unique<Reader>(Existing(path));
}

std::unique_ptr<FileReplacement> MemoryFiles::OpenForReplacing(const std::string& path) {
  std::string resolved = Resolved(path);
  RequireFolderOf(resolved);
  if (HasFolder(resolved)) throw Failure(kPathFileAccess);
  if (read_only_.contains(resolved)) throw Failure(kPermissionDenied);
  return std::make_unique<Replacement>(*this, std::move(resolved));
}

void MemoryFiles::CopyFile(const std::string& from, const std::string& to) {
  const std::string contents = Existing(from);
  if (Resolved(from) == Resolved(to)) throw Failure(kPermissionDenied);
  const auto copy = OpenForReplacing(to);
  copy->Write(contents);
  copy->Commit();
}

void MemoryFiles::RenameFile(const std::string& from, const std::string& to) {
  std::string contents = Existing(from);
  const std::string target = Normalised(to);
  RequireFolderOf(target);
  if (HasFolder(target) || files_.contains(target) || links_.contains(target))
    throw Failure(kFileExists);
  files_.erase(Resolved(from));
  files_[target] = std::move(contents);
}

bool MemoryFiles::SameContents(const std::string& a, const std::string& b) {
  const auto file_a = files_.find(Resolved(a));
  const auto file_b = files_.find(Resolved(b));
  return file_a != files_.end() && file_b != files_.end() && file_a->second == file_b->second;
}

void MemoryFiles::CreateFolder(const std::string& path) {
  const std::string folder = Normalised(path);
  RequireFolderOf(folder);
  if (HasFolder(folder) || files_.contains(folder)) throw Failure(kFileExists);
  folders_.insert(folder);
}

class MemoryFiles::Lock final : public FolderLock {
 public:
  Lock(MemoryFiles& files, std::string folder) : files_(files), folder_(std::move(folder)) {}
  ~Lock() override { files_.locked_.erase(folder_); }

 private:
  MemoryFiles& files_;
  std::string folder_;
};

std::unique_ptr<FolderLock> MemoryFiles::TryLockFolder(const std::string& folder) {
  const auto [place, is_free] = locked_.insert(Normalised(folder));
  return is_free ? std::make_unique<Lock>(*this, *place) : nullptr;
}

std::string MemoryFiles::StampOf(const std::string& path) {
  return FileExists(path) ? Resolved(path) + "\n" + Existing(path) : std::string();
}

std::string MemoryFiles::IdentityOf(const std::string& path) {
  return FileExists(path) ? Resolved(path) : std::string();
}

void MemoryFiles::RemoveLeftovers(const std::string& folder) {
  const std::string wanted = Normalised(folder);
  std::erase_if(files_, [&](const auto& file) {
    return ParentFolderOf(file.first) == wanted && IsTemporaryName(FileNameOf(file.first));
  });
}

std::string MemoryFiles::ReadProfileString(const std::string& path, std::string_view section,
                                           std::string_view key) {
  const auto file = files_.find(Resolved(path));
  return file == files_.end() ? std::string() : FindProfileString(file->second, section, key);
}

}  // namespace tessary
