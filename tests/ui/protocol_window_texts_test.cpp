#include "ui/protocol_window_texts.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "platform/path.h"

namespace tessary::protocol_window {
namespace {

TEST(ProtocolWindowTextsTest, AreKeptToTheLetter) {
  EXPECT_EQ(kCaption, "TALVERO Fehlerprotokoll");
  EXPECT_EQ(kTitle, "Berichtskonvertierung");
  EXPECT_EQ(kSubtitle, "Fehlerprotokoll");
  EXPECT_EQ(kClose, "Schließen");
}

TEST(ProtocolWindowTextsTest, RepairGuideIsKeptToTheLetter) {
  const RepairGuide guide = RepairGuideOf("C:");
  EXPECT_EQ(guide.introduction,
            "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile "
            "möglicherweise nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen "
            "zu korrigieren:");
  const char* const expected[] = {
      "Starten Sie die Konvertierung erneut über:",
      "Wählen Sie das Verzeichnis für die Differenz-Berichte aus: ",
      "Wählen Sie das Verzeichnis für die Berichte aus: ",
      "Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.).",
      ("Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit den "
       "Ursprungsberichten im Verzeichnis:"),
  };
  ASSERT_EQ(guide.steps.size(), std::size(expected));
  for (std::size_t i = 0; i < guide.steps.size(); ++i) {
    EXPECT_EQ(guide.steps[i].text, expected[i]);
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

std::vector<std::string> PathsOf(std::string_view own_folder) {
  std::vector<std::string> paths;
  for (const RepairStep& step : RepairGuideOf(own_folder).steps) paths.push_back(step.value);
  return paths;
}

TEST(ProtocolWindowTextsTest, PathsLieBelowTheComponentsFolder) {
  const std::string folder = Joined({"C:", "Programme", "Büro"});
  const std::vector<std::string> expected = {
      Joined({folder, "Velquist.exe"}), Joined({folder, "DB", "BerichteLLDiff"}),
      Joined({folder, "DB", "BerichteLLOrg"}), "", Joined({folder, "DB", "BerichteLLBak"})};
  EXPECT_EQ(PathsOf(folder), expected);
  EXPECT_EQ(PathsOf(folder + kPathSeparator), expected) << "one separator in between";
}

TEST(ProtocolWindowTextsTest, ComponentMayLieInARootFolder) {
  const std::string root = std::string("C:") + kPathSeparator;
  EXPECT_EQ(PathsOf(root)[0], Joined({"C:", "Velquist.exe"}));
  EXPECT_EQ(PathsOf(root)[1], Joined({"C:", "DB", "BerichteLLDiff"}));
}

}  // namespace
}  // namespace tessary::protocol_window
