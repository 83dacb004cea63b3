#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "engine/error_collection.h"
#include "manager/report_io.h"
#include "manager/user_interface.h"
#include "manager/work_ahead.h"
#include "platform/file_system.h"
#include "platform/workers.h"

// Work that is done before its turn comes, on whatever thread. It says nothing to anybody and has
// no result unless all went smoothly; then, and when a file has changed since, the operation does
// the work itself in its turn and says what there is to say.

namespace tessary {

// How much of a folder's reports is worth the memory that several at a time take.
inline constexpr std::size_t kLargestAhead = std::size_t{8} << 20;

// One piece of such work. Trees and what belongs to them live only as long as it is being done.
class Preparation : public Job {
 public:
  // What was prepared from files that are still what they were, without a context, and empty where
  // there is nothing to write; nothing at all when there is no result. May be called once, and
  // leaves nothing behind.
  std::optional<NewContents> Take();

 protected:
  // `files`, whose file system several threads may use, must outlive the work. Larger files than
  // `largest` give no result.
  Preparation(FileSystem& files, std::size_t largest) : files_(files), largest_(largest) {}

  FileSystem& files() const { return files_; }
  // The lines of a file; null where there are none, or something about it deserves attention.
  Ref<ElementTable> Read(const Ref<EngineContext>& context, const std::string& path,
                         FileSections* sections = nullptr) const;
  // Notes the state of a file that the work depends on, before it is read.
  void DependOn(const std::string& path) { inputs_.push_back({path, files_.StampOf(path)}); }
  bool InputsAreUnchanged() const;

 private:
  struct Input {
    std::string path;
    std::string stamp;
  };

  void Run() noexcept final;
  // What is to be written; nothing where something deserves attention. What it raises ends the
  // work.
  virtual std::optional<NewContents> Prepare(const Ref<EngineContext>& context) = 0;

  FileSystem& files_;
  const std::size_t largest_;
  std::vector<Input> inputs_;
  std::optional<NewContents> result_;
};

// Compares two versions of a report.
class ComparisonAhead final : public Preparation {
 public:
  ComparisonAhead(FileSystem& files, std::string old_path, std::string new_path)
      : Preparation(files, kLargestAhead),
        old_path_(std::move(old_path)),
        new_path_(std::move(new_path)) {}

  bool IsFor(const std::string& old_path, const std::string& new_path) const {
    return old_path == old_path_ && new_path == new_path_;
  }

 private:
  std::optional<NewContents> Prepare(const Ref<EngineContext>& context) override;

  std::string old_path_;
  std::string new_path_;
};

// Opens a report for being replaced, where what is written ahead has room enough.
class ReplacementAhead final : public Job {
 public:
  // `files`, whose file system several threads may use, must outlive the work.
  ReplacementAhead(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

  // Null where there is not room enough, or the report cannot be replaced. May be called once.
  std::unique_ptr<FileReplacement> Take() { return std::move(replacement_); }

 private:
  void Run() noexcept override;

  FileSystem& files_;
  std::string path_;
  std::unique_ptr<FileReplacement> replacement_;
};

struct ConversionPlan {
  std::string report_path;
  std::string copy_path;  // where the report is to be saved first; empty for nowhere
  std::string diff_path;  // empty when the report is only to be saved
  std::size_t largest = kLargestAhead;
  // Who opens the report for being replaced; null: whoever converts it. Asked only while the report
  // is converted, by the owner of the workers.
  const PostedWork<ReplacementAhead>* replacement = nullptr;
};

// Saves a report and applies a difference file to it. Where there is room enough, the result is
// brought to the disk beside the report.
class ConversionAhead final : public Preparation {
 public:
  // `observer` may be null.
  ConversionAhead(FileSystem& files, ConversionPlan plan, std::unique_ptr<StepObserver> observer)
      : Preparation(files, plan.largest), plan_(std::move(plan)), observer_(std::move(observer)) {
    DependOn(plan_.report_path);  // before anybody opens it
  }

  bool IsFor(const std::string& report_path, const std::string& diff_path) const {
    return report_path == plan_.report_path && diff_path == plan_.diff_path;
  }
  // True when the copy that the plan wants is on the disk, and copy and report are still what they
  // were.
  bool IsSaved() const { return is_saved_ && InputsAreUnchanged(); }
  // Who has heard of the differences; leaves null behind.
  std::unique_ptr<StepObserver> TakeObserver() { return std::move(observer_); }

 private:
  std::optional<NewContents> Prepare(const Ref<EngineContext>& context) override;

  ConversionPlan plan_;
  std::unique_ptr<StepObserver> observer_;
  bool is_saved_ = false;
};

}  // namespace tessary
