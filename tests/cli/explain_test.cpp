// The explanations of messages: the command, the page in the documents, the links on the protocol
// page, and that no message of the sources is without one.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "cli/message_page.h"
#include "cli/tessary.h"
#include "engine/error_collection.h"
#include "platform/failure.h"
#include "support/fake_console.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"
#include "support/temporary_folder.h"
#include "ui/message_guide.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

fs::path Project() { return LibraryPath(TESSARY_SAMPLES).parent_path(); }

// Reads messages out of sources: literals behind each other are one, and what stands between them
// ("Die Datei " + name + " fehlt") is an "X".
class MessageReader {
 public:
  explicit MessageReader(std::string source) : source_(std::move(source)) {}

  std::vector<std::string> Read() {
    std::vector<std::string> messages;
    while (FindLiteral()) messages.push_back(Message());
    return messages;
  }

 private:
  // Goes to the next literal outside comments.
  bool FindLiteral() {
    for (; pos_ < source_.size(); ++pos_) {
      if (source_.compare(pos_, 2, "//") == 0)
        pos_ = std::min(source_.find('\n', pos_), source_.size());
      if (source_.compare(pos_, 3, "'\"'") == 0) pos_ += 3;
      if (pos_ < source_.size() && source_[pos_] == '"') return true;
    }
    return false;
  }
  std::string Literal() {
    std::string text;
    for (++pos_; pos_ < source_.size() && source_[pos_] != '"'; ++pos_) {
      if (source_[pos_] == '\\') ++pos_;
      text.push_back(source_[pos_]);
    }
    ++pos_;
    return text;
  }
  void SkipBlanks() {
    while (pos_ < source_.size() && std::isspace(static_cast<unsigned char>(source_[pos_]))) ++pos_;
  }
  // Goes behind an expression; true when a literal follows that is added to it.
  bool SkipToAddedLiteral() {
    int depth = 0;
    for (; pos_ < source_.size(); ++pos_) {
      const char c = source_[pos_];
      if (c == '"') {
        if (depth == 0) return true;
        Literal();
        --pos_;
      }
      if (c == '(') ++depth;
      if (c == ')' && --depth < 0) return false;
      if (depth == 0 && (c == ';' || c == ',' || c == '{' || c == '}')) return false;
    }
    return false;
  }
  std::string Message() {
    std::string message;
    while (true) {
      message.append(Literal());
      SkipBlanks();
      if (pos_ >= source_.size()) return message;
      if (source_[pos_] == '"') continue;
      if (source_[pos_] != '+') return message;
      message.append("X");
      if (!SkipToAddedLiteral()) return message;
    }
  }

  std::string source_;
  std::size_t pos_ = 0;
};

bool IsSentence(const std::string& text) {
  const auto first = static_cast<unsigned char>(text.empty() ? ' ' : text[0]);
  const bool capital = (first >= 'A' && first <= 'Z') || text.starts_with("Ä") ||
                       text.starts_with("Ö") || text.starts_with("Ü");
  return capital && text.find(' ') != std::string::npos && text.find(' ') + 1 < text.size();
}

// What the progress window says is no message.
bool IsStep(const std::string& text) {
  for (const char* beginning :
       {"Warnung: ", "List & Label", "Berichtskonvertierung wird", "Berichtsdatei",
        "Bericht X wird", "Differenzdatei ", "Schreibvorgang wird",
        "Erstellen der Differrenzdatei wird", "Erstellen der Differrenzdateien wird"}) {
    if (text.starts_with(beginning)) return true;
  }
  return false;
}

TEST(MessageGuides, ExplainEveryMessageOfTheSources) {
  std::vector<fs::path> sources = {Project() / "src/cli/run_notices.cpp",
                                   Project() / "src/cli/check_texts.cpp"};
  for (const char* folder : {"platform", "engine", "levels", "report", "manager"}) {
    for (const auto& entry : fs::recursive_directory_iterator(Project() / "src" / folder)) {
      if (entry.path().extension() == ".cpp") sources.push_back(entry.path());
    }
  }
  int messages = 0;
  for (const fs::path& path : sources) {
    for (const std::string& text : MessageReader(GetFile(TextOf(path))).Read()) {
      if (!IsSentence(text) || IsStep(text)) continue;
      ++messages;
      // A text that ends with a blank is continued elsewhere.
      const bool explained = text.ends_with(' ') ? !SearchMessageGuides(text).empty()
                                                 : FindMessageGuide(text) != nullptr;
      EXPECT_TRUE(explained) << TextOf(path) << ": " << text;
    }
  }
  EXPECT_GT(messages, 80) << "the sources are read";
}

TEST(MessageGuides, ExplainEveryRunTimeError) {
  for (const std::int32_t number :
       {5, 6, 7, 9, 13, 51, 52, 53, 57, 58, 61, 67, 70, 75, 76, 91, 429}) {
    const MessageGuide* guide = FindMessageGuide(RunTimeErrorText(number));
    ASSERT_NE(guide, nullptr) << number;
    EXPECT_EQ(guide->number, number);
    EXPECT_FALSE(MessageGuidesOf(number).empty());
  }
  for (const std::int32_t number : {kFolderEmpty, kDoesNotExist, kWrongKindOfFile, kNoBackupFolder,
                                    kMissingElementsUnchecked}) {
    EXPECT_FALSE(MessageGuidesOf(number).empty()) << number;
  }
}

TEST(MessageGuides, AreFoundByTheirMessages) {
  const struct {
    const char* message;
    const char* text;  // null for none
  } rows[] = {
      {"Fehler beim Öffnen der Datei Rechnung.lst", "Fehler beim Öffnen der Datei …"},
      {"  fehler beim öffnen der datei x ", "Fehler beim Öffnen der Datei …"},
      {"Die Datei a.lst existiert nicht.", "Die Datei … existiert nicht."},
      {"Die Differenz-Datei x existiert nicht.", "Die Differenz-Datei … existiert nicht."},
      {"Konvertierung des Berichts a.lst von Version 3 nach 4 fehlgeschlagen.",
       "Konvertierung des Berichts … fehlgeschlagen."},
      {"Zugriff verweigert", "Zugriff verweigert"},
      {"Liesmich.txt ist kein Bericht: in [UserSection] fehlt Referenzbeleg.",
       "… ist kein Bericht: …"},
      {"Von Version 4 führt keine Differenz-Datei weiter; die nächste ist 5_6Rechnung.",
       "Von Version … führt keine Differenz-Datei weiter…"},
      {"Von Version 4 führt keine Differenz-Datei weiter.",
       "Von Version … führt keine Differenz-Datei weiter…"},
      {"Sicherungsordner und Berichtsordner können nicht beide /R sein.",
       "Sicherungsordner und Berichtsordner können nicht beide … sein."},
      {"a.lst aus ~a.lst.~1 konnte nicht zurückgeholt werden: Zugriff verweigert",
       "… konnte nicht zurückgeholt werden: …"},
      {"Zugriff verweigert!", nullptr},
      {"Fehler", nullptr},
      {"", nullptr},
  };
  for (const auto& row : rows) {
    const MessageGuide* guide = FindMessageGuide(row.message);
    EXPECT_EQ(guide != nullptr, row.text != nullptr) << row.message;
    if (guide && row.text) {
      EXPECT_EQ(guide->text, row.text);
    }
  }
}

TEST(MessageGuides, AreDifferentAndComplete) {
  std::set<std::string_view> texts;
  std::set<std::string> anchors;
  for (const MessageGuide& guide : AllMessageGuides()) {
    EXPECT_TRUE(texts.insert(guide.text).second) << guide.text;
    EXPECT_TRUE(anchors.insert(AnchorOf(guide)).second);
    EXPECT_FALSE(guide.cause.empty() || guide.remedy.empty()) << guide.text;
    EXPECT_LT(static_cast<int>(guide.group), kMessageGroups);
  }
}

// After a change of the table: tessary explain > docs/meldungen.md
TEST(MessagePage, IsTheOneOfTheDocuments) {
  std::string page = GetFile(TextOf(Project() / "docs/meldungen.md"));
  std::erase(page, '\r');
  EXPECT_EQ(page, MessagePage());
}

class ExplainTest : public testing::Test {
 protected:
  int Run(const std::vector<std::string>& arguments) {
    console_ = {};
    return RunTessary(arguments, console_, files_);
  }
  MemoryFiles files_;
  FakeConsole console_;
};

TEST_F(ExplainTest, AMessageANumberOrAPart) {
  EXPECT_EQ(Run({"explain", "Zugriff verweigert"}), kExitDone);
  EXPECT_EQ(console_.out,
            "Zugriff verweigert\n"
            "  Nummer:  70\n"
            "  Ursache: Die Datei ist schreibgeschützt oder geöffnet, oder die Rechte fehlen.\n"
            "  Abhilfe: Schreibschutz aufheben, Programme schließen, Rechte prüfen.\n");
  for (const char* number : {"-2147216503", "2147750793", "0x80041389", "0X80041389"}) {
    EXPECT_EQ(Run({"explain", number}), kExitDone) << number;
    EXPECT_TRUE(
        console_.out.starts_with("Die Datei … existiert nicht.\n"
                                 "  Nummer:  -2147216503 (0x80041389)\n"))
        << console_.out;
  }
  EXPECT_EQ(Run({"explain", "0x800A003D"}), kExitDone) << "as automation clients see number 61";
  EXPECT_TRUE(console_.out.starts_with("Datenträger voll\n"));
  EXPECT_EQ(Run({"explain", "fehlende pfadangabe"}), kExitDone);
  EXPECT_NE(console_.out.find("Fehlende Pfadangabe für den Differenz-Bericht.\n"),
            std::string::npos);
}

TEST_F(ExplainTest, ALineCopiedFromAProtocol) {
  for (const char* line :
       {"FEHLER  Die Datei a.lst existiert nicht.", "   Hinweis Die Datei a.lst existiert nicht. ",
        "⚠ Die Datei a.lst existiert nicht.",
        "tessary: Warnung: Die Datei a.lst existiert nicht."}) {
    EXPECT_EQ(Run({"explain", line}), kExitDone) << line;
    EXPECT_TRUE(console_.out.starts_with("Die Datei … existiert nicht.\n")) << console_.out;
  }
}

TEST_F(ExplainTest, SomethingUnknown) {
  for (const char* wanted : {"Es regnet", "1", "99999999999", "0x", " "}) {
    EXPECT_EQ(Run({"explain", wanted}), kExitFailed) << wanted;
    EXPECT_EQ(console_.err, "tessary: Zu „" + std::string(wanted) + "“ gibt es keine Erklärung.\n");
  }
}

TEST_F(ExplainTest, AllAsAPage) {
  EXPECT_EQ(Run({"explain"}), kExitDone);
  EXPECT_EQ(console_.out, MessagePage());
}

TEST_F(ExplainTest, TheProtocolPageLeadsFromWarningsToo) {
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.PutFolder("/diff");
  files_.Put("/diff/3_4Rechnung", "");
  Run({"convert-folder", "/diff", "/rep", "--omit", "x.lst", "--html", "/p.html"});
  const std::string message = "Zu --omit x.lst gibt es keine Datei im Berichtsordner.";
  const MessageGuide* guide = FindMessageGuide(message);
  ASSERT_NE(guide, nullptr);
  const std::string page = files_.Get("/p.html");
  EXPECT_NE(page.find("<bdi>" + message + "</bdi></div> <a class=\"why\" href=\"#" +
                      AnchorOf(*guide) + "\">Was tun?</a>"),
            std::string::npos);
  EXPECT_NE(page.find("<dt id=\"" + AnchorOf(*guide) + "\">"), std::string::npos);
}

TEST_F(ExplainTest, TheProtocolPageLeadsFromEachMessageToItsExplanation) {
  files_.Put("/rep/a.lst", SmallReport(3));
  files_.PutFolder("/diff");
  files_.Put("/diff/3_4Rechnung", "\xEF\xBB\xBF");
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--html", "/p.html"}), kExitFailed);
  const std::string page = files_.Get("/p.html");
  for (const char* message :
       {"Fehler beim Lesen der Datei 3_4Rechnung", "Fehler beim Verarbeiten einer Zeile."}) {
    const MessageGuide* guide = FindMessageGuide(message);
    ASSERT_NE(guide, nullptr);
    const std::string anchor = AnchorOf(*guide);
    EXPECT_NE(page.find("<bdi>" + std::string(message) + "</bdi></div> <a class=\"why\" href=\"#" +
                        anchor + "\">Was tun?</a>"),
              std::string::npos)
        << message;
    EXPECT_NE(page.find("<dt id=\"" + anchor + "\">"), std::string::npos) << message;
  }
}

}  // namespace
}  // namespace tessary
