#include "cli/check_texts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/text.h"

namespace tessary {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text.append(text.empty() ? "" : ", ").append(name);
  return text;
}

const char* IdOf(ChainState state) {
  switch (state) {
    case ChainState::kComplete:
      return "complete";
    case ChainState::kGap:
      return "gap";
    case ChainState::kNoDifferences:
      return "no_difference_files";
    default:
      return "unreadable";
  }
}

struct ReasonTexts {
  const char* id;
  const char* text;
};

ReasonTexts TextsOf(NoReportReason reason) {
  switch (reason) {
    case NoReportReason::kNoExtension:
      return {"no_extension", "der Name hat keine Erweiterung"};
    case NoReportReason::kBackupExtension:
      return {"backup_extension", "die Erweiterung enthält „~“"};
    case NoReportReason::kNoHeader:
      return {"no_header", "in [UserSection] fehlen Version und Referenzbeleg"};
    case NoReportReason::kNoVersion:
      return {"no_version", "in [UserSection] fehlt eine Version ab 1"};
    default:
      return {"no_reference", "in [UserSection] fehlt Referenzbeleg"};
  }
}

Json Texts(const std::vector<std::string>& texts) {
  Json array = Json::array();
  for (const std::string& text : texts) array.push_back(ToValidUtf8(text));
  return array;
}

Json AsJson(const CheckedReport& report) {
  return {{"name", ToValidUtf8(report.name)},  {"reference", ToValidUtf8(report.reference)},
          {"version", report.version},         {"chain", Texts(report.chain)},
          {"reached", report.reached},         {"newest", report.newest},
          {"state", IdOf(report.state)},       {"messages", Texts(report.messages)},
          {"warnings", Texts(report.warnings)}};
}

Json AsJson(const NoReport& file) {
  return {{"name", ToValidUtf8(file.name)}, {"reason", TextsOf(file.reason).id}};
}

Json AsJson(const DuplicateStep& step) {
  return {{"reference", ToValidUtf8(step.reference)},
          {"version", step.version},
          {"difference_files", Texts(step.names)}};
}

Json AsJson(const SameHeader& same) {
  return {{"reference", ToValidUtf8(same.reference)},
          {"version", same.version},
          {"reports", Texts(same.names)}};
}

const char* IdOf(UnmatchedReason reason) {
  switch (reason) {
    case UnmatchedReason::kNoSuchReference:
      return "no_such_reference";
    case UnmatchedReason::kNotOnTheWay:
      return "not_on_the_way";
    case UnmatchedReason::kNoLongerNeeded:
      return "no_longer_needed";
    default:
      return "another_is_applied";
  }
}

Json AsJson(const UnmatchedDifference& difference) {
  return {{"name", ToValidUtf8(difference.name)}, {"reason", IdOf(difference.reason)}};
}

template <class Items>
Json ArrayOf(const Items& items) {
  Json array = Json::array();
  for (const auto& item : items) array.push_back(AsJson(item));
  return array;
}

}  // namespace

std::string CheckText(const CheckedReport& report) {
  std::string text = report.name + ": Version " + std::to_string(report.version) + ", Referenz " +
                     report.reference;
  if (!report.chain.empty()) {
    return text + ", mit " + Joined(report.chain) + " nach Version " +
           std::to_string(report.reached);
  }
  return report.state == ChainState::kComplete ? text + ", bereits auf dem neuesten Stand" : text;
}

std::string CheckText(const NoReport& file) {
  return file.name + " ist kein Bericht: " + NoReportText(file.reason) + ".";
}

std::string NoReportText(NoReportReason reason) { return TextsOf(reason).text; }

std::string CheckText(const DuplicateStep& step) {
  const std::vector<std::string> others(step.names.begin() + 1, step.names.end());
  return "Von Version " + std::to_string(step.version) + " der Referenz " + step.reference +
         " führen mehrere Differenz-Dateien weiter; angewendet wird " + step.names.front() +
         ", nicht " + Joined(others) + ".";
}

std::string CheckText(const SameHeader& same) {
  return "Gleiche Version " + std::to_string(same.version) + " und Referenz " + same.reference +
         ": " + Joined(same.names) + "; beim Vergleich ergäben sie dieselbe Differenz-Datei.";
}

std::string CheckText(const UnmatchedDifference& difference) {
  const std::string& file = difference.name;
  switch (difference.reason) {
    case UnmatchedReason::kNoSuchReference:
      return "Die Differenz-Datei " + file +
             " passt zu nichts: Es gibt keinen Bericht der Referenz " + difference.reference + ".";
    case UnmatchedReason::kNotOnTheWay:
      return "Die Differenz-Datei " + file +
             " passt zu nichts: Kein Bericht kommt auf ihre alte Version.";
    case UnmatchedReason::kNoLongerNeeded:
      return "Die Differenz-Datei " + file +
             " wird nicht mehr gebraucht: Die Berichte der Referenz " + difference.reference +
             " sind schon so weit.";
    default:
      return "Die Differenz-Datei " + file +
             " wird nicht angewendet: Eine andere führt von ihrer alten Version weiter.";
  }
}

std::string OtherFileText(const std::string& name) {
  return "Im Differenz-Ordner ist " + name + " dem Namen nach keine Differenz-Datei.";
}

std::string CheckSummary(const FolderCheck& check) {
  const auto complete = std::count_if(
      check.reports.begin(), check.reports.end(),
      [](const CheckedReport& report) { return report.state == ChainState::kComplete; });
  const std::size_t reports = check.reports.size();
  std::string text = std::to_string(reports) + (reports == 1 ? " Bericht, " : " Berichte, ");
  text.append(std::to_string(complete)).append(" ohne Lücke bis zur neuesten Version");
  if (!check.no_reports.empty()) {
    const std::size_t others = check.no_reports.size();
    text.append(", ").append(std::to_string(others));
    text.append(others == 1 ? " Datei ist kein Bericht" : " Dateien sind keine Berichte");
  }
  return text;
}

std::string CheckAsJson(const FolderCheck& check) {
  const Json object = {{"result", check.Complete()},
                       {"problems", Texts(check.problems)},
                       {"reports", ArrayOf(check.reports)},
                       {"not_reports", ArrayOf(check.no_reports)},
                       {"duplicate_steps", ArrayOf(check.duplicate_steps)},
                       {"same_difference_file", ArrayOf(check.same_headers)},
                       {"unmatched_difference_files", ArrayOf(check.unmatched)},
                       {"other_files", Texts(check.other_files)}};
  return object.dump(kIndent) + "\n";
}

}  // namespace tessary
