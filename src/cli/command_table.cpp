#include "cli/command_table.h"

#include <algorithm>
#include <array>

namespace tessary {
namespace {

constexpr OptionSpec kBackup = {OptionId::kBackup, "--backup", "DIR", false,
                                "Ordner für die Sicherungen; ohne Angabe der Name "
                                "des\nBerichtsordners mit angehängtem \"Bak\""};
constexpr OptionSpec kOmit = {
    OptionId::kOmit, "--omit", "NAME", true,
    "Bericht dieses Dateinamens auslassen (mehrfach möglich);\nGroß- und Kleinschreibung zählt "
    "nur, wenn es eine Datei\ngenau dieses Namens gibt"};
constexpr OptionSpec kOnBackupFailure = {
    OptionId::kOnBackupFailure, "--on-backup-failure", "ANTWORT", false,
    "Antwort, wenn eine Sicherung misslingt und niemand am\nTerminal gefragt werden kann: abort "
    "(nicht konvertieren,\nVorgabe) oder continue (ohne Sicherung konvertieren)"};
constexpr OptionSpec kDryRun = {OptionId::kDryRun, "--dry-run", "", false,
                                "nur zeigen, was geschähe: alles im Arbeitsspeicher,\n"
                                "weder Berichte noch Sicherungen werden geschrieben"};
constexpr OptionSpec kJournal = {OptionId::kJournal, "--journal", "FILE", false,
                                 "jede angewendete und jede wirkungslose Änderung als\n"
                                 "JSON-Zeile in diese Datei schreiben; überschrieben wird\n"
                                 "nur eine frühere solche Datei"};
constexpr OptionSpec kVerify = {
    OptionId::kVerify, "--verify", "", false,
    "die Differenz im Arbeitsspeicher auf die alte Version\nanwenden und zeigen, was von der "
    "neuen nicht entsteht"};
constexpr OptionSpec kStrict = {OptionId::kStrict, "--strict", "", false,
                                "mit --verify: mit 1 enden, wenn etwas nicht entsteht"};
constexpr OptionSpec kOldest = {OptionId::kOldest, "--oldest", "", false,
                                "die älteste Sicherung, also das Original, statt des\n"
                                "Standes vor dem letzten Lauf"};
constexpr OptionSpec kHtml = {OptionId::kHtml, "--html", "FILE", false,
                              "Protokoll auch als HTML-Seite in diese Datei schreiben;\n"
                              "überschrieben wird nur eine frühere solche Seite"};
constexpr OptionSpec kJson = {OptionId::kJson, "--json", "", false,
                              "Ergebnis als ein JSON-Objekt ausgeben"};
constexpr OptionSpec kQuiet = {OptionId::kQuiet, "--quiet", "", false,
                               "nur Fehler und Warnungen ausgeben, keinen Fortschritt"};

constexpr std::array kDiffOptions = {kVerify, kStrict, kHtml, kJson, kQuiet};
constexpr std::array kConvertOptions = {kBackup, kOnBackupFailure, kDryRun, kJournal, kHtml, kJson,
                                        kQuiet};
constexpr std::array kConvertFolderOptions = {
    kBackup, kOmit, kOnBackupFailure, kDryRun, kJournal, kHtml, kJson, kQuiet};
constexpr std::array kRestoreOptions = {kOldest, kDryRun, kQuiet};
constexpr std::array kCheckOptions = {kOmit, kJson, kQuiet};
constexpr std::array kFileOptions = {kQuiet};

constexpr std::array<OperandSpec, 3> kDiffOperands = {{
    {"OLD", "Bericht der alten Version"},
    {"NEW", "Bericht der neuen Version"},
    {"DIFFDIR", "vorhandener Ordner für die Differenz-Datei"},
}};
constexpr std::array<OperandSpec, 3> kDiffFolderOperands = {{
    {"OLDDIR", "Ordner mit den Berichten der alten Version"},
    {"NEWDIR", "Ordner mit den Berichten der neuen Version"},
    {"DIFFDIR", "vorhandener Ordner für die Differenz-Dateien"},
}};
constexpr std::array<OperandSpec, 2> kConvertOperands = {{
    {"REPORT", "Bericht, der konvertiert wird; er wird überschrieben"},
    {"DIFFFILE", "Differenz-Datei, zum Beispiel 3_4Rechnung"},
}};
constexpr std::array<OperandSpec, 2> kConvertFolderOperands = {{
    {"DIFFDIR", "Ordner mit den Differenz-Dateien"},
    {"REPORTDIR", "Ordner mit den Berichten; sie werden überschrieben"},
}};
constexpr std::array<OperandSpec, 2> kCheckOperands = {{
    {"DIFFDIR", "Ordner mit den Differenz-Dateien"},
    {"REPORTDIR", "Ordner mit den Berichten; nichts wird geändert"},
}};
constexpr std::array<OperandSpec, 3> kRestoreOperands = {{
    {"BACKUPDIR", "Ordner mit den Sicherungen"},
    {"REPORTDIR", "Ordner mit den Berichten"},
    {"NAME",
     "Bericht, der zurückgeholt wird, oder eine ältere Sicherung wie\n"
     "~Rechnung.lst.~1; ohne Angabe alle Berichte"},
}};
constexpr std::array<OperandSpec, 1> kExplainOperands = {
    {{"MESSAGE",
      "Meldung, auch nur ein Teil von ihr, oder Fehlernummer; ohne Angabe\n"
      "alle Meldungen als Seite"}}};
constexpr std::array<OperandSpec, 1> kInfoOperands = {
    {{"FILE", "Datei, über die Auskunft gegeben wird"}}};
constexpr std::array<OperandSpec, 1> kShowOperands = {{{"FILE", "Bericht oder Differenz-Datei"}}};
constexpr std::array<OperandSpec, 2> kRoundtripOperands = {{
    {"IN", "Datei, die gelesen wird"},
    {"OUT", "Datei, die geschrieben wird; eine vorhandene wird ersetzt"},
}};
constexpr std::array<OperandSpec, 1> kHelpOperands = {{{"COMMAND", "Befehl, der erklärt wird"}}};

constexpr std::array<CommandSpec, 11> kCommands = {{
    {CommandId::kDiff, "diff", "zwei Versionen eines Berichts vergleichen", kDiffOperands, false,
     false, kDiffOptions,
     "Schreibt die Unterschiede in eine Differenz-Datei, deren Name aus beiden Versionen\n"
     "und der Referenz besteht. Ohne Unterschied entsteht keine Datei.",
     "tessary diff version3/Rechnung.lst version4/Rechnung.lst differenz\n"
     "tessary diff version3/Rechnung.lst version4/Rechnung.lst differenz --verify"},
    {CommandId::kDiffFolder, "diff-folder", "alle Berichte zweier Ordner vergleichen",
     kDiffFolderOperands, false, false, kDiffOptions,
     "Vergleicht jeden Bericht des alten Ordners mit dem gleichnamigen des neuen.\n"
     "Dateien, die keine Berichte sind, werden übergangen.",
     "tessary diff-folder version3 version4 differenz\n"
     "tessary diff-folder --json version3 version4 differenz > ergebnis.json"},
    {CommandId::kConvert, "convert", "einen Bericht konvertieren", kConvertOperands, false, false,
     kConvertOptions,
     "Sichert den Bericht und wendet die Differenz-Datei auf ihn an. Ob sie zu Version und\n"
     "Referenz des Berichts passt, wird nicht geprüft.",
     "tessary convert Berichte/Rechnung.lst differenz/3_4Rechnung\n"
     "tessary convert Berichte/Rechnung.lst differenz/3_4Rechnung --backup Sicherung"},
    {CommandId::kConvertFolder, "convert-folder", "alle Berichte eines Ordners konvertieren",
     kConvertFolderOperands, false, false, kConvertFolderOptions,
     "Sichert jeden Bericht und wendet die Differenz-Dateien seiner Referenz der Reihe nach\n"
     "an, ausgehend von seiner Version.",
     "tessary convert-folder differenz Berichte --dry-run\n"
     "tessary convert-folder differenz Berichte\n"
     "tessary convert-folder differenz Berichte --omit Angebot.lst --omit Mahnung.lst\n"
     "tessary convert-folder differenz Berichte --backup Sicherung --on-backup-failure=continue\n"
     "tessary convert-folder differenz Berichte --html protokoll.html"},
    {CommandId::kCheck, "check", "prüfen, wie weit die Differenz-Dateien jeden Bericht bringen",
     kCheckOperands, false, false, kCheckOptions,
     "Nennt zu jedem Bericht die Differenz-Dateien, die angewendet würden, und was fehlt,\n"
     "doppelt ist oder zu nichts passt. Endet mit 0, wenn jeder Bericht ohne Lücke auf die\n"
     "neueste Version seiner Referenz kommt, sonst mit 1.",
     "tessary check differenz Berichte\n"
     "tessary check differenz Berichte --omit Eigener.lst --json"},
    {CommandId::kRestore, "restore", "Berichte aus den Sicherungen zurückholen", kRestoreOperands,
     true, true, kRestoreOptions,
     "Holt den Stand vor dem letzten Lauf zurück. Was der Bericht jetzt enthält, bleibt bei\n"
     "den Sicherungen erhalten, wenn dort noch keine Kopie davon liegt.",
     "tessary restore BerichteBak Berichte --dry-run\n"
     "tessary restore BerichteBak Berichte Rechnung.lst\n"
     "tessary restore BerichteBak Berichte --oldest"},
    {CommandId::kExplain, "explain", "Ursache und Abhilfe zu einer Meldung anzeigen",
     kExplainOperands, false, true, kFileOptions, "",
     "tessary explain verweigert\n"
     "tessary explain 70\n"
     "tessary explain 0x80041389"},
    {CommandId::kInfo, "info", "Version und Referenz von Berichten anzeigen", kInfoOperands, true,
     false, kFileOptions, "Endet mit 1, wenn eine der Dateien kein Bericht ist.",
     "tessary info Berichte/*.lst"},
    {CommandId::kShow, "show", "die Elemente eines Berichts als Baum anzeigen", kShowOperands,
     false, false, kFileOptions,
     "Zeigt bei Differenz-Dateien auch, was neu, geändert oder gelöscht ist, und die Nachbarn.",
     "tessary show Berichte/Rechnung.lst\n"
     "tessary show differenz/3_4Rechnung"},
    {CommandId::kRoundtrip, "roundtrip", "einen Bericht lesen und wieder schreiben",
     kRoundtripOperands, false, false, kFileOptions,
     "Zeigt, was schon das Lesen und Schreiben an einem Bericht ändert.",
     "tessary roundtrip Berichte/Rechnung.lst /tmp/Rechnung.lst"},
    {CommandId::kHelp,
     "help",
     "einen Befehl erklären",
     kHelpOperands,
     false,
     true,
     {},
     "",
     "tessary help convert-folder"},
}};

}  // namespace

std::span<const CommandSpec> AllCommands() { return kCommands; }

const CommandSpec& CommandOf(CommandId id) { return kCommands[static_cast<std::size_t>(id)]; }

const CommandSpec* FindCommand(std::string_view name) {
  const auto found = std::find_if(kCommands.begin(), kCommands.end(),
                                  [&](const CommandSpec& command) { return command.name == name; });
  return found == kCommands.end() ? nullptr : &*found;
}

const OptionSpec* FindOption(const CommandSpec& command, std::string_view name) {
  const auto found = std::find_if(command.options.begin(), command.options.end(),
                                  [&](const OptionSpec& option) { return option.name == name; });
  return found == command.options.end() ? nullptr : &*found;
}

}  // namespace tessary
