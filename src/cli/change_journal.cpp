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

// Collects what belongs to one step, and adds it to the journal at the step's end.
class ChangeJournal::Step : public StepObserver {
 public:
  Step(ChangeJournal& journal, const ConversionStep& step)
      : journal_(journal), collected_{.step = step} {}

  void Enter(const ElementTexts& element) override { place_.push_back(LabelOf(element)); }
  void Leave() override { place_.pop_back(); }

  void Applied(BXStatus status, const ElementTexts& element, std::string_view old_value,
               std::string_view new_value) override {
    ++collected_.applied;
    Keep(status, element, old_value, new_value, std::nullopt);
  }

  void Skipped(BXStatus status, const ElementTexts& element, std::string_view new_value,
               SkipReason reason) override {
    ++collected_.skipped;
    Keep(status, element, {}, new_value, reason);
  }

  void End(bool done) override {
    if (!done) collected_ = {.step = std::move(collected_.step)};
    collected_.done = done;
    journal_.Add(std::move(collected_));
  }

 private:
  void Keep(BXStatus status, const ElementTexts& element, std::string_view old_value,
            std::string_view new_value, std::optional<SkipReason> skipped) {
    if (!journal_.keep_details_) return;
    collected_.changes.push_back({status, place_, LabelOf(element), std::string(old_value),
                                  std::string(new_value), skipped});
  }

  ChangeJournal& journal_;
  JournalStep collected_;
  std::vector<std::string> place_;
};

std::unique_ptr<StepObserver> ChangeJournal::Begin(const ConversionStep& step) {
  return std::make_unique<Step>(*this, step);
}

void ChangeJournal::Add(JournalStep step) {
  counts_.applied += step.applied;
  counts_.skipped += step.skipped;
  steps_.push_back(std::move(step));
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
