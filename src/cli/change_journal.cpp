#include "cli/change_journal.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "platform/path.h"
#include "platform/text.h"

namespace tessary {
namespace {

using Json = nlohmann::ordered_json;

struct ReasonWords {
  std::string_view id;
  std::string_view text;
};

ReasonWords WordsOf(SkipReason reason) {
  switch (reason) {
    case SkipReason::kNotFound:
      return {"not_found", "Das Element ist im Bericht nicht vorhanden."};
    case SkipReason::kSectionNotFound:
      return {"section_not_found", "Die Sektion darum ist im Bericht nicht vorhanden."};
    case SkipReason::kAlreadyThere:
      return {"already_there", "Das Element ist im Bericht schon vorhanden."};
    case SkipReason::kSameValue:
      return {"same_value", "Der Bericht hat diesen Wert schon."};
    case SkipReason::kEmptySection:
      return {"empty_section", "Die Sektion hat im Bericht keinen Inhalt."};
    case SkipReason::kBelowProperty:
      return {"below_property",
              "Änderungen in einem Block unter einer Eigenschaft werden nie angewendet."};
    case SkipReason::kNoStatus:
      return {"no_status",
              "Die Zeile der Differenz-Datei ist weder als neu noch als geändert oder gelöscht "
              "gekennzeichnet."};
    default:
      return {"nothing_inside",
              "Die Differenz-Datei nennt die Sektion, aber keine Änderung darin."};
  }
}

std::string_view ChangeId(BXStatus status) {
  switch (status) {
    case bxsDelete:
      return "deleted";
    case bxsNew:
      return "new";
    case bxsUpdate:
      return "changed";
    default:
      return "unknown";
  }
}

// The members that every line about a step has.
Json StepLine(std::string_view event, const JournalStep& step) {
  return {{"event", event},
          {"report", ToValidUtf8(FileNameOf(step.step.report_path))},
          {"from", step.step.old_version},
          {"to", step.step.new_version}};
}

Json ChangeLine(const JournalStep& step, const Change& change) {
  Json line = StepLine(change.skipped ? "skipped" : "applied", step);
  line["change"] = ChangeId(change.status);
  line["section"] = Json::array();
  for (const std::string& place : change.place) line["section"].push_back(ToValidUtf8(place));
  line["element"] = ToValidUtf8(change.element);
  if (!change.skipped && change.status != bxsNew) line["old"] = ToValidUtf8(change.old_value);
  if (change.status != bxsDelete) line["new"] = ToValidUtf8(change.new_value);
  if (change.skipped) {
    line["reason"] = ReasonId(*change.skipped);
    line["text"] = ReasonText(*change.skipped);
  }
  return line;
}

Json EndOfStep(const JournalStep& step) {
  Json line = StepLine("step", step);
  line["path"] = ToValidUtf8(step.step.report_path);
  line["difference_file"] = ToValidUtf8(step.step.diff_path);
  line["done"] = step.done;
  line["applied"] = step.applied;
  line["skipped"] = step.skipped;
  return line;
}

}  // namespace

std::string_view ReasonText(SkipReason reason) { return WordsOf(reason).text; }

std::string_view ReasonId(SkipReason reason) { return WordsOf(reason).id; }

ConversionObserver* ChangeJournal::Begin(const ConversionStep& step) {
  place_.clear();
  current_ = {.step = step};
  return this;
}

void ChangeJournal::End(bool written) {
  current_.done = written;
  if (!written) current_ = {.step = std::move(current_.step)};
  counts_.applied += current_.applied;
  counts_.skipped += current_.skipped;
  steps_.push_back(std::move(current_));
}

void ChangeJournal::Enter(const ElementTexts& element) { place_.push_back(LabelOf(element)); }

void ChangeJournal::Applied(BXStatus status, const ElementTexts& element,
                            std::string_view old_value, std::string_view new_value) {
  ++current_.applied;
  Keep(status, element, old_value, new_value, std::nullopt);
}

void ChangeJournal::Skipped(BXStatus status, const ElementTexts& element,
                            std::string_view new_value, SkipReason reason) {
  ++current_.skipped;
  Keep(status, element, {}, new_value, reason);
}

void ChangeJournal::Keep(BXStatus status, const ElementTexts& element, std::string_view old_value,
                         std::string_view new_value, std::optional<SkipReason> skipped) {
  if (!keep_details_) return;
  current_.changes.push_back(
      {status, place_, LabelOf(element), std::string(old_value), std::string(new_value), skipped});
}

std::string JournalText(const ChangeJournal& journal, const std::string& command, bool dry_run,
                        bool result) {
  std::string text(kJournalBeginning);
  const Json rest = {
      {"version", TESSARY_VERSION}, {"command", ToValidUtf8(command)}, {"dry_run", dry_run}};
  text.append(rest.dump().substr(1)).append("\n");
  const auto add = [&](const Json& line) { text.append(line.dump()).append("\n"); };
  for (const JournalStep& step : journal.steps()) {
    for (const Change& change : step.changes) add(ChangeLine(step, change));
    add(EndOfStep(step));
  }
  add({{"event", "end"},
       {"result", result},
       {"applied", journal.counts().applied},
       {"skipped", journal.counts().skipped}});
  return text;
}

}  // namespace tessary
