#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/tessary.h"
#include "platform/path.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

constexpr char kDifference[] = "U;[UserSection]\r\nU;Version=9\r\n";

class CheckTest : public testing::Test {
 protected:
  CheckTest() {
    for (const char* name : {"3_4Rechnung", "4_5Rechnung", "4_6Rechnung", "3_4Mahnung"}) {
      files_.Put(std::string("/diff/") + name, kDifference);
    }
    files_.Put("/diff/Liesmich.txt", "");
    files_.Put("/rep/a.lst", SmallReport(3));
    files_.Put("/rep/b.lst", SmallReport(3));
    files_.Put("/rep/c.lst", SmallReport(6));
    files_.Put("/rep/Notizen", "");
    files_.Put("/rep/x\xFF.txt", "");
  }
  int Run(const std::vector<std::string>& more) {
    console_ = {};
    std::vector<std::string> arguments = {"check", "/diff", "/rep"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTessary(arguments, console_, files_);
  }

  MemoryFiles files_;
  FakeConsole console_;
};

TEST_F(CheckTest, SaysWhatHappensToEveryReport) {
  EXPECT_EQ(Run({}), kExitFailed);
  EXPECT_EQ(console_.out,
            "FEHLER  a.lst: Version 3, Referenz Rechnung, mit 3_4Rechnung, 4_5Rechnung nach "
            "Version 5\n"
            "        Hinweis Von Version 5 führt keine Differenz-Datei weiter.\n"
            "FEHLER  b.lst: Version 3, Referenz Rechnung, mit 3_4Rechnung, 4_5Rechnung nach "
            "Version 5\n"
            "        Hinweis Von Version 5 führt keine Differenz-Datei weiter.\n"
            "OK      c.lst: Version 6, Referenz Rechnung, bereits auf dem neuesten Stand\n"
            "Hinweis Von Version 4 der Referenz Rechnung führen mehrere Differenz-Dateien weiter; "
            "angewendet wird 4_5Rechnung, nicht 4_6Rechnung.\n"
            "Hinweis Gleiche Version 3 und Referenz Rechnung: a.lst, b.lst; beim Vergleich "
            "ergäben sie dieselbe Differenz-Datei.\n"
            "Hinweis Die Differenz-Datei 3_4Mahnung passt zu nichts: Es gibt keinen Bericht der "
            "Referenz Mahnung.\n"
            "Hinweis Die Differenz-Datei 4_6Rechnung wird nicht angewendet: Eine andere führt von "
            "ihrer alten Version weiter.\n"
            "Hinweis Im Differenz-Ordner ist Liesmich.txt dem Namen nach keine Differenz-Datei.\n"
            "Hinweis Notizen ist kein Bericht: der Name hat keine Erweiterung.\n"
            "Hinweis x\uFFFD.txt ist kein Bericht: in [UserSection] fehlen Version und "
            "Referenzbeleg.\n"
            "3 Berichte, 1 ohne Lücke bis zur neuesten Version, 2 Dateien sind keine Berichte\n");
  EXPECT_EQ(console_.err, "");
}

TEST_F(CheckTest, ADifferenceFileThatEveryReportHasBehindItIsNoLongerNeeded) {
  files_.Put("/later/a.lst", SmallReport(4));
  EXPECT_EQ(RunTessary({"check", "/diff", "/later", "--quiet", "--json"}, console_, files_),
            kExitFailed);
  const Json unmatched = ParseJson(console_.out)["unmatched_difference_files"];
  EXPECT_EQ(unmatched[1], ParseJson(R"({"name":"3_4Rechnung","reason":"no_longer_needed"})"));
  console_ = {};
  RunTessary({"check", "/diff", "/later"}, console_, files_);
  EXPECT_NE(console_.out.find("Hinweis Die Differenz-Datei 3_4Rechnung wird nicht mehr gebraucht: "
                              "Die Berichte der Referenz Rechnung sind schon so weit.\n"),
            std::string::npos)
      << console_.out;
}

TEST_F(CheckTest, QuietNamesOnlyWhatFails) {
  EXPECT_EQ(Run({"--quiet", "--omit", "a.lst", "--omit=none"}), kExitFailed);
  EXPECT_TRUE(console_.out.starts_with("FEHLER  b.lst: ")) << console_.out;
  EXPECT_EQ(console_.err, "Warnung: Zu --omit none gibt es keine Datei im Berichtsordner.\n");
  files_.Remove("/diff/4_6Rechnung");
  EXPECT_EQ(Run({"--quiet"}), kExitDone);
  EXPECT_EQ(console_.out, "");
}

TEST_F(CheckTest, JsonHoldsEverything) {
  EXPECT_EQ(Run({"--json"}), kExitFailed);
  const Json object = ParseJson(console_.out);
  EXPECT_EQ(object["result"], false);
  EXPECT_EQ(object["reports"].size(), 3u);
  EXPECT_EQ(object["reports"][0], ParseJson(R"({"name":"a.lst","reference":"Rechnung","version":3,
                "chain":["3_4Rechnung","4_5Rechnung"],"reached":5,"newest":6,"state":"gap",
                "messages":["Von Version 5 führt keine Differenz-Datei weiter."],"warnings":[]})"));
  EXPECT_EQ(object["reports"][2]["state"], "complete");
  EXPECT_EQ(object["not_reports"][0], ParseJson(R"({"name":"Notizen","reason":"no_extension"})"));
  EXPECT_EQ(object["not_reports"][1]["name"], "x\uFFFD.txt");
  EXPECT_EQ(object["duplicate_steps"][0]["difference_files"],
            ParseJson(R"(["4_5Rechnung","4_6Rechnung"])"));
  EXPECT_EQ(object["same_difference_file"][0]["reports"], ParseJson(R"(["a.lst","b.lst"])"));
  EXPECT_EQ(object["unmatched_difference_files"][1]["reason"], "another_is_applied");
  EXPECT_EQ(object["other_files"], ParseJson(R"(["Liesmich.txt"])"));
  EXPECT_EQ(object["problems"], Json::array());
}

TEST_F(CheckTest, AMissingFolderIsAProblem) {
  EXPECT_EQ(RunTessary({"check", "/none", "/rep"}, console_, files_), kExitFailed);
  EXPECT_EQ(console_.out, "FEHLER  Der Ordner " + MakeAbsolute("/none") +
                              " existiert nicht.\n"
                              "0 Berichte, 0 ohne Lücke bis zur neuesten Version\n");
}

}  // namespace
}  // namespace tessary
