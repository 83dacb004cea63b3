#include "manager/preparation.h"

#include <algorithm>

#include "levels/level_factory.h"
#include "manager/read_warnings.h"
#include "manager/report_io.h"
#include "manager/user_section.h"

namespace tessary {
namespace {

NewContents Encoded(const Ref<EngineContext>& context, const Ref<ElementTable>& lines) {
  NewContents contents;
  EncodeReport(context, {}, lines,
               [&](std::string piece) { contents.encoded.push_back(std::move(piece)); });
  return contents;
}

// The lines as a replacement that only needs its commit.
NewContents Written(const Ref<EngineContext>& context, const Ref<ElementTable>& lines,
                    std::unique_ptr<FileReplacement> replacement) {
  NewContents contents;
  contents.replacement = std::move(replacement);
  EncodeReport(context, {}, lines,
               [&](const std::string& piece) { contents.replacement->Write(piece); });
  contents.replacement->Prepare();
  return contents;
}

// Null where the disk is nearly full: what is written ahead could take the room of a backup, or of
// a report whose turn comes before.
std::unique_ptr<FileReplacement> OpenAhead(FileSystem& files, const std::string& path) {
  constexpr std::uint64_t kMargin = std::uint64_t{64} << 20;
  constexpr std::uint64_t kFilesAtOnce = 32;
  const std::uint64_t size = files.OpenForReading(path)->SizeHint();
  const bool has_room = files.RoomBeside(path) >= kMargin + kFilesAtOnce * size;
  return has_room ? files.OpenForReplacing(path) : nullptr;
}

bool IsReport(FileSystem& files, const std::string& path) {
  std::int32_t version = 0;
  std::string reference;
  return IsReportFile(files, path, version, reference);
}

}  // namespace

void Preparation::Run() noexcept {
  try {
    SharedErrors errors;
    result_ = Prepare(NewEngineContext(errors, nullptr));
  } catch (...) {
    // It fails again in its turn, or does not.
  }
}

Ref<ElementTable> Preparation::Read(const Ref<EngineContext>& context, const std::string& path,
                                    FileSections* sections) const {
  if (files_.OpenForReading(path)->SizeHint() > largest_) return nullptr;
  ReadStatistics read;
  Ref<ElementTable> lines = ReadReport(files_, context, path, &read, sections);
  return IsArrayEmpty(lines) || !ReadWarnings(path, read).empty() ? nullptr : lines;
}

bool Preparation::InputsAreUnchanged() const {
  return std::all_of(inputs_.begin(), inputs_.end(), [this](const Input& input) {
    return !input.stamp.empty() && files_.StampOf(input.path) == input.stamp;
  });
}

std::optional<NewContents> Preparation::Take() {
  std::optional<NewContents> result = std::exchange(result_, std::nullopt);
  if (result && !InputsAreUnchanged()) result.reset();
  return result;
}

std::optional<NewContents> ComparisonAhead::Prepare(const Ref<EngineContext>& context) {
  DependOn(old_path_);
  DependOn(new_path_);
  if (!IsReport(files(), old_path_) || !IsReport(files(), new_path_)) return std::nullopt;
  FileSections sections;
  const Ref<ElementTable> new_lines = Read(context, new_path_, &sections);
  const Ref<ElementTable> old_lines = Read(context, old_path_, &sections);
  if (!new_lines || !old_lines) return std::nullopt;
  const Ref<Level> differences = context->CreateLevel(0);
  differences->Compare(old_lines, new_lines);
  const Ref<ElementTable> lines = differences->ElementArray();
  return IsArrayEmpty(lines) ? NewContents() : Encoded(context, lines);
}

std::optional<NewContents> ConversionAhead::Prepare(const Ref<EngineContext>& context) {
  if (!plan_.copy_path.empty()) {
    is_saved_ = files().AddCopy(plan_.report_path, plan_.copy_path);
    if (!is_saved_) return std::nullopt;
    DependOn(plan_.copy_path);
  }
  if (plan_.diff_path.empty()) return std::nullopt;
  DependOn(plan_.diff_path);
  context->SetObserver(observer_.get());
  const Ref<ElementTable> differences = Read(context, plan_.diff_path);
  const Ref<ElementTable> report = Read(context, plan_.report_path);
  if (!differences || !report) return std::nullopt;
  const Ref<Level> converted = context->CreateLevel(0);
  converted->Convert(report, differences);
  const Ref<ElementTable> lines = converted->ElementArray();
  std::unique_ptr<FileReplacement> replacement = plan_.replacement
                                                     ? plan_.replacement->Finished()->Take()
                                                     : OpenAhead(files(), plan_.report_path);
  return replacement ? Written(context, lines, std::move(replacement)) : Encoded(context, lines);
}

void ReplacementAhead::Run() noexcept {
  try {
    replacement_ = OpenAhead(files_, path_);
  } catch (...) {
    // It fails again when the report is written.
  }
}

}  // namespace tessary
