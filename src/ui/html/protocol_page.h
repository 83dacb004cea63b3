#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/protocol_tree.h"
#include "ui/repair_guide.h"

namespace tessary {

enum class PageTone { kNeutral, kCorrect, kWarning, kError };

struct PageFact {
  std::string label;
  std::string value;
};

struct PageCount {
  std::size_t count;
  std::string label;
  PageTone tone;
};

struct PageNames {
  std::string label;
  std::vector<std::string> names;
};

// One of many things found out in detail: what, where, and what there is to say of it.
struct PageDetail {
  PageTone tone;
  std::string text;
  std::string place;
  std::string note;
};

// Details of one report, to be unfolded.
struct PageDetails {
  std::string heading;
  std::vector<PageDetail> details;
};

// What the protocol of one run says as a page. Texts may be any bytes.
struct ProtocolPage {
  std::string title;
  std::string outcome;  // the result in a sentence
  PageTone tone;        // of the outcome
  std::vector<PageFact> facts;
  std::vector<PageCount> counts;
  ProtocolTree tree;
  std::vector<std::string> warnings;
  std::vector<PageNames> files;  // what became of files that are not in the tree
  std::optional<RepairGuide> repair;
  std::vector<PageDetails> changes = {};
  std::vector<PageDetails> unreproduced = {};
};

// The page as one HTML file in UTF-8 that needs no other file, no network and no script.
std::string HtmlPage(const ProtocolPage& page);

// Every page begins with this, and no report or difference file does.
extern const std::string_view kHtmlPageBeginning;

}  // namespace tessary
