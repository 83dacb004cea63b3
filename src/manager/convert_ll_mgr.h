#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "manager/folder_wait.h"
#include "manager/result_log.h"
#include "manager/user_interface.h"
#include "manager/work_ahead.h"
#include "platform/failure.h"
#include "platform/file_system.h"
#include "platform/message_loop.h"
#include "platform/workers.h"

namespace tessary {

// What the manager needs of its surroundings. Everything must outlive the manager; `loop`,
// `notices`, `steps` and `workers` may be null.
struct Surroundings {
  FileSystem& files;
  UserInterface& user;
  MessageLoop* loop = nullptr;
  RunNotices* notices = nullptr;
  StepObservers* steps = nullptr;
  FolderWait folder_wait = {};
  // Threads that work ahead; then several of them use `files`. With null, everything is done on the
  // caller's thread.
  Workers* workers = nullptr;
};

class ComparisonAhead;
class ConversionAhead;
enum class ListKind;
enum class NewName;
struct ConversionPlan;
struct DiffFileName;
struct FileSections;
struct ListedFile;
struct NewContents;

// True for the name of a report that a folder conversion shall leave out.
using OmitReport = std::function<bool(const std::string& file_name)>;

// Compares vendor versions of reports into difference files and applies these to customers'
// reports. The four operations return true when they finished without error and never throw;
// everything else they have to say stands in the result log, which outlives the manager.
// Paths are absolute; folder and name are joined without normalisation. The manager must not be
// entered again while an operation runs.
class BXConvertLLMgr {
 public:
  BXConvertLLMgr(ResultLog& log, const Surroundings& surroundings);
  ~BXConvertLLMgr();

  std::int32_t CountCorrectReports() const { return log_.dictCorrect.Count(); }
  // The entries of the last operation; a batch replaces the object.
  Ref<ErrorCollection> Errors() const { return log_.errors.objErrors; }
  // Shows the error protocol when the log holds any failure.
  void ShowErrorProtocol();

  // Compares every report of the old folder with its namesake in the new one. True when the error
  // part of the result log is empty afterwards; earlier failures of the thread count.
  bool CreateDiffFiles(const std::string& strOldFolderPath, const std::string& strNewFolderPath,
                       const std::string& strDiffFolderPath);
  // Writes the difference file of one pair into an existing folder, replacing one of the same name.
  // Two versions without a difference succeed without a file.
  bool CreateDiffFile(const std::string& strOldFilePath, const std::string& strNewFilePath,
                      const std::string& strDiffFolderPath);
  // Applies one difference file to one report in place, after a backup into the given folder, or
  // into the report folder's sibling "...Bak" when that is empty.
  bool ConvertReport(const std::string& strRepFilePath, const std::string& strDiffFilePath,
                     const std::string& strRepBackupFolderPath);
  // Applies to every report of a folder the chain of difference files that leads on from its
  // version. True under the same condition as CreateDiffFiles.
  bool ConvertReports(const std::string& strDiffFolderPath, const std::string& strRepFolderPath,
                      const std::string& strRepBackupFolderPath,
                      const OmitReport& colRepFilesToOmit = nullptr);

 private:
  // Where an operation that has an error exit per step stands: the text under which a failure is
  // logged, and the message that the step's exit adds; none while the checks run, whose entries
  // say it all.
  struct Step {
    std::string_view procedure;
    std::string log_text;
    std::string exit_message = {};
    std::function<void()> after_exit_message = {};
  };
  // Failed operations have been logged; a stopped one was ended by the user's answer.
  enum class Outcome { kDone, kFailed, kStopped };
  using Body = std::function<Outcome(Step&)>;
  struct Captions;
  struct ReportPair;

  // The last resort of a public operation, for what no error exit could record (no memory left to
  // log with, say): False, and the object as it was before.
  template <class Operation>
  bool Guarded(const Operation& operation) {
    const bool was_batch = m_blnBatch;
    try {
      return operation();
    } catch (...) {
      m_blnBatch = was_batch;
      if (!was_batch) CloseProgress();
      return false;
    }
  }
  bool RunSingle(const Captions& captions, Step step, const Body& body);
  bool RunBatch(const Captions& captions, Step step, const Body& body);
  Outcome RunSteps(Step& step, const Body& body);
  void LeaveByExit(const Step& step, const Failure& failure);
  [[noreturn]] void RaiseCheck(const Step& step, std::int32_t number, const std::string& message);
  Outcome FailedBecause(const std::string& log_text);
  // Waits for other runs that convert reports in the folder; raises 70 when that takes too long.
  std::unique_ptr<FolderLock> LockFolder(const Step& step, const std::string& folder);
  // Logs why a folder cannot be used; false when it can.
  bool IsFolderMissing(const std::string& folder, const std::string& text_if_empty);
  void Skipped(const std::string& path);

  void OpenProgress(const Captions& captions);
  void ShowStep(const std::string& text);
  void CloseProgress();
  void Warn(const std::string& text);
  ErrorCollection& errors() { return *log_.errors.objErrors; }

  Ref<ElementTable> ReadFile(const Ref<EngineContext>& context, const std::string& path,
                             FileSections* sections = nullptr);
  void WriteFile(const std::string& path, NewContents contents, NewName new_name);

  // Creating difference files.
  Outcome ComparePair(Step& step, ReportPair& pair, const std::string& diff_folder);
  void CheckReport(Step& step, const std::string& path, std::string& name, std::int32_t& version,
                   std::string& reference);
  void CheckVersions(Step& step, const ReportPair& pair);
  void ShowComparing(const ReportPair& pair);
  NewContents Compare(Step& step, const ReportPair& pair);
  std::string WriteDifferences(Step& step, const ReportPair& pair, const std::string& diff_folder,
                               NewContents result);
  void WarnOfSameName(const std::string& diff_name, const std::string& report);
  Outcome CompareFolders(Step& step, const std::string& old_folder, const std::string& new_folder,
                         const std::string& diff_folder);
  std::vector<std::string> ListFilled(const Step& step, const std::string& folder);

  // Converting reports.
  Outcome ConvertOne(Step& step, const std::string& report_path, const std::string& diff_path,
                     const std::string& wanted_backup_folder);
  Outcome BackUp(const std::string& report_path, const std::string& diff_path,
                 std::string& backup_folder, PostedWork<ConversionAhead>& conversion);
  bool SaveMeanwhile(const std::string& report_path, const std::string& diff_path,
                     const std::string& backup_folder, PostedWork<ConversionAhead>& conversion);
  DiffFileName CheckDifferenceFile(Step& step, const std::string& path);
  std::unique_ptr<ConversionAhead> PrepareConversion(ConversionPlan plan);
  void ConvertBy(Step& step, const ConversionStep& what, const std::string& versions,
                 const std::string& backup_folder);
  void ShowConverting(const ConversionStep& what, const std::string& versions);
  std::optional<NewContents> ApplyDifferences(Step& step, const ConversionStep& what,
                                              const std::string& versions,
                                              ConversionObserver* observer);
  void UpdateReport(Step& step, const ConversionStep& what, const std::string& versions,
                    const std::string& backup_folder, NewContents result);
  Outcome ConvertFolder(Step& step, const std::string& diff_folder,
                        const std::string& report_folder, const std::string& wanted_backup_folder,
                        const OmitReport& omit);
  std::vector<ListedFile> ListForConversion(Step& step, ListKind kind, const std::string& folder,
                                            const OmitReport& omit);
  void ApplyChain(const ListedFile& report, const std::vector<ListedFile>& differences,
                  const std::string& backup_folder);

  ResultLog& log_;
  Surroundings around_;
  std::unique_ptr<ProgressWindow> m_frmProgress;
  // What is done ahead for the step that comes next.
  PostedWork<ComparisonAhead> comparison_ahead_;
  PostedWork<ConversionAhead> conversion_ahead_;
  bool m_blnBatch = false;
  bool m_blnFileDamaged = false;
  std::unordered_map<std::string, std::string> batch_names_;  // difference-file name to old report
};

}  // namespace tessary
