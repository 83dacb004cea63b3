#include <gmock/gmock.h>

#include <filesystem>

#include "windows/views/client.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

constexpr const char* kFile = "Bericht 1.lst";

// Every answer to both questions. A folder below a file can never be made; a file never takes the
// place of a folder.
class Question : public testing::TestWithParam<int> {
 protected:
  Question() {
    PutFile(folders_ / "Datei", "x");
    std::filesystem::create_directories(LibraryPath(folders_ / ("Sicherung/" + std::string(kFile))));
  }

  void ExpectQuestion(const std::string& backup_folder, const std::string& expected,
                      const std::string& picture);

  ReportFolders folders_{1};
};

void Question::ExpectQuestion(const std::string& backup_folder, const std::string& expected,
                              const std::string& picture) {
  const int button = GetParam();
  const std::string before = GetFile(folders_.report(1));
  bool succeeded = false;
  HCURSOR after = nullptr;
  const HCURSOR own = LoadCursorW(nullptr, IDC_CROSS);
  Client client([&](Client& self) {
    SetCursor(own);
    succeeded = self.ConvertReport(folders_.report(1), folders_.difference_file(), backup_folder);
    after = GetCursor();
  });
  const HWND question = WaitForQuestion();
  ASSERT_TRUE(question);
  EXPECT_EQ(TextOf(question), "");
  EXPECT_TRUE(WaitUntil([&] { return client.Focus() == GetDlgItem(question, IDYES); }));
  bool asked = false;
  for (HWND child = GetWindow(question, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    asked = asked || TextOf(child) == expected;
  }
  EXPECT_TRUE(asked);
  SavePicture(question, picture);
  PostMessageW(GetDlgItem(question, button), BM_CLICK, 0, 0);
  const Heard& heard = client.Join();
  EXPECT_EQ(heard.pointer_at.at(""), LoadCursorW(nullptr, IDC_ARROW));
  EXPECT_EQ(succeeded, button == IDYES);
  EXPECT_EQ(GetFile(folders_.report(1)) != before, button == IDYES);
  EXPECT_EQ(after, own) << "the pointer is given back";
}

TEST_P(Question, AboutTheBackupFolderTakesBothAnswers) {
  const std::string folder = folders_ / "Datei/Sicherung";
  ExpectQuestion(
      folder,
      "Das BackUp-Verzeichnis " + folder +
          " konnte nicht erstellt werden. Die Berichte werden ohne Sicherung überschrieben.\r\n"
          "Falls Probleme bei der Konvertierung auftreten, können Programmteile möglicherweise "
          "nicht mehr richtig ausgeführt werden.\r\nKonvertierung trotzdem durchführen?",
      "question");
}

TEST_P(Question, AboutABackupTakesBothAnswers) {
  ExpectQuestion(
      folders_ / "Sicherung",
      std::string("Der Bericht ") + kFile +
          " konnte nicht gesichert werden.\r\nFalls Probleme bei der Konvertierung auftreten, "
          "kann der Bericht beschädigt und Programmteile möglicherweise nicht mehr richtig "
          "ausgeführt werden.\r\nKonvertierung für diesen Bericht trotzdem durchführen?",
      "question-report");
}

INSTANTIATE_TEST_SUITE_P(Answers, Question, testing::Values(IDYES, IDNO),
                         [](const auto& answer) { return answer.param == IDYES ? "Yes" : "No"; });

}  // namespace
}  // namespace tessary::win32
