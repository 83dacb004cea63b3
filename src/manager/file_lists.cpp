#include "manager/file_lists.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "engine/procedure.h"
#include "manager/user_section.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {
namespace {

std::optional<ListedFile> ListedReport(const Surroundings& around, const std::string& name,
                                       const std::string& path) {
  std::int32_t version = 0;
  std::string reference;
  if (IsReportFile(around.files, path, version, reference)) {
    return ListedFile{name, path, FoldCase(reference), version};
  }
  if (around.notices) around.notices->PassedOver(path);
  return std::nullopt;
}

std::optional<ListedFile> ListedDifference(const std::string& name, const std::string& path) {
  const DiffFileName parsed = ParseDiffFileName(name);
  if (!parsed.IsValid()) return std::nullopt;
  return ListedFile{name, path, FoldCase(parsed.reference), parsed.old_version, parsed.new_version};
}

}  // namespace

std::vector<ListedFile> CreateFileArraysForConversion(const Surroundings& around,
                                                      ErrorCollection& errors, ListKind kind,
                                                      const std::string& folder,
                                                      const OmitReport& omit) {
  const std::string source = SourceText("BXConvertLLMgr", "CreateFileArraysForConversion");
  try {
    if (!around.files.FolderExists(folder)) {
      throw Failure(kFolderEmpty, "Das Verzeichnis " + folder + " existiert nicht.");
    }
    std::vector<ListedFile> list;
    for (const std::string& name : around.files.ListFiles(folder)) {
      const std::string path = JoinPath(folder, name);
      if (kind == ListKind::kReports && omit && omit(name)) continue;
      auto file = kind == ListKind::kReports ? ListedReport(around, name, path)
                                             : ListedDifference(name, path);
      if (file) list.push_back(std::move(*file));
    }
    return list;
  } catch (const Failure& failure) {
    errors.Add({ErrorEntry::kFailure, failure.number(), source, failure.description()});
    throw;
  }
}

void SortForChains(std::vector<ListedFile>& differences) {
  std::stable_sort(differences.begin(), differences.end(),
                   [](const ListedFile& a, const ListedFile& b) {
                     return std::tie(a.reference, a.version) < std::tie(b.reference, b.version);
                   });
}

}  // namespace tessary
