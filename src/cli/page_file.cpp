#include "cli/page_file.h"

#include <functional>

#include "platform/failure.h"
#include "ui/html/protocol_page.h"

namespace tessary {
namespace {

// Files that are not there yet are no obstacle.
bool HoldsSomethingElse(FileSystem& files, const std::string& path) {
  if (!files.FileExists(path)) return false;
  const auto file = files.OpenForReading(path);
  std::string beginning(kHtmlPageBeginning.size(), '\0');
  std::size_t size = 0;
  while (size < beginning.size()) {
    const std::size_t count = file->Read(beginning.data() + size, beginning.size() - size);
    if (count == 0) break;
    size += count;
  }
  return size > 0 && beginning.substr(0, size) != kHtmlPageBeginning;
}

std::string Attempt(FileSystem& files, const std::string& path,
                    const std::function<void(FileReplacement&)>& write) {
  try {
    if (HoldsSomethingElse(files, path)) {
      return "Die Datei " + path + " wird nicht überschrieben, weil sie keine Protokollseite ist.";
    }
    write(*files.OpenForReplacing(path));
    return {};
  } catch (const Failure& failure) {
    return "Die Protokollseite " + path +
           " konnte nicht geschrieben werden: " + failure.description() + ".";
  }
}

}  // namespace

std::string WhyNoPage(FileSystem& files, const std::string& path) {
  return Attempt(files, path, [](FileReplacement&) {});
}

std::string WritePage(FileSystem& files, const std::string& path, std::string_view html) {
  return Attempt(files, path, [&](FileReplacement& file) {
    file.Write(html);
    file.Commit();
  });
}

}  // namespace tessary
