// Makes difference files and converts reports with the installed library.
//   consumer OLD_FOLDER NEW_FOLDER DIFFERENCE_FOLDER REPORT_FOLDER
// The folders are given as absolute paths. Exit code 0 when everything succeeded.

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "manager/convert_ll_mgr.h"
#include "manager/folder_check.h"
#include "platform/file_system.h"

namespace {

// Nobody watches: no windows, and questions are answered with No.
class NoUser : public tessary::UserInterface {
 public:
  std::unique_ptr<tessary::ProgressWindow> CreateProgressWindow() override {
    return std::make_unique<NoWindow>();
  }
  tessary::Answer Ask(std::string_view) override { return tessary::Answer::kNo; }
  void ShowErrorProtocol(const tessary::ResultDictionary& errors,
                         const tessary::ResultDictionary&) override {
    for (const auto& item : errors.items()) std::printf("%s\n", item.text.c_str());
  }
  void SetMousePointer(tessary::MousePointer) override {}
  void RestoreMousePointer() override {}

 private:
  class NoWindow : public tessary::ProgressWindow {
   public:
    void Init(std::string_view, std::string_view) override {}
    void Show() override {}
    void Process(std::string_view) override {}
    void StopProgress() override {}
  };
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 5) return 2;
  const std::string old_folder = arguments[1];
  const std::string new_folder = arguments[2];
  const std::string differences = arguments[3];
  const std::string reports = arguments[4];
  tessary::FileSystem& files = tessary::SystemFiles();
  tessary::ResultLog log;
  NoUser user;
  tessary::BXConvertLLMgr manager(log, {.files = files, .user = user});
  if (!manager.CreateDiffFiles(old_folder, new_folder, differences)) return 1;
  const tessary::FolderCheck check = tessary::CheckFolders(files, differences, reports, nullptr);
  if (!check.problems.empty()) return 1;
  if (!manager.ConvertReports(differences, reports, "")) return 1;
  std::printf("%d\n", static_cast<int>(manager.CountCorrectReports()));
  return 0;
}
