#include "manager/report_io.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "engine/procedure.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "platform/text.h"
#include "report/report_file.h"

namespace tessary {
namespace {

constexpr std::size_t kPieceSize = 256 * 1024;

// One step of reading or writing with the message that its failure adds.
class IoStep {
 public:
  IoStep(const Ref<EngineContext>& context, std::string_view procedure, std::string message)
      : message_(std::move(message)),
        procedure_{context->errors(), "BXConvertLLMgr", procedure, message_,
                   Procedure::Message::kAlways} {}
  IoStep(const IoStep&) = delete;
  IoStep& operator=(const IoStep&) = delete;

  template <class Body>
  decltype(auto) Run(Body&& body) const {
    return procedure_.Run(std::forward<Body>(body));
  }

 private:
  std::string message_;
  Procedure procedure_;
};

}  // namespace

bool HasByteOrderMark(std::string_view bytes) {
  using namespace std::string_view_literals;
  return bytes.starts_with("\xEF\xBB\xBF"sv) || bytes.starts_with("\xFF\xFE"sv) ||
         bytes.starts_with("\xFE\xFF"sv);
}

Ref<ElementTable> ReadReport(FileSystem& files, const Ref<EngineContext>& context,
                             const std::string& path, ReadStatistics* statistics,
                             FileSections* sections) {
  const std::string name = FileNameOf(path);
  const auto step = [&](std::string message) {
    return IoStep(context, "ReadFile", std::move(message));
  };
  const auto file =
      step("Fehler beim Öffnen der Datei " + name).Run([&] { return files.OpenForReading(path); });
  std::string bytes =
      step("Fehler beim Lesen aus der Datei " + name).Run([&] { return ReadWholeFile(*file); });
  return step("Fehler beim Verarbeiten einer Zeile.").Run([&] {
    // Such a file is of a newer format whose texts would be taken for something else.
    if (HasByteOrderMark(bytes)) throw Failure(kInvalidCall);
    BXReportFile store(context);
    ReadStatistics read;
    read.lines =
        store.AddLines(context->pool()->Adopt(DecodeWindows1252(std::move(bytes))), sections);
    read.lines_dropped = store.lines_dropped();
    read.last_level = store.level();
    if (statistics) *statistics = read;
    return store.ReportFile();
  });
}

void EncodeReport(const Ref<EngineContext>& context, const std::string& name,
                  const Ref<ElementTable>& lines, const TakePiece& take) {
  const IoStep next(context, "WriteFile", "Fehler beim Ermitteln einer Zeile.");
  const IoStep write(context, "WriteFile", "Fehler beim Schreiben in Datei " + name);
  BXReportFile store(context);
  store.SetReportFile(lines);
  // Memory that is not written to costs nothing, making a text longer again and again does.
  constexpr std::size_t kLongestLine = 4096;
  std::string text;
  text.reserve(kPieceSize + kLongestLine);
  const auto encode = [&] { write.Run([&] { take(EncodeWindows1252(std::move(text))); }); };
  bool more = next.Run([&] { return store.AppendFirstBlock(text); });
  while (more) {
    context->Yield();
    text.append("\r\n");
    if (text.size() >= kPieceSize) {
      encode();
      text = {};
      text.reserve(kPieceSize + kLongestLine);
    }
    more = next.Run([&] { return store.AppendNextBlock(text); });
  }
  encode();
}

void WriteReport(FileSystem& files, const std::string& path, NewContents contents, bool* damaged,
                 NewName new_name) {
  const std::string name = FileNameOf(path);
  const IoStep open(contents.context, "WriteFile", "Fehler beim Öffnen der Datei " + name);
  const IoStep write(contents.context, "WriteFile", "Fehler beim Schreiben in Datei " + name);
  std::unique_ptr<FileReplacement> file = std::move(contents.replacement);
  const bool is_written = file != nullptr;
  if (!is_written) file = open.Run([&] { return files.OpenForReplacing(path); });
  if (new_name == NewName::kLater) file->DeferName();
  const auto write_piece = [&](const std::string& piece) { file->Write(piece); };
  try {
    if (!is_written && contents.encoded.empty()) {
      EncodeReport(contents.context, name, contents.lines, write_piece);
    }
    write.Run([&] {
      std::for_each(contents.encoded.begin(), contents.encoded.end(), write_piece);
      file->Commit();
    });
  } catch (const Failure&) {
    if (damaged) *damaged = file->Damaged();
    throw;
  }
}

}  // namespace tessary
