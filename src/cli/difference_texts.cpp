#include "cli/difference_texts.h"

#include <algorithm>

#include "platform/path.h"
#include "ui/printable.h"

namespace tessary {

bool IsReproduced(const CheckedDifference& checked) {
  return checked.places.empty() && checked.failure.empty();
}

bool AllReproduced(const std::vector<CheckedDifference>& differences) {
  return std::all_of(differences.begin(), differences.end(), IsReproduced);
}

std::string_view DeviationText(Deviation reason) {
  switch (reason) {
    case Deviation::kMoved:
      return "verschoben";
    case Deviation::kLetterCase:
      return "nur Groß- und Kleinschreibung";
    case Deviation::kDuplicate:
      return "mehrfach vorhanden";
    case Deviation::kBelowProperty:
      return "Block unter einer Eigenschaft";
    default:
      return "sonstiges";
  }
}

std::string_view DeviationId(Deviation reason) {
  switch (reason) {
    case Deviation::kMoved:
      return "moved";
    case Deviation::kLetterCase:
      return "letter_case";
    case Deviation::kDuplicate:
      return "duplicate";
    case Deviation::kBelowProperty:
      return "below_property";
    default:
      return "other";
  }
}

std::string PlaceText(const std::vector<std::string>& place) {
  std::string text;
  for (const std::string& element : place) text.append(text.empty() ? "" : " › ").append(element);
  return text;
}

namespace {

std::string NameOf(const CheckedDifference& checked) {
  const std::string name = FileNameOf(checked.new_path);
  return checked.diff_path.empty() ? name : name + " (" + FileNameOf(checked.diff_path) + ")";
}

}  // namespace

std::string CheckHeading(const CheckedDifference& checked) {
  const std::size_t places = checked.places.size();
  if (places == 0 && !checked.failure.empty()) return NameOf(checked) + ": nicht nachgeprüft";
  std::string text = NameOf(checked) + ": " + std::to_string(places);
  return text.append(places == 1 ? " Stelle" : " Stellen");
}

std::string LineText(const Unreproduced& place) {
  if (place.wanted.empty()) return "zu viel: " + place.found;
  return "Zeile " + std::to_string(place.line) + ": " + place.wanted;
}

std::string FoundText(const Unreproduced& place) {
  if (place.wanted.empty() || place.found == place.wanted) return {};
  return place.found.empty() ? "fehlt im Ergebnis" : "im Ergebnis: " + place.found;
}

void PrintDifferences(const std::vector<CheckedDifference>& differences, Output& output) {
  if (AllReproduced(differences)) {
    if (!differences.empty()) output.Line("Nachprüfung: Die neue Version wird ganz nachgebildet.");
    return;
  }
  for (const CheckedDifference& checked : differences) {
    if (!checked.failure.empty()) {
      output.Line("Nicht nachgeprüft: " + Printable(NameOf(checked) + ": " + checked.failure) +
                  ".");
    }
    if (checked.places.empty()) continue;
    output.Line("Nicht nachgebildet: " + Printable(CheckHeading(checked)));
    for (const Unreproduced& place : checked.places) {
      std::string line = "  " + std::string(DeviationText(place.reason)) + ": ";
      if (!place.place.empty()) line.append(PlaceText(place.place)).append(": ");
      line.append(LineText(place));
      const std::string found = FoundText(place);
      if (!found.empty()) line.append(" (").append(found).append(")");
      output.Line(Printable(line));
    }
  }
}

}  // namespace tessary
