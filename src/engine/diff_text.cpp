#include "engine/diff_text.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::array<std::string_view, 9> kLabels = {
    "Key=",      "Typ=",     "PrevName=", "PrevKey=", "PrevTyp=",
    "NextName=", "NextKey=", "NextTyp=",  "PosNr="};

struct Halves {
  std::string_view before;
  std::string_view after;
};

std::optional<Halves> SplitAtFirst(std::string_view text, char separator) {
  const auto place = text.find(separator);
  if (place == std::string_view::npos) return std::nullopt;
  return Halves{text.substr(0, place), text.substr(place + 1)};
}

// Removes the label wherever it occurs. The usual piece starts with its only one and needs no copy.
std::string_view WithoutLabel(std::string_view piece, std::string_view label,
                              std::string& storage) {
  if (piece.starts_with(label)) piece.remove_prefix(label.size());
  if (piece.find(label.back()) == std::string_view::npos) return piece;
  auto place = FindIgnoreCase(piece, label);
  if (place == std::string_view::npos) return piece;
  storage.clear();
  for (; place != std::string_view::npos; place = FindIgnoreCase(piece, label)) {
    storage.append(piece.substr(0, place));
    piece.remove_prefix(place + label.size());
  }
  return storage.append(piece);
}

void SplitDiffFields(std::string_view text, DiffLine& result) {
  if (std::count(text.begin(), text.end(), ':') != 8) return;
  for (std::size_t n = 0; n < kLabels.size(); ++n) {
    const std::string_view piece = text.substr(0, text.find(':'));
    text.remove_prefix(std::min(piece.size() + 1, text.size()));
    result.fields[n] = TrimBlanks(WithoutLabel(piece, kLabels[n], result.storage[n]));
  }
}

void SplitDiffDescription(std::string_view description, DiffLine& result) {
  const auto halves = SplitAtFirst(description, '(');
  if (!halves) return;
  result.status = LetterToStatus(TrimBlanks(halves->before));
  if (result.status == bxsUnknown) return;
  if (const auto fields = SplitAtFirst(TrimBlanks(halves->after), ')')) {
    SplitDiffFields(fields->before, result);
  }
}

void SplitDiffLine(std::string_view line, DiffLine& result) {
  const auto halves = SplitAtFirst(line, ';');
  if (!halves) return;
  const std::string_view description = TrimBlanks(halves->before);
  result.status = LetterToStatus(description);
  if (result.status == bxsUnknown) SplitDiffDescription(description, result);
  if (result.status != bxsUnknown) result.text = TrimBlanks(halves->after);
}

}  // namespace

std::string_view StatusToLetter(BXStatus status) {
  switch (status) {
    case bxsDelete:
      return "D";
    case bxsNew:
      return "N";
    case bxsUpdate:
      return "U";
    default:
      return {};
  }
}

BXStatus LetterToStatus(std::string_view letter) {
  for (const BXStatus status : {bxsUpdate, bxsNew, bxsDelete}) {
    if (letter == StatusToLetter(status)) return status;
  }
  return bxsUnknown;
}

void ElementToDiffText(BXStatus status, const DiffFields& fields, std::string& line) {
  const std::string_view letter = StatusToLetter(status);
  if (letter.empty()) return;
  line.append(letter);
  for (std::size_t n = 0; n < kLabels.size(); ++n) {
    line.append(n == 0 ? "(" : ":").append(kLabels[n]).append(fields[n]);
  }
  line.append(");");
}

void DiffTextToElement(std::string_view line, DiffLine& result) {
  result.text = line;
  if (result.status != bxsUnknown) result.fields.fill({});
  result.status = bxsUnknown;
  if (MayHaveStatus(line)) SplitDiffLine(line, result);
}

}  // namespace tessary
