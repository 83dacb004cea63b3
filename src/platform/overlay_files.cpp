// Names and contents are kept apart, as file systems do: a file written by way of a link is changed
// under all its names, and one that is renamed keeps its contents. A copy of a file that has not
// been written refers to it, so that the backup of a whole folder takes no memory.

#include "platform/overlay_files.h"

#include <utility>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/profile_string.h"

namespace tessary {
namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

// No identity of a file of another file system looks like this.
std::string NewIdentity(const std::string& normalised) { return "new " + normalised; }

// A copy would have read the whole file.
void ReadThrough(FileReader& file) {
  std::string block(kBlockSize, '\0');
  while (file.Read(block.data(), block.size()) > 0) {
  }
}

}  // namespace

class OverlayFiles::Reader final : public FileReader {
 public:
  explicit Reader(Contents contents) : contents_(std::move(contents)) {}

  std::size_t Read(char* buffer, std::size_t size) override {
    const std::size_t count = contents_->copy(buffer, size, pos_);
    pos_ += count;
    return count;
  }
  std::size_t SizeHint() const override { return contents_->size() - pos_; }

 private:
  Contents contents_;
  std::size_t pos_ = 0;
};

class OverlayFiles::Replacement final : public FileReplacement {
 public:
  Replacement(OverlayFiles& files, std::string name, File file)
      : files_(files), name_(std::move(name)), file_(std::move(file)) {}

  void Write(std::string_view bytes) override { contents_.append(bytes); }
  void Commit() override {
    if (std::exchange(committed_, true)) throw Failure(kInvalidCall);
    files_.contents_[file_.identity] = std::make_shared<const std::string>(std::move(contents_));
    files_.names_[name_] = file_;
  }
  bool Damaged() const override { return false; }

 private:
  OverlayFiles& files_;
  std::string name_;
  File file_;
  std::string contents_;
  bool committed_ = false;
};

std::string OverlayFiles::Normalised(const std::string& path) {
  const std::size_t root = PathRootLength(path);
  std::string result = path.substr(0, root);
  for (const char c : path.substr(root)) {
    const char next = IsPathSeparator(c) ? kPathSeparator : c;
    if (next != kPathSeparator || !result.ends_with(kPathSeparator)) result.push_back(next);
  }
  if (result.size() > root && result.ends_with(kPathSeparator)) result.pop_back();
  return result;
}

std::optional<OverlayFiles::File> OverlayFiles::Find(const std::string& path) {
  const auto changed = names_.find(Normalised(path));
  if (changed != names_.end()) return changed->second;
  std::string identity = base_.IdentityOf(path);
  if (identity.empty()) return std::nullopt;
  return File{std::move(identity), path};
}

OverlayFiles::File OverlayFiles::Existing(const std::string& path) {
  if (auto file = Find(path)) return *std::move(file);
  // The file system below says best what is wrong with the path.
  const std::string name = Normalised(path);
  if (!names_.contains(name) && !folders_.contains(ParentFolderOf(name))) base_.OpenForReading(path);
  throw Failure(kFileNotFound);
}

OverlayFiles::Contents OverlayFiles::WrittenTo(const File& file) const {
  const auto written = contents_.find(file.identity);
  return written == contents_.end() ? nullptr : written->second;
}

void OverlayFiles::CheckWriting(const std::string& path) {
  if (!folders_.contains(ParentFolderOf(Normalised(path)))) base_.CheckReplacing(path);
}

OverlayFiles::File OverlayFiles::FileForWriting(const std::string& path) {
  const std::string name = Normalised(path);
  const auto changed = names_.find(name);
  if (changed != names_.end()) return changed->second.value_or(File{NewIdentity(name), {}});
  if (FolderExists(path)) throw Failure(kPathFileAccess);
  CheckWriting(path);
  return Find(path).value_or(File{NewIdentity(name), {}});
}

bool OverlayFiles::FileExists(const std::string& path) {
  const auto changed = names_.find(Normalised(path));
  return changed == names_.end() ? base_.FileExists(path) : changed->second.has_value();
}

bool OverlayFiles::FolderExists(const std::string& path) {
  return folders_.contains(Normalised(path)) || base_.FolderExists(path);
}

std::vector<std::string> OverlayFiles::ListFiles(const std::string& folder) {
  const std::string wanted = Normalised(folder);
  std::set<std::string> names;
  if (!folders_.contains(wanted)) {
    for (std::string& name : base_.ListFiles(folder)) names.insert(std::move(name));
  }
  for (const auto& [path, file] : names_) {
    if (ParentFolderOf(path) != wanted) continue;
    if (file) {
      names.insert(FileNameOf(path));
    } else {
      names.erase(FileNameOf(path));
    }
  }
  std::vector<std::string> list(names.begin(), names.end());
  SortFileNames(list);
  return list;
}

std::unique_ptr<FileReader> OverlayFiles::OpenForReading(const std::string& path) {
  const File file = Existing(path);
  if (Contents written = WrittenTo(file)) return std::make_unique<Reader>(std::move(written));
  return base_.OpenForReading(file.base_path);
}

std::unique_ptr<FileReplacement> OverlayFiles::OpenForReplacing(const std::string& path) {
  return std::make_unique<Replacement>(*this, Normalised(path), FileForWriting(path));
}

void OverlayFiles::CopyFile(const std::string& from, const std::string& to) {
  const File source = Existing(from);
  ReadThrough(*OpenForReading(from));
  const auto present = Find(to);
  if (present && present->identity == source.identity) throw Failure(kPermissionDenied);
  File target = FileForWriting(to);
  contents_.erase(target.identity);
  if (const Contents written = WrittenTo(source)) {
    contents_[target.identity] = written;
  } else {
    target.base_path = source.base_path;
  }
  names_[Normalised(to)] = std::move(target);
}

void OverlayFiles::RenameFile(const std::string& from, const std::string& to) {
  File file = Existing(from);
  if (FileExists(to) || FolderExists(to)) throw Failure(kFileExists);
  CheckWriting(to);
  // The old name may soon stand for a new file, which must not share this one's identity.
  if (file.identity == NewIdentity(Normalised(from))) {
    const Contents written = WrittenTo(file);
    contents_.erase(file.identity);
    file.identity = NewIdentity(Normalised(to));
    if (written) contents_[file.identity] = written;
  }
  names_[Normalised(from)] = std::nullopt;
  names_[Normalised(to)] = std::move(file);
}

bool OverlayFiles::SameContents(const std::string& a, const std::string& b) {
  try {
    return SameBytes(*OpenForReading(a), *OpenForReading(b));
  } catch (const Failure&) {
    return false;
  }
}

void OverlayFiles::CreateFolder(const std::string& path) {
  const std::string folder = Normalised(path);
  if (FolderExists(path) || FileExists(path)) throw Failure(kFileExists);
  if (!folders_.contains(ParentFolderOf(folder))) base_.CheckCreatingFolder(path);
  folders_.insert(folder);
}

std::string OverlayFiles::ReadProfileString(const std::string& path, std::string_view section,
                                            std::string_view key) {
  const auto file = Find(path);
  if (!file) return {};
  if (const Contents written = WrittenTo(*file)) return FindProfileString(*written, section, key);
  return base_.ReadProfileString(file->base_path, section, key);
}

std::string OverlayFiles::IdentityOf(const std::string& path) {
  const auto file = Find(path);
  return file ? file->identity : std::string();
}

}  // namespace tessary
