#include "cli/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/help_text.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

struct ErrorCase {
  Words arguments;
  std::string sentence;
  std::string help;
};

const ErrorCase kErrorCases[] = {
    {{}, "Es fehlt ein Befehl.", "tessary --help"},
    {{"--", "diff"}, "Es fehlt ein Befehl.", "tessary --help"},
    {{"dif", "a"}, "Unbekannter Befehl „dif“. Meinten Sie „diff“?", "tessary --help"},
    {{"xyz"}, "Unbekannter Befehl „xyz“.", "tessary --help"},
    {{""}, "Unbekannter Befehl „“.", "tessary --help"},
    {{"xyz", "diff", "a"}, "Unbekannter Befehl „xyz“.", "tessary --help"},
    {{"help", "shwo"}, "Unbekannter Befehl „shwo“. Meinten Sie „show“?", "tessary --help"},
    {{"help", "show", "x"},
     "Für den Befehl „help“ ist die Angabe „x“ zu viel.",
     "tessary help help"},
    {{"--hlep"}, "Unbekannte Option „--hlep“. Meinten Sie „--help“?", "tessary --help"},
    {{"--versoin"}, "Unbekannte Option „--versoin“. Meinten Sie „--version“?", "tessary --help"},
    {{"-x"}, "Unbekannte Option „-x“.", "tessary --help"},
    {{"--json", "diff", "a", "b", "c"},
     "Die Option „--json“ gehört hinter den Befehl.",
     "tessary --help"},
    {{"--jsn", "diff", "a", "b", "c"},
     "Unbekannte Option „--jsn“. Meinten Sie „--json“?",
     "tessary --help"},
    {{"diff"},
     "Dem Befehl „diff“ fehlt die Angabe OLD (Bericht der alten Version).",
     "tessary help diff"},
    {{"diff", "a", "b"},
     "Dem Befehl „diff“ fehlt die Angabe DIFFDIR (vorhandener Ordner für die Differenz-Datei).",
     "tessary help diff"},
    {{"diff", "a", "b", "c", "d"},
     "Für den Befehl „diff“ ist die Angabe „d“ zu viel.",
     "tessary help diff"},
    {{"diff", "a", "b", "c", "--", "--json"},
     "Für den Befehl „diff“ ist die Angabe „--json“ zu viel.",
     "tessary help diff"},
    {{"info"},
     "Dem Befehl „info“ fehlt die Angabe FILE (Datei, über die Auskunft gegeben wird).",
     "tessary help info"},
    {{"info", "--json", "x"}, "Der Befehl „info“ hat keine Option „--json“.", "tessary help info"},
    {{"convert", "--bakup=x", "a", "b"},
     "Unbekannte Option „--bakup“. Meinten Sie „--backup“?",
     "tessary help convert"},
    {{"convert", "a", "b", "--backup"},
     "Der Option „--backup“ fehlt der Wert DIR.",
     "tessary help convert"},
    {{"convert", "a", "b", "--backup", "--quiet"},
     "Der Option „--backup“ fehlt der Wert DIR.",
     "tessary help convert"},
    {{"convert", "a", "b", "--backup", "--", "c"},
     "Der Option „--backup“ fehlt der Wert DIR.",
     "tessary help convert"},
    {{"convert", "a", "b", "--backup", "x", "--backup=y"},
     "Die Option „--backup“ darf nur einmal angegeben werden.",
     "tessary help convert"},
    {{"convert-folder", "a", "b", "--omit"},
     "Der Option „--omit“ fehlt der Wert NAME.",
     "tessary help convert-folder"},
    {{"convert-folder", "a", "b", "--omit=x", "--omit=", "--omit=y"},
     "Der Option „--omit“ fehlt der Wert NAME.",
     "tessary help convert-folder"},
    {{"explain", ""},
     "Für den Befehl „explain“ ist die Angabe MESSAGE leer.",
     "tessary help explain"},
    {{"restore", "a", "b", "c", ""},
     "Für den Befehl „restore“ ist die Angabe NAME leer.",
     "tessary help restore"},
    {{"show", "--", ""}, "Für den Befehl „show“ ist die Angabe FILE leer.", "tessary help show"},
    {{"diff", "a", "b", "c", "--json=no"},
     "Die Option „--json“ hat keinen Wert.",
     "tessary help diff"},
    {{"diff", "a", "b", "c", "--json="},
     "Die Option „--json“ hat keinen Wert.",
     "tessary help diff"},
    {{"diff", "--jsn", "--json=no", "--oldest"},
     "Unbekannte Option „--jsn“. Meinten Sie „--json“?",
     "tessary help diff"},
    {{"diff", "a", "--version"}, "Unbekannte Option „--version“.", "tessary help diff"},
    {{"convert", "a", "b", "--on-backup-failure=contine"},
     "Der Wert „contine“ der Option „--on-backup-failure“ ist nicht erlaubt, nur „abort“ oder "
     "„continue“. Meinten Sie „continue“?",
     "tessary help convert"},
    {{"convert", "a", "b", "--on-backup-failure="},
     "Der Wert „“ der Option „--on-backup-failure“ ist nicht erlaubt, nur „abort“ oder "
     "„continue“.",
     "tessary help convert"},
};

TEST(CommandLine, ExplainsWrongUsageInGerman) {
  for (const auto& row : kErrorCases) {
    const ParsedCommandLine parsed = ParseCommandLine(row.arguments);
    const UsageError* error = std::get_if<UsageError>(&parsed);
    ASSERT_NE(error, nullptr) << row.sentence;
    EXPECT_EQ(error->sentence, row.sentence);
    EXPECT_EQ(error->help_command, row.help) << row.sentence;
  }
}

TEST(CommandLine, TakesNoEmptyOperand) {
  for (const CommandSpec& command : AllCommands()) {
    if (command.id == CommandId::kHelp) continue;  // which knows no such command
    for (std::size_t operand = 0; operand < command.operands.size(); ++operand) {
      Words arguments(command.operands.size() + 1, "x");
      arguments[0] = command.name;
      arguments[operand + 1].clear();
      const ParsedCommandLine parsed = ParseCommandLine(arguments);
      const UsageError* error = std::get_if<UsageError>(&parsed);
      ASSERT_NE(error, nullptr) << command.name << " " << operand;
      EXPECT_EQ(error->sentence, "Für den Befehl „" + std::string(command.name) +
                                     "“ ist die Angabe " +
                                     std::string(command.operands[operand].name) + " leer.");
    }
  }
}

struct LineCase {
  const char* name;
  Words arguments;
  CommandId command;
  Words operands;
};

const LineCase kLineCases[] = {
    {"diff", {"diff", "a", "b", "c"}, CommandId::kDiff, {"a", "b", "c"}},
    {"options anywhere",
     {"diff", "--json", "a", "b", "--quiet", "c"},
     CommandId::kDiff,
     {"a", "b", "c"}},
    {"blanks", {"diff", " ", "a b", " c "}, CommandId::kDiff, {" ", "a b", " c "}},
    {"named like commands",
     {"diff", "show", "diff", "help"},
     CommandId::kDiff,
     {"show", "diff", "help"}},
    {"brackets", {"info", "[a,b]", "{}", "[x"}, CommandId::kInfo, {"[a,b]", "{}", "[x"}},
    {"a dash alone", {"show", "-"}, CommandId::kShow, {"-"}},
    {"behind two dashes",
     {"info", "--", "--json", "-x", "--"},
     CommandId::kInfo,
     {"--json", "-x", "--"}},
    {"windows style", {"info", "/a", "/b:c"}, CommandId::kInfo, {"/a", "/b:c"}},
    {"not UTF-8", {"show", "\xFF"}, CommandId::kShow, {"\xFF"}},
    {"a negative number", {"explain", "-2147221504"}, CommandId::kExplain, {"-2147221504"}},
    {"percent and equals", {"show", "%a=b"}, CommandId::kShow, {"%a=b"}},
};

TEST(CommandLine, TakesOperandsAsTheyAre) {
  for (const auto& row : kLineCases) {
    const ParsedCommandLine parsed = ParseCommandLine(row.arguments);
    const CommandLine* line = std::get_if<CommandLine>(&parsed);
    ASSERT_NE(line, nullptr) << row.name;
    EXPECT_EQ(line->command, row.command) << row.name;
    EXPECT_EQ(line->operands, row.operands) << row.name;
  }
}

CommandLine Line(const Words& arguments) {
  return std::get<CommandLine>(ParseCommandLine(arguments));
}

TEST(CommandLine, HasDefaults) {
  const CommandLine line = Line({"convert-folder", "a", "b"});
  EXPECT_EQ(line.backup, "");
  EXPECT_TRUE(line.omit.empty());
  EXPECT_EQ(line.answer_on_backup_failure, Answer::kNo);
  EXPECT_FALSE(line.json);
  EXPECT_FALSE(line.quiet);
}

TEST(CommandLine, UnderstandsOptions) {
  const CommandLine line =
      Line({"convert-folder", "--omit", "x.lst", "a", "--backup=c d", "b", "--omit=[y,z]", "--json",
            "--on-backup-failure", "continue", "--quiet", "--omit", "{}"});
  EXPECT_EQ(line.operands, (Words{"a", "b"}));
  EXPECT_EQ(line.backup, "c d");
  EXPECT_EQ(line.omit, (Words{"x.lst", "[y,z]", "{}"}));
  EXPECT_EQ(line.answer_on_backup_failure, Answer::kYes);
  EXPECT_TRUE(line.json);
  EXPECT_TRUE(line.quiet);
  EXPECT_EQ(Line({"convert", "a", "b", "--on-backup-failure=abort"}).answer_on_backup_failure,
            Answer::kNo);
}

TEST(CommandLine, TakesAnEmptyValue) {
  EXPECT_EQ(Line({"convert", "--backup=", "a", "b"}).operands, (Words{"a", "b"}));
  EXPECT_EQ(Line({"convert", "--backup", "", "a", "b"}).operands, (Words{"a", "b"}));
  EXPECT_EQ(Line({"convert", "a", "b", "--backup="}).backup, "");
}

TEST(CommandLine, TakesAnyValueBehindEquals) {
  for (const char* const value : {"--quiet", "-5", "a=b", "="}) {
    EXPECT_EQ(Line({"convert", "a", "b", std::string("--backup=") + value}).backup, value);
  }
  EXPECT_EQ(Line({"convert", "a", "b", "--backup", "-5"}).backup, "-5");
  EXPECT_EQ(Line({"convert", "a", "b", "--backup", "-strange"}).backup, "-strange");
}

TEST(CommandLine, AsksForHelpOrVersion) {
  const auto help = [](const Words& arguments) {
    return std::get<HelpRequest>(ParseCommandLine(arguments)).command;
  };
  EXPECT_EQ(help({"--help"}), std::nullopt);
  EXPECT_EQ(help({"-h"}), std::nullopt);
  EXPECT_EQ(help({"help"}), std::nullopt);
  EXPECT_EQ(help({"help", "convert"}), CommandId::kConvert);
  EXPECT_EQ(help({"help", "help"}), CommandId::kHelp);
  EXPECT_EQ(help({"diff", "--help"}), CommandId::kDiff);
  EXPECT_EQ(help({"diff", "a", "-h"}), CommandId::kDiff);
  EXPECT_EQ(help({"diff", "--jsn", "--backup", "--help"}), CommandId::kDiff) << "whatever is wrong";
  EXPECT_EQ(help({"-h", "diff"}), CommandId::kDiff);
  EXPECT_EQ(help({"xyz", "--help"}), std::nullopt);
  EXPECT_EQ(Line({"show", "--", "--help"}).operands, Words{"--help"});
  EXPECT_TRUE(std::holds_alternative<VersionRequest>(ParseCommandLine({"--version"})));
}

TEST(HelpText, NamesEveryCommandOperandAndOption) {
  const std::string general = GeneralHelp();
  for (const CommandSpec& command : AllCommands()) {
    EXPECT_NE(general.find("  " + std::string(command.name) + " "), std::string::npos)
        << command.name;
    const std::string help = CommandHelp(command.id);
    EXPECT_NE(help.find("  tessary " + std::string(command.name)), std::string::npos);
    EXPECT_NE(help.find("Beispiele:\n  tessary "), std::string::npos) << command.name;
    for (const OperandSpec& operand : command.operands) {
      EXPECT_NE(help.find("\n  " + std::string(operand.name) + " "), std::string::npos)
          << operand.name;
    }
    for (const OptionSpec& option : command.options) {
      EXPECT_NE(help.find("\n  " + std::string(option.name) + " "), std::string::npos)
          << option.name;
    }
  }
}

TEST(HelpText, ExamplesAreRightUsage) {
  for (const CommandSpec& command : AllCommands()) {
    std::string examples(command.examples);
    for (std::size_t begin = 0; begin < examples.size();) {
      const std::size_t end = std::min(examples.find('\n', begin), examples.size());
      Words words;
      std::string word;
      for (const char c : examples.substr(begin, end - begin) + " ") {
        if (c != ' ') {
          word.push_back(c);
          continue;
        }
        if (word == ">") break;
        words.push_back(word);
        word.clear();
      }
      ASSERT_EQ(words.front(), "tessary");
      words.erase(words.begin());
      EXPECT_FALSE(std::holds_alternative<UsageError>(ParseCommandLine(words))) << examples;
      begin = end + 1;
    }
  }
}

}  // namespace
}  // namespace tessary
