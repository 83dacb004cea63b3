#include "cli/result_file.h"

#include <functional>

#include "cli/change_journal.h"
#include "platform/failure.h"
#include "ui/html/protocol_page.h"

namespace tessary {

const ResultFileKind kPageFile = {kHtmlPageBeginning, "Die Protokollseite", "keine Protokollseite"};
const ResultFileKind kJournalFile = {kJournalBeginning, "Das Änderungsprotokoll",
                                     "kein Änderungsprotokoll"};

namespace {

// Files that are not there yet are no obstacle.
bool HoldsSomethingElse(FileSystem& files, const ResultFileKind& kind, const std::string& path) {
  if (!files.FileExists(path)) return false;
  const auto file = files.OpenForReading(path);
  const std::string beginning = ReadBeginning(*file, kind.beginning.size());
  return !beginning.empty() && beginning != kind.beginning;
}

std::string Attempt(FileSystem& files, const ResultFileKind& kind, const std::string& path,
                    const std::function<void(FileReplacement&)>& write) {
  try {
    if (HoldsSomethingElse(files, kind, path)) {
      return "Die Datei " + path + " wird nicht überschrieben, weil sie " +
             std::string(kind.no_such) + " ist.";
    }
    write(*files.OpenForReplacing(path));
    return {};
  } catch (const Failure& failure) {
    return std::string(kind.name) + " " + path +
           " konnte nicht geschrieben werden: " + failure.description() + ".";
  }
}

}  // namespace

std::string WhyNoResultFile(FileSystem& files, const ResultFileKind& kind,
                            const std::string& path) {
  return Attempt(files, kind, path, [](FileReplacement&) {});
}

std::string WriteResultFile(FileSystem& files, const ResultFileKind& kind, const std::string& path,
                            std::string_view contents) {
  return Attempt(files, kind, path, [&](FileReplacement& file) {
    file.Write(contents);
    file.Commit();
  });
}

}  // namespace tessary
