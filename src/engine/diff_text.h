#pragma once

#include <array>
#include <string>
#include <string_view>

#include "engine/element.h"
#include "platform/text.h"

// The description that a difference file puts in front of a line: status letter, nine labelled
// fields and a semicolon, "N(Key=:Typ=:PrevName=Width:...:PosNr=);".

namespace tessary {

// The nine texts of a description in their order: the columns bxeaKey to bxeaPosNr.
using DiffFields = std::array<std::string_view, 9>;

// "D", "N" or "U"; empty for any other status.
std::string_view StatusToLetter(BXStatus status);
// The status of a letter, case-sensitive; bxsUnknown for any other text.
BXStatus LetterToStatus(std::string_view letter);

// Appends the description of an element to `line`; nothing for bxsUnknown. There is no escaping.
void ElementToDiffText(BXStatus status, const DiffFields& fields, std::string& line);

// A line taken apart. The texts are views into the line or into this object, which therefore
// must stay where it is; they are valid until the next call with it.
struct DiffLine {
  std::string_view text;
  BXStatus status = bxsUnknown;
  DiffFields fields;
  std::array<std::string, 9> storage;  // for fields that had to be changed
};

// False for a line that cannot have a status, which its beginning shows of most. Tabs do not count.
inline bool MayHaveStatus(std::string_view line) {
  line = TrimLeadingBlanks(line);
  if (line.empty() || (line[0] != 'D' && line[0] != 'N' && line[0] != 'U')) return false;
  const auto next = line.find_first_not_of(" \t", 1);
  return next != std::string_view::npos && (line[next] == ';' || line[next] == '(');
}

// Takes a line apart. A line without a description, or with one of an unknown letter, is its own
// text with status bxsUnknown; a description without exactly nine fields gives empty fields.
void DiffTextToElement(std::string_view line, DiffLine& result);

}  // namespace tessary
