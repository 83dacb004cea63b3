#include "ui/protocol_window_texts.h"

#include <gtest/gtest.h>

#include "platform/path.h"

namespace tessary::protocol_window {
namespace {

TEST(ProtocolWindowTextsTest, AreKeptToTheLetter) {
  EXPECT_EQ(kCaption, "TALVERO Fehlerprotokoll");
  EXPECT_EQ(kTitle, "Berichtskonvertierung");
  EXPECT_EQ(kSubtitle, "Fehlerprotokoll");
  EXPECT_EQ(kClose, "Schließen");
  EXPECT_EQ(kIntroduction,
            "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile "
            "möglicherweise nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen "
            "zu korrigieren:");
  EXPECT_EQ(kSteps[0].text, "Starten Sie die Konvertierung erneut über:");
  EXPECT_EQ(kSteps[1].text, "Wählen Sie das Verzeichnis für die Differenz-Berichte aus: ");
  EXPECT_EQ(kSteps[2].text, "Wählen Sie das Verzeichnis für die Berichte aus: ");
  EXPECT_EQ(kSteps[3].text, "Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.).");
  EXPECT_EQ(kSteps[4].text,
            "Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit "
            "den Ursprungsberichten im Verzeichnis:");
  for (std::size_t i = 0; i < kSteps.size(); ++i) {
    EXPECT_EQ(kSteps[i].number, std::to_string(i + 1) + ".");
  }
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string path;
  for (const std::string_view part : parts) {
    if (!path.empty()) path.push_back(kPathSeparator);
    path.append(part);
  }
  return path;
}

TEST(ProtocolWindowTextsTest, PathsLieBelowTheComponentsFolder) {
  const std::string folder = Joined({"C:", "Programme", "Büro"});
  const RepairPaths expected = {
      Joined({folder, "Velquist.exe"}), Joined({folder, "DB", "BerichteLLDiff"}),
      Joined({folder, "DB", "BerichteLLOrg"}), "", Joined({folder, "DB", "BerichteLLBak"})};
  EXPECT_EQ(RepairPathsOf(folder), expected);
  EXPECT_EQ(RepairPathsOf(folder + kPathSeparator), expected) << "one separator in between";
}

TEST(ProtocolWindowTextsTest, ComponentMayLieInARootFolder) {
  const std::string root = std::string("C:") + kPathSeparator;
  EXPECT_EQ(RepairPathsOf(root)[0], Joined({"C:", "Velquist.exe"}));
  EXPECT_EQ(RepairPathsOf(root)[1], Joined({"C:", "DB", "BerichteLLDiff"}));
}

}  // namespace
}  // namespace tessary::protocol_window
