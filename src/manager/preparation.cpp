#include "manager/preparation.h"

#include <algorithm>

#include "levels/level_factory.h"
#include "manager/read_warnings.h"
#include "manager/report_io.h"
#include "manager/user_section.h"

namespace tessary {
namespace {

// Null for a file without lines, and for one that the user is to be warned of.
Ref<ElementTable> ReadQuietly(FileSystem& files, const Ref<EngineContext>& context,
                              const std::string& path, FileSections* sections = nullptr) {
  ReadStatistics read;
  Ref<ElementTable> lines = ReadReport(files, context, path, &read, sections);
  return IsArrayEmpty(lines) || !ReadWarnings(path, read).empty() ? nullptr : lines;
}

bool IsReport(FileSystem& files, const std::string& path) {
  std::int32_t version = 0;
  std::string reference;
  return IsReportFile(files, path, version, reference);
}

}  // namespace

void Preparation::Run() noexcept {
  try {
    const Ref<EngineContext> context = NewEngineContext(errors_, nullptr);
    const std::optional<Ref<ElementTable>> lines = Prepare(context);
    if (!lines) return;
    StepResult result{context, *lines};
    if (!IsArrayEmpty(*lines)) {
      EncodeReport(context, {}, *lines,
                   [&](std::string piece) { result.encoded.push_back(std::move(piece)); });
    }
    result_ = std::move(result);
  } catch (...) {
    // It fails again in its turn, or does not.
  }
}

bool Preparation::InputsAreUnchanged() const {
  return std::all_of(inputs_.begin(), inputs_.end(), [this](const Input& input) {
    return !input.stamp.empty() && files_.StampOf(input.path) == input.stamp;
  });
}

std::optional<StepResult> Preparation::Take(SharedErrors& errors, MessageLoop* loop) {
  if (!result_ || !InputsAreUnchanged()) return std::nullopt;
  result_->context->HandOver(errors, loop);
  return std::exchange(result_, std::nullopt);
}

std::optional<Ref<ElementTable>> ComparisonAhead::Prepare(const Ref<EngineContext>& context) {
  DependOn(old_path_);
  DependOn(new_path_);
  if (!IsReport(files(), old_path_) || !IsReport(files(), new_path_)) return std::nullopt;
  FileSections sections;
  const Ref<ElementTable> new_lines = ReadQuietly(files(), context, new_path_, &sections);
  const Ref<ElementTable> old_lines = ReadQuietly(files(), context, old_path_, &sections);
  if (!new_lines || !old_lines) return std::nullopt;
  const Ref<Level> differences = context->CreateLevel(0);
  differences->Compare(old_lines, new_lines);
  return differences->ElementArray();
}

std::optional<Ref<ElementTable>> ConversionAhead::Prepare(const Ref<EngineContext>& context) {
  DependOn(plan_.report_path);
  if (!plan_.copy_path.empty()) {
    is_saved_ = files().AddCopy(plan_.report_path, plan_.copy_path);
    if (!is_saved_) return std::nullopt;
  }
  if (plan_.diff_path.empty()) return std::nullopt;
  DependOn(plan_.diff_path);
  context->SetObserver(observer_.get());
  const Ref<ElementTable> differences = ReadQuietly(files(), context, plan_.diff_path);
  const Ref<ElementTable> report = ReadQuietly(files(), context, plan_.report_path);
  if (!differences || !report) return std::nullopt;
  const Ref<Level> converted = context->CreateLevel(0);
  converted->Convert(report, differences);
  context->SetObserver(nullptr);
  return converted->ElementArray();
}

}  // namespace tessary
