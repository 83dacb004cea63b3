#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace tessary {

// The calls that can be made to fail.
enum class FileCall {
  kOpenForReading,
  kRead,
  kOpenForReplacing,
  kWrite,
  kPrepare,
  kCommit,
  kCopy,
  kRename,
  kList,
  kCreateFolder,
  kProfileString,
  kSameContents,
};
inline constexpr std::size_t kFileCallKinds = static_cast<std::size_t>(FileCall::kSameContents) + 1;

// What a failing commit leaves in the target; what fails before it leaves it alone.
enum class Damage {
  kNone,         // What it held before.
  kHalfWritten,  // The first half of what has been written; Damaged() tells.
};

// Passes every call on to another file system and fails on command. Calls are numbered from 1, in
// the order in which they are made since construction or the last Reset, each kind for itself and
// all together. Every kind fails by raising Failure, also those of which callers expect none.
class FailingFiles : public FileSystem {
 public:
  struct Call {
    FileCall kind;
    std::string path;  // The first path handed in; of a read, write, preparation or commit that of
                       // the file.
  };

  // `inner` must outlive this object.
  explicit FailingFiles(FileSystem& inner) : inner_(inner) {}

  // Has the n-th call of one kind, or of any kind, fail with `number`. Several may be planned.
  void FailCall(FileCall kind, int n, std::int32_t number, Damage damage = Damage::kNone);
  void FailAnyCall(int n, std::int32_t number, Damage damage = Damage::kNone);
  // Has every call of one kind from the n-th on fail.
  void FailCallsFrom(FileCall kind, int n, std::int32_t number, Damage damage = Damage::kNone);
  // Runs before every call, also before one that fails; for changes made behind a caller's back.
  void BeforeCall(std::function<void(const Call&)> action) { before_call_ = std::move(action); }
  // Forgets the calls made, the failures planned and the action.
  void Reset();

  const std::vector<Call>& calls() const { return calls_; }
  int CountCalls() const { return static_cast<int>(calls_.size()); }
  int CountCalls(FileCall kind) const { return counts_[static_cast<std::size_t>(kind)]; }
  // The number of failures raised.
  int CountFailures() const { return failures_; }

  bool FileExists(const std::string& path) override { return inner_.FileExists(path); }
  bool FolderExists(const std::string& path) override { return inner_.FolderExists(path); }
  std::vector<std::string> ListFiles(const std::string& folder) override;
  std::unique_ptr<FileReader> OpenForReading(const std::string& path) override;
  std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) override;
  void CopyFile(const std::string& from, const std::string& to) override;
  bool AddCopy(const std::string& from, const std::string& to) override;
  void RenameFile(const std::string& from, const std::string& to) override;
  bool SameContents(const std::string& a, const std::string& b) override;
  void CreateFolder(const std::string& path) override;
  void FlushNames(const std::string& folder) override { inner_.FlushNames(folder); }
  std::unique_ptr<FolderLock> TryLockFolder(const std::string& folder) override {
    return inner_.TryLockFolder(folder);
  }
  std::uint64_t RoomBeside(const std::string& path) override { return inner_.RoomBeside(path); }
  void RemoveLeftovers(const std::string& folder) override { inner_.RemoveLeftovers(folder); }
  std::string IdentityOf(const std::string& path) override { return inner_.IdentityOf(path); }
  std::string StampOf(const std::string& path) override { return inner_.StampOf(path); }
  bool SameFolder(const std::string& a, const std::string& b) override {
    return inner_.SameFolder(a, b);
  }
  std::string ReadProfileString(const std::string& path, std::string_view section,
                                std::string_view key) override;

 private:
  class Reader;
  class Replacement;

  struct Plan {
    bool any_kind;
    FileCall kind;
    int first;
    int last;
    std::int32_t number;
    Damage damage;
  };

  // Notes the call; the plan that it has to fail by, or null.
  const Plan* Note(FileCall kind, const std::string& path);
  // Notes the call and raises what is planned for it.
  void Pass(FileCall kind, const std::string& path);

  FileSystem& inner_;
  std::vector<Plan> plans_;
  std::vector<Call> calls_;
  std::array<int, kFileCallKinds> counts_{};
  std::function<void(const Call&)> before_call_;
  int failures_ = 0;
};

}  // namespace tessary
