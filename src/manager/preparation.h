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
#include "platform/file_system.h"
#include "platform/workers.h"

// Work that is done before its turn comes, on whatever thread. It says nothing to anybody and has
// no result unless all went smoothly; then, and when a file has changed since, the operation does
// the work itself in its turn and says what there is to say.

namespace tessary {

// What is to be written at the end of a step and the context it lives in.
struct StepResult {
  Ref<EngineContext> context;
  Ref<ElementTable> lines;  // null or empty for nothing
  FilePieces encoded = {};  // the same as bytes, or nothing where that has not been done yet
};

// One piece of such work. Once it has been done, the operation's thread is the only one to use it.
class Preparation : public Job {
 public:
  // What has been prepared from files that are still what they were, to be used with the
  // operation's `errors` and `loop`; nothing when there is no such thing. May be called once.
  std::optional<StepResult> Take(SharedErrors& errors, MessageLoop* loop);

 protected:
  // `files`, whose file system several threads may use, must outlive the work.
  explicit Preparation(FileSystem& files) : files_(files) {}

  FileSystem& files() const { return files_; }
  // Notes the state of a file that the work depends on, before it is read.
  void DependOn(const std::string& path) { inputs_.push_back({path, files_.StampOf(path)}); }
  bool InputsAreUnchanged() const;

 private:
  struct Input {
    std::string path;
    std::string stamp;
  };

  void Run() noexcept final;
  // The lines to be written, in `context`; nothing where something deserves attention. What it
  // raises ends the work.
  virtual std::optional<Ref<ElementTable>> Prepare(const Ref<EngineContext>& context) = 0;

  FileSystem& files_;
  std::vector<Input> inputs_;
  SharedErrors errors_;
  std::optional<StepResult> result_;
};

// Compares two versions of a report.
class ComparisonAhead final : public Preparation {
 public:
  ComparisonAhead(FileSystem& files, std::string old_path, std::string new_path)
      : Preparation(files), old_path_(std::move(old_path)), new_path_(std::move(new_path)) {}

  bool IsFor(const std::string& old_path, const std::string& new_path) const {
    return old_path == old_path_ && new_path == new_path_;
  }

 private:
  std::optional<Ref<ElementTable>> Prepare(const Ref<EngineContext>& context) override;

  std::string old_path_;
  std::string new_path_;
};

struct ConversionPlan {
  std::string report_path;
  std::string copy_path;  // where the report is to be saved first; empty for nowhere
  std::string diff_path;  // empty when the report is only to be saved
};

// Saves a report and applies a difference file to it.
class ConversionAhead final : public Preparation {
 public:
  // `observer` may be null.
  ConversionAhead(FileSystem& files, ConversionPlan plan, std::unique_ptr<StepObserver> observer)
      : Preparation(files), plan_(std::move(plan)), observer_(std::move(observer)) {}

  bool IsFor(const std::string& report_path, const std::string& diff_path) const {
    return report_path == plan_.report_path && diff_path == plan_.diff_path;
  }
  // True when the copy that the plan wants is on the disk and the report still what it was.
  bool IsSaved() const { return is_saved_ && InputsAreUnchanged(); }
  // Who has heard of the differences; leaves null behind.
  std::unique_ptr<StepObserver> TakeObserver() { return std::move(observer_); }

 private:
  std::optional<Ref<ElementTable>> Prepare(const Ref<EngineContext>& context) override;

  ConversionPlan plan_;
  std::unique_ptr<StepObserver> observer_;
  bool is_saved_ = false;
};

}  // namespace tessary
