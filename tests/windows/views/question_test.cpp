#include <gmock/gmock.h>

#include "windows/views/client.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

using testing::HasSubstr;

// A folder below a file can never be made.
class Question : public testing::TestWithParam<int> {
 protected:
  Question() { PutFile(folders_ / "Datei", "x"); }

  ReportFolders folders_{1};
};

TEST_P(Question, AboutTheBackupFolderTakesBothAnswers) {
  const int button = GetParam();
  const std::string before = GetFile(folders_.report(1));
  bool succeeded = false;
  HCURSOR after = nullptr;
  const HCURSOR own = LoadCursorW(nullptr, IDC_CROSS);
  Client client([&](Client& self) {
    SetCursor(own);
    succeeded = self.ConvertReport(folders_.report(1), folders_.difference_file(),
                                   folders_ / "Datei/Sicherung");
    after = GetCursor();
  });
  const HWND question = WaitForQuestion();
  ASSERT_TRUE(question);
  EXPECT_EQ(TextOf(question), "");
  EXPECT_TRUE(WaitUntil([&] { return client.Focus() == GetDlgItem(question, IDYES); }));
  const std::string expected =
      "Das BackUp-Verzeichnis " + folders_ / "Datei/Sicherung" +
      " konnte nicht erstellt werden. Die Berichte werden ohne Sicherung überschrieben.\r\n"
      "Falls Probleme bei der Konvertierung auftreten, können Programmteile möglicherweise nicht "
      "mehr richtig ausgeführt werden.\r\nKonvertierung trotzdem durchführen?";
  bool asked = false;
  for (HWND child = GetWindow(question, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    asked = asked || TextOf(child) == expected;
  }
  EXPECT_TRUE(asked);
  SavePicture(question, "question");
  PostMessageW(GetDlgItem(question, button), BM_CLICK, 0, 0);
  client.Join();
  EXPECT_EQ(succeeded, button == IDYES);
  EXPECT_EQ(GetFile(folders_.report(1)) != before, button == IDYES);
  EXPECT_EQ(after, own) << "the pointer is given back";
}

INSTANTIATE_TEST_SUITE_P(Answers, Question, testing::Values(IDYES, IDNO),
                         [](const auto& answer) { return answer.param == IDYES ? "Yes" : "No"; });

}  // namespace
}  // namespace tessary::win32
