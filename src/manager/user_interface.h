#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "engine/conversion_observer.h"
#include "manager/result_log.h"

// How the manager talks to whoever sits in front of the screen.

namespace tessary {

// The window that shows the step at which an operation is. It goes away when it is destroyed.
class ProgressWindow {
 public:
  virtual ~ProgressWindow() = default;
  // The two title lines; called before Show.
  virtual void Init(std::string_view strCaptionBold, std::string_view strCaptionNormal) = 0;
  virtual void Show() = 0;
  // Names the step that begins now.
  virtual void Process(std::string_view strProcess) = 0;
  // Shows that all work is done.
  virtual void StopProgress() = 0;
};

enum class MousePointer : std::int32_t { kDefault = 0, kHourglass = 11 };

enum class Answer : std::int32_t { kYes = 6, kNo = 7 };

class UserInterface {
 public:
  virtual ~UserInterface() = default;
  virtual std::unique_ptr<ProgressWindow> CreateProgressWindow() = 0;
  // Asks a question that is answered by Yes, the default, or No. Its lines end with CR LF.
  virtual Answer Ask(std::string_view question) = 0;
  // Shows the error protocol and returns when it has been closed.
  virtual void ShowErrorProtocol(const ResultDictionary& dictErrors,
                                 const ResultDictionary& dictCorrect) = 0;
  virtual void SetMousePointer(MousePointer pointer) = 0;
  // The pointer that the caller had before the operation.
  virtual void RestoreMousePointer() = 0;
};

// Hears what an operation leaves out or finds remarkable and does not record in the result log.
// Texts are German sentences; names and paths are as the file system gives them.
class RunNotices {
 public:
  virtual ~RunNotices() = default;
  // Something that deserves attention but is no failure.
  virtual void Warning(const std::string& text) = 0;
  // A file of the report folder that is no report.
  virtual void PassedOver(const std::string& path) = 0;
  // A report that was not converted because a question was answered with No; the folder where the
  // answer concerned all of them.
  virtual void SkippedByAnswer(const std::string& path) = 0;
  // Two versions have been compared: the paths of the old and of the new one and of the difference
  // file, empty where they do not differ.
  virtual void DifferenceCreated(const std::string&, const std::string&, const std::string&) {}
};

// A report's way from one version to the next by a difference file.
struct ConversionStep {
  std::string report_path;
  std::string diff_path;
  std::int32_t old_version = 0;
  std::int32_t new_version = 0;
};

// Hears of one step that a conversion makes: of its differences, and of its end.
class StepObserver : public ConversionObserver {
 public:
  // `done` when the step succeeded, otherwise the report is what it was. Called on the thread of
  // the operation, in the order of the steps.
  virtual void End(bool done) = 0;
};

// Gives each step that a conversion makes an observer.
class StepObservers {
 public:
  virtual ~StepObservers() = default;
  // Who shall hear of a step, or null; called on the thread of the operation. The observer may hear
  // of the step's differences long before its turn and on another thread. When that is given up,
  // it gets no End, and the step is begun anew with another observer.
  virtual std::unique_ptr<StepObserver> Begin(const ConversionStep& step) = 0;
};

}  // namespace tessary
