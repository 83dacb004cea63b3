#include "model_diff_text.h"

#include <vector>

#include "platform/text.h"

namespace tessary::model {
namespace {

struct Label {
  const char* text;
  Field field;
};

const Label kLabels[] = {
    {"Key=", &Row::key},          {"Typ=", &Row::typ},          {"PrevName=", &Row::prev_name},
    {"PrevKey=", &Row::prev_key}, {"PrevTyp=", &Row::prev_typ}, {"NextName=", &Row::next_name},
    {"NextKey=", &Row::next_key}, {"NextTyp=", &Row::next_typ}, {"PosNr=", &Row::pos_nr},
};

std::string Trimmed(const std::string& text) { return std::string(TrimBlanks(text)); }

std::vector<std::string> SplitEverywhere(std::string_view text, char separator) {
  std::vector<std::string> pieces(1);
  for (char c : text) {
    if (c == separator) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

// One pass from left to right: what a removal joins together is not looked at again.
std::string WithoutLabel(std::string_view piece, std::string_view label) {
  std::string kept;
  for (;;) {
    const auto at = FindIgnoreCase(piece, label);
    kept += piece.substr(0, at);
    if (at == std::string_view::npos) return kept;
    piece.remove_prefix(at + label.size());
  }
}

void SplitDiffFields(const std::string& text, Row& element) {
  const std::vector<std::string> pieces = SplitEverywhere(text, ':');
  if (pieces.size() != 9) return;
  for (std::size_t n = 0; n < 9; ++n) {
    element.*kLabels[n].field = Trimmed(WithoutLabel(pieces[n], kLabels[n].text));
  }
}

void SplitDiffDescription(const std::string& description, Row& element) {
  const Halves opened = SplitOnce(description, '(');
  if (!opened.both) return;
  element.status = LetterToStatus(Trimmed(opened.first));
  const std::string inner = Trimmed(opened.second);
  if (inner.empty() || element.status == kUnknown) return;
  const Halves closed = SplitOnce(inner, ')');
  if (closed.both) SplitDiffFields(closed.first, element);
}

}  // namespace

Halves SplitOnce(std::string_view text, char separator) {
  const auto at = text.find(separator);
  if (at == std::string_view::npos) return {false, std::string(text), ""};
  return {true, std::string(text.substr(0, at)), std::string(text.substr(at + 1))};
}

std::string StatusToLetter(int status) {
  switch (status) {
    case kDelete:
      return "D";
    case kNew:
      return "N";
    case kUpdate:
      return "U";
    default:
      return "";
  }
}

int LetterToStatus(const std::string& letter) {
  if (letter == "U") return kUpdate;
  if (letter == "N") return kNew;
  if (letter == "D") return kDelete;
  return kUnknown;
}

std::string ElementToDiffText(const Row& element) {
  if (element.status == kUnknown) return "";
  std::string text = StatusToLetter(element.status) + "(";
  for (const Label& label : kLabels) {
    if (label.field != &Row::key) text += ":";
    text += label.text + element.*label.field;
  }
  return text + ");";
}

Row DiffTextToElement(const std::string& line) {
  Row element;
  element.name = line;
  const Halves halves = SplitOnce(line, ';');
  if (!halves.both) return element;
  const std::string description = Trimmed(halves.first);
  element.status = LetterToStatus(description);
  if (element.status == kUnknown) SplitDiffDescription(description, element);
  if (element.status != kUnknown) element.name = Trimmed(halves.second);
  return element;
}

}  // namespace tessary::model
