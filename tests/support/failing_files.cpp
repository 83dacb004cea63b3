#include "support/failing_files.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/failure.h"

namespace tessary {

class FailingFiles::Reader final : public FileReader {
 public:
  Reader(FailingFiles& files, std::string path, std::unique_ptr<FileReader> inner)
      : files_(files), path_(std::move(path)), inner_(std::move(inner)) {}

  std::size_t Read(char* buffer, std::size_t size) override {
    files_.Pass(FileCall::kRead, path_);
    return inner_->Read(buffer, size);
  }

  std::size_t SizeHint() const override { return inner_->SizeHint(); }

 private:
  FailingFiles& files_;
  std::string path_;
  std::unique_ptr<FileReader> inner_;
};

class FailingFiles::Replacement final : public FileReplacement {
 public:
  Replacement(FailingFiles& files, std::string path, std::unique_ptr<FileReplacement> inner)
      : files_(files), path_(std::move(path)), inner_(std::move(inner)) {}

  void Write(std::string_view bytes) override {
    written_.append(bytes);
    Pass(FileCall::kWrite);
    inner_->Write(bytes);
  }

  void Prepare() override {
    Pass(FileCall::kPrepare);
    inner_->Prepare();
  }

  void Commit() override {
    Pass(FileCall::kCommit);
    inner_->Commit();
  }

  bool Damaged() const override { return damaged_ || (inner_ && inner_->Damaged()); }

 private:
  void Pass(FileCall kind) {
    if (failed_ != 0) throw Failure(failed_);
    const Plan* const plan = files_.Note(kind, path_);
    if (plan == nullptr) return;
    failed_ = plan->number;
    const bool damages = kind == FileCall::kCommit && plan->damage == Damage::kHalfWritten;
    if (damages) LeaveHalf();
    throw Failure(failed_);
  }

  void LeaveHalf() {
    inner_.reset();
    const auto half = files_.inner_.OpenForReplacing(path_);
    half->Write(std::string_view(written_).substr(0, written_.size() / 2));
    half->Commit();
    damaged_ = true;
  }

  FailingFiles& files_;
  std::string path_;
  std::unique_ptr<FileReplacement> inner_;
  std::string written_;
  std::int32_t failed_ = 0;
  bool damaged_ = false;
};

void FailingFiles::FailCall(FileCall kind, int n, std::int32_t number, Damage damage) {
  plans_.push_back({false, kind, n, n, number, damage});
}

void FailingFiles::FailAnyCall(int n, std::int32_t number, Damage damage) {
  plans_.push_back({true, {}, n, n, number, damage});
}

void FailingFiles::FailCallsFrom(FileCall kind, int n, std::int32_t number, Damage damage) {
  plans_.push_back({false, kind, n, std::numeric_limits<int>::max(), number, damage});
}

void FailingFiles::Reset() {
  plans_.clear();
  calls_.clear();
  counts_.fill(0);
  before_call_ = nullptr;
  failures_ = 0;
}

const FailingFiles::Plan* FailingFiles::Note(FileCall kind, const std::string& path) {
  calls_.push_back({kind, path});
  ++counts_[static_cast<std::size_t>(kind)];
  if (before_call_) before_call_(Call{kind, path});
  const int count_of_kind = CountCalls(kind);
  const int count = CountCalls();
  const auto plan = std::find_if(plans_.begin(), plans_.end(), [&](const Plan& candidate) {
    if (!candidate.any_kind && candidate.kind != kind) return false;
    const int n = candidate.any_kind ? count : count_of_kind;
    return candidate.first <= n && n <= candidate.last;
  });
  if (plan == plans_.end()) return nullptr;
  ++failures_;
  return &*plan;
}

void FailingFiles::Pass(FileCall kind, const std::string& path) {
  if (const Plan* const plan = Note(kind, path)) throw Failure(plan->number);
}

std::vector<std::string> FailingFiles::ListFiles(const std::string& folder) {
  Pass(FileCall::kList, folder);
  return inner_.ListFiles(folder);
}

std::unique_ptr<FileReader> FailingFiles::OpenForReading(const std::string& path) {
  Pass(FileCall::kOpenForReading, path);
  return std::make_unique<Reader>(*this, path, inner_.OpenForReading(path));
}

std::unique_ptr<FileReplacement> FailingFiles::OpenForReplacing(const std::string& path) {
  Pass(FileCall::kOpenForReplacing, path);
  return std::make_unique<Replacement>(*this, path, inner_.OpenForReplacing(path));
}

void FailingFiles::CopyFile(const std::string& from, const std::string& to) {
  Pass(FileCall::kCopy, from);
  inner_.CopyFile(from, to);
}

bool FailingFiles::AddCopy(const std::string& from, const std::string& to) {
  Pass(FileCall::kCopy, from);
  return inner_.AddCopy(from, to);
}

void FailingFiles::RenameFile(const std::string& from, const std::string& to) {
  Pass(FileCall::kRename, from);
  inner_.RenameFile(from, to);
}

bool FailingFiles::SameContents(const std::string& a, const std::string& b) {
  Pass(FileCall::kSameContents, a);
  return inner_.SameContents(a, b);
}

void FailingFiles::CreateFolder(const std::string& path) {
  Pass(FileCall::kCreateFolder, path);
  inner_.CreateFolder(path);
}

std::string FailingFiles::ReadProfileString(const std::string& path, std::string_view section,
                                            std::string_view key) {
  Pass(FileCall::kProfileString, path);
  return inner_.ReadProfileString(path, section, key);
}

}  // namespace tessary
