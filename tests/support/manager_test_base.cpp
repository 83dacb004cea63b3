#include "support/manager_test_base.h"

#include "platform/path.h"
#include "platform/text.h"

namespace tessary {

std::string FileText(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += EncodeWindows1252(line) + "\r\n";
  return text;
}

std::string ReportText(int version, std::string_view reference,
                       const std::vector<std::string>& lines) {
  return FileText({"[UserSection]", " Version=" + std::to_string(version),
                   " Referenzbeleg=" + std::string(reference)}) +
         FileText(lines);
}

std::string SmallReport(int version, std::string_view reference) {
  return ReportText(
      version, reference,
      {"[Object]", " ObjectName=Kopf", " LinkID=1", " Height=" + std::to_string(100 * version)});
}

std::string ManagerEntry(std::int32_t number, std::string_view procedure, std::string_view message,
                         std::int32_t kind) {
  return std::to_string(kind) + " " + std::to_string(number) +
         " BXConvertLLMgr Prozedur: " + std::string(procedure) + ": " + std::string(message);
}

LoggedItems ItemsOf(const ResultDictionary& dictionary) {
  LoggedItems items;
  for (const auto& item : dictionary.items()) items.emplace_back(item.text, item.messages);
  return items;
}

std::vector<std::string> TextsOf(const ResultDictionary& dictionary) {
  std::vector<std::string> texts;
  for (const auto& item : dictionary.items()) texts.push_back(item.text);
  return texts;
}

std::string ManagerTest::Folder(std::string_view folder) { return JoinPath("", folder); }

std::string ManagerTest::Path(std::string_view folder, std::string_view name) {
  return JoinPath(Folder(folder), name);
}

void ManagerTest::ExpectTidy() const {
  EXPECT_EQ(user_.pointer(), "restored");
  EXPECT_EQ(user_.open_windows(), 0);
}

std::map<std::string, std::string> ManagerTest::FilesOutside(std::string_view folder) const {
  std::map<std::string, std::string> rest;
  for (const auto& [path, contents] : memory_.files()) {
    if (ParentFolderOf(path) != Folder(folder)) rest.emplace(path, contents);
  }
  return rest;
}

}  // namespace tessary
