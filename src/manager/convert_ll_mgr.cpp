// The frame around every operation: the progress window, the batch flag and the error exits. An
// operation's steps set where it stands before they begin; whatever fails then leaves by the one
// exit here, which adds the step's message and records the report as failed.

#include "manager/convert_ll_mgr.h"

#include <new>
#include <optional>

#include "engine/procedure.h"
#include "manager/operation_frame.h"
#include "manager/preparation.h"
#include "manager/read_warnings.h"
#include "manager/report_io.h"
#include "platform/path.h"

namespace tessary {
namespace {

constexpr std::string_view kClassName = "BXConvertLLMgr";

// During a batch the entries of earlier reports are kept aside, so that the collection holds those
// of the current one only, and all are put together again when it has been dealt with.
class BatchEntries {
 public:
  explicit BatchEntries(SharedErrors& errors) : errors_(errors) {
    all_->AppendFrom(*errors_.objErrors);
  }
  BatchEntries(const BatchEntries&) = delete;
  BatchEntries& operator=(const BatchEntries&) = delete;
  ~BatchEntries() {
    try {
      all_->AppendFrom(*errors_.objErrors);
    } catch (const std::bad_alloc&) {
      // The earlier entries still count.
    }
    errors_.objErrors = all_;
  }

 private:
  SharedErrors& errors_;
  Ref<ErrorCollection> all_ = MakeRef<ErrorCollection>();
};

// Gives the caller's pointer back on every way out.
class PointerForWindow {
 public:
  explicit PointerForWindow(UserInterface& user) : user_(user) {
    user_.SetMousePointer(MousePointer::kDefault);
  }
  PointerForWindow(const PointerForWindow&) = delete;
  PointerForWindow& operator=(const PointerForWindow&) = delete;
  ~PointerForWindow() { user_.RestoreMousePointer(); }

 private:
  UserInterface& user_;
};

}  // namespace

BXConvertLLMgr::BXConvertLLMgr(ResultLog& log, const Surroundings& surroundings)
    : log_(log), around_(surroundings) {}

BXConvertLLMgr::~BXConvertLLMgr() = default;

void BXConvertLLMgr::ShowErrorProtocol() {
  const PointerForWindow pointer(around_.user);
  if (log_.dictErrors.Count() > 0) {
    around_.user.ShowErrorProtocol(log_.dictErrors, log_.dictCorrect);
  }
}

bool BXConvertLLMgr::RunSingle(const Captions& captions, Step step, const Body& body) {
  std::optional<BatchEntries> earlier_entries;
  if (m_blnBatch) {
    earlier_entries.emplace(log_.errors);
  } else {
    OpenProgress(captions);
  }
  errors().Reset();
  const Outcome outcome = RunSteps(step, body);
  if (m_blnBatch) return outcome == Outcome::kDone;
  if (outcome == Outcome::kDone) m_frmProgress->StopProgress();
  CloseProgress();
  if (outcome == Outcome::kFailed) ShowErrorProtocol();
  return outcome == Outcome::kDone;
}

bool BXConvertLLMgr::RunBatch(const Captions& captions, Step step, const Body& body) {
  m_blnBatch = true;
  OpenProgress(captions);
  errors().Reset();
  const Outcome outcome = RunSteps(step, body);
  if (outcome == Outcome::kDone) m_frmProgress->StopProgress();
  CloseProgress();
  m_blnBatch = false;
  if (outcome != Outcome::kDone) return false;
  if (log_.dictErrors.Count() == 0) return true;
  ShowErrorProtocol();
  return false;
}

BXConvertLLMgr::Outcome BXConvertLLMgr::RunSteps(Step& step, const Body& body) {
  try {
    return body(step);
  } catch (const Failure& failure) {
    LeaveByExit(step, failure);
  } catch (const std::bad_alloc&) {
    LeaveByExit(step, Failure(kOutOfMemory));
  } catch (const std::exception&) {
    LeaveByExit(step, Failure(kInternalError));
  }
  return Outcome::kFailed;
}

void BXConvertLLMgr::LeaveByExit(const Step& step, const Failure& failure) {
  const std::string source = SourceText(kClassName, step.procedure);
  if (!step.exit_message.empty()) {
    errors().Add({ErrorEntry::kFailure, failure.number(), source, step.exit_message});
  } else if (errors().empty()) {
    errors().Add({ErrorEntry::kFailure, failure.number(), source, failure.description()});
  }
  if (step.after_exit_message) step.after_exit_message();
  log_.AddToResultLog(step.log_text, true);
}

void BXConvertLLMgr::RaiseCheck(const Step& step, std::int32_t number, const std::string& message) {
  errors().Add({ErrorEntry::kFailure, number, SourceText(kClassName, step.procedure), message});
  throw Failure(number, message);
}

BXConvertLLMgr::Outcome BXConvertLLMgr::FailedBecause(const std::string& log_text) {
  log_.AddToResultLog(log_text, true);
  return Outcome::kFailed;
}

std::unique_ptr<FolderLock> BXConvertLLMgr::LockFolder(const Step& step,
                                                       const std::string& folder) {
  auto lock = WaitForFolder(around_.files, folder, around_.folder_wait, around_.loop);
  if (!lock) RaiseCheck(step, kPermissionDenied, FolderInUseText(folder));
  return lock;
}

bool BXConvertLLMgr::IsFolderMissing(const std::string& folder, const std::string& text_if_empty) {
  if (folder.empty()) {
    log_.AddToResultLog(text_if_empty, true);
    return true;
  }
  if (around_.files.FolderExists(folder)) return false;
  log_.AddToResultLog("Der Ordner " + folder + " existiert nicht.", true);
  return true;
}

void BXConvertLLMgr::OpenProgress(const Captions& captions) {
  m_frmProgress = around_.user.CreateProgressWindow();
  m_frmProgress->Init(captions.bold, "List & Label");
  m_frmProgress->Show();
  ShowStep(std::string(captions.first_step));
}

void BXConvertLLMgr::ShowStep(const std::string& text) {
  if (m_frmProgress) m_frmProgress->Process(text);
}

void BXConvertLLMgr::CloseProgress() {
  m_frmProgress.reset();
  around_.user.RestoreMousePointer();
}

void BXConvertLLMgr::Warn(const std::string& text) {
  if (around_.notices) around_.notices->Warning(text);
}

void BXConvertLLMgr::Skipped(const std::string& path) {
  if (around_.notices) around_.notices->SkippedByAnswer(path);
}

Ref<ElementTable> BXConvertLLMgr::ReadFile(const Ref<EngineContext>& context,
                                           const std::string& path, FileSections* sections) {
  ReadStatistics read;
  Ref<ElementTable> lines = ReadReport(around_.files, context, path, &read, sections);
  for (const std::string& warning : ReadWarnings(path, read)) Warn(warning);
  return lines;
}

void BXConvertLLMgr::WriteFile(const std::string& path, NewContents contents, NewName new_name) {
  bool damaged = false;
  try {
    WriteReport(around_.files, path, std::move(contents), &damaged, new_name);
  } catch (const Failure&) {
    m_blnFileDamaged = damaged;
    throw;
  }
}

}  // namespace tessary
