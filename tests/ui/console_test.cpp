// The views on a command line: protocol, status line, questions, output.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fake_console.h"
#include "ui/console/console_user_interface.h"
#include "ui/console/output.h"
#include "ui/console/protocol_text.h"
#include "ui/console/status_line.h"
#include "ui/printable.h"

namespace tessary {
namespace {

struct Notices : RunNotices {
  std::vector<std::string> warnings;
  void Warning(const std::string& text) override { warnings.push_back(text); }
  void PassedOver(const std::string&) override {}
  void SkippedByAnswer(const std::string&) override {}
};

struct TextPair {
  std::string text;
  std::string expected;
};

TEST(Printable, ReplacesWhatCannotBeShown) {
  const TextPair rows[] = {
      {"", ""},
      {"Rechnung Österreich.lst", "Rechnung Österreich.lst"},
      {"Rechnung \xD6.lst", "Rechnung \uFFFD.lst"},
      {"a\x1b[2Jb", "a\uFFFD[2Jb"},
      {"a\nb\tc\r", "a\uFFFDb\uFFFDc\uFFFD"},
      {"a\x7F", "a\uFFFD"},
      {"a\u0085b", "a\uFFFDb"},
      {std::string("a\0b", 3), "a\uFFFDb"},
  };
  for (const auto& row : rows) EXPECT_EQ(Printable(row.text), row.expected);
}

TEST(Printable, CutsByColumnsAndNeverInsideACharacter) {
  EXPECT_EQ(CutToColumns("abc", 5), "abc");
  EXPECT_EQ(CutToColumns("äöü", 2), "äö");
  EXPECT_EQ(CutToColumns("表表", 3), "表");
  EXPECT_EQ(CutToColumns("abc", 0), "");
  EXPECT_EQ(ColumnsOf("aä表"), 4u);
}

ProtocolTree ExampleTree() {
  ResultDictionary correct;
  ResultDictionary errors;
  correct.Add("A konvertiert.", {""});
  errors.Add("B fehlgeschlagen.", {"Eine Meldung", "Datei \xFF"});
  return ProtocolTree(errors, correct);
}

struct StyleCase {
  const char* name;
  TextStyle style;
  ProtocolPart part;
  std::string expected;
};

TEST(ProtocolText, IsATreeInTheStyleOfTheStream) {
  const StyleCase rows[] = {
      {"words",
       {false, false},
       ProtocolPart::kAll,
       "OK      A konvertiert.\nFEHLER  B fehlgeschlagen.\n        Hinweis Eine Meldung\n"
       "        Hinweis Datei \uFFFD\n"},
      {"signs",
       {true, false},
       ProtocolPart::kAll,
       "✔ A konvertiert.\n✘ B fehlgeschlagen.\n  ⚠ Eine Meldung\n  ⚠ Datei \uFFFD\n"},
      {"colours",
       {true, true},
       ProtocolPart::kAll,
       "\x1b[32m✔\x1b[0m A konvertiert.\n\x1b[31m✘\x1b[0m B fehlgeschlagen.\n"
       "  \x1b[33m⚠\x1b[0m Eine Meldung\n  \x1b[33m⚠\x1b[0m Datei \uFFFD\n"},
      {"failures only",
       {true, false},
       ProtocolPart::kFailures,
       "✘ B fehlgeschlagen.\n  ⚠ Eine Meldung\n  ⚠ Datei \uFFFD\n"},
  };
  for (const auto& row : rows) {
    FakeConsole console;
    Output output(console);
    PrintProtocol(ExampleTree(), row.part, row.style, output);
    EXPECT_EQ(output.Flush(), WriteOutcome::kWritten);
    EXPECT_EQ(console.out, row.expected) << row.name;
  }
}

TEST(TextStyle, DependsOnTheStreamAndTheEnvironment) {
  FakeConsole console;
  console.unicode = true;
  console.colours = true;
  EXPECT_FALSE(StyleFor(console, ConsoleStream::kOutput).unicode_marks) << "no terminal";
  EXPECT_FALSE(StyleFor(console, ConsoleStream::kOutput).colours) << "no terminal";
  console.BeTerminal();
  EXPECT_TRUE(StyleFor(console, ConsoleStream::kOutput).unicode_marks);
  EXPECT_TRUE(StyleFor(console, ConsoleStream::kOutput).colours);
  console.environment["NO_COLOR"] = "1";
  EXPECT_TRUE(StyleFor(console, ConsoleStream::kOutput).unicode_marks);
  EXPECT_FALSE(StyleFor(console, ConsoleStream::kOutput).colours);
  console.unicode = false;
  EXPECT_FALSE(StyleFor(console, ConsoleStream::kOutput).unicode_marks);
}

TEST(StatusLine, IsRewrittenAndCleared) {
  FakeConsole console;
  console.BeTerminal();
  {
    StatusLine status(console, true);
    status.Show("Größer");
    status.Show("ab");
    EXPECT_EQ(console.err, "\rGrößer\rab    ");
    console.err.clear();
    status.Print("bleibt");
    EXPECT_EQ(console.err, "\r  \rbleibt\n");
    console.err.clear();
    status.Show("cd");
  }
  EXPECT_EQ(console.err, "\rcd\r  \r");
}

TEST(StatusLine, FitsIntoTheTerminal) {
  FakeConsole console;
  console.BeTerminal();
  console.width = 5;
  StatusLine status(console, true);
  status.Show("ÄÖÜäöü");
  EXPECT_EQ(console.err, "\rÄÖÜä");
}

TEST(StatusLine, ShowsNothingWithoutTerminalOrWhenAskedNotTo) {
  FakeConsole console;
  StatusLine without_terminal(console, true);
  without_terminal.Show("x");
  console.BeTerminal();
  StatusLine quiet(console, false);
  quiet.Show("x");
  EXPECT_EQ(console.err, "");
  quiet.Print("Warnung");
  EXPECT_EQ(console.err, "Warnung\n");
}

TEST(Output, StopsAfterAFailure) {
  FakeConsole console;
  Output output(console);
  output.Line("a");
  console.output_outcome = WriteOutcome::kFailed;
  EXPECT_EQ(output.Flush(), WriteOutcome::kFailed);
  console.output_outcome = WriteOutcome::kWritten;
  output.Line("b");
  EXPECT_EQ(output.Flush(), WriteOutcome::kFailed);
  EXPECT_EQ(console.out, "");
}

TEST(ConsoleProgress, NamesTheStepAndGoesAway) {
  FakeConsole console;
  console.BeTerminal();
  StatusLine status(console, true);
  Notices notices;
  ConsoleUserInterface user(status, notices, Answer::kNo);
  auto progress = user.CreateProgressWindow();
  progress->Init("Titel", "List & Label");
  progress->Show();
  progress->Process("Schritt");
  progress->StopProgress();
  EXPECT_EQ(console.err, "\rTitel: Schritt ...");
  console.err.clear();
  progress.reset();
  EXPECT_EQ(console.err, "\r" + std::string(18, ' ') + "\r");
}

struct AnswerCase {
  std::deque<std::string> typed;
  Answer expected;
};

TEST(Question, IsAskedOnATerminal) {
  const AnswerCase rows[] = {
      {{""}, Answer::kYes},      {{"j"}, Answer::kYes},      {{"JA"}, Answer::kYes},
      {{" J "}, Answer::kYes},   {{"n"}, Answer::kNo},       {{"Nein"}, Answer::kNo},
      {{}, Answer::kNo},         {{"x", "j"}, Answer::kYes}, {{"vielleicht"}, Answer::kNo},
      {{"x", "n"}, Answer::kNo},
  };
  for (const auto& row : rows) {
    FakeConsole console;
    console.BeTerminal();
    console.input = row.typed;
    StatusLine status(console, true);
    Notices notices;
    ConsoleUserInterface user(status, notices, Answer::kYes);
    EXPECT_EQ(user.Ask("Zeile 1\r\nTrotzdem?"), row.expected)
        << (row.typed.empty() ? "end of input" : row.typed.front());
    EXPECT_TRUE(console.err.starts_with("Zeile 1\nTrotzdem?\n[J/n] ")) << console.err;
    EXPECT_TRUE(notices.warnings.empty());
  }
}

TEST(Question, TakesTheGivenAnswerWithoutATerminal) {
  for (const ConsoleStream missing : {ConsoleStream::kInput, ConsoleStream::kError}) {
    for (const Answer answer : {Answer::kYes, Answer::kNo}) {
      FakeConsole console;
      console.BeTerminal();
      console.terminals.erase(missing);
      console.input = {answer == Answer::kYes ? "n" : "j"};
      StatusLine status(console, true);
      Notices notices;
      ConsoleUserInterface user(status, notices, answer);
      EXPECT_EQ(user.Ask("Zeile 1\r\nTrotzdem?"), answer);
      const std::string word = answer == Answer::kYes ? "Ja" : "Nein";
      EXPECT_EQ(notices.warnings,
                std::vector<std::string>{"Zeile 1 Trotzdem? Antwort: " + word + "."});
    }
  }
}

}  // namespace
}  // namespace tessary
