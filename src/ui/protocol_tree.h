#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "manager/result_log.h"

namespace tessary {

enum class ProtocolImage { kCorrect, kError, kWarning };

struct ProtocolNode {
  static constexpr std::size_t kTopLevel = static_cast<std::size_t>(-1);

  std::string key;
  std::string text;
  ProtocolImage image;
  std::size_t parent;  // index of the node below which this one hangs, or kTopLevel
  std::vector<std::size_t> children = {};
};

// What the error protocol shows: the reports that succeeded, then those that failed, each with its
// messages below it. Node keys are compared without regard to case.
//
// A text is added only when it is not blank and no node has it as its key. A message is asked
// about by its bare text although its own key is report name, "\", message. Hence a report that
// both succeeded and failed has one node, with the messages below it; a message appears once below
// a report; and a message that equals a report's name is left out.
class ProtocolTree {
 public:
  ProtocolTree(const ResultDictionary& dictErrors, const ResultDictionary& dictCorrect);

  // In the order in which they were added: a parent stands before its children.
  const std::vector<ProtocolNode>& nodes() const { return nodes_; }
  // The indices of the nodes without a parent, in order.
  const std::vector<std::size_t>& top_level() const { return top_level_; }
  // The node's text and below it those of its children, as lines that end in CR LF; every level
  // below the node stands behind one more tab, the node itself behind `depth` of them.
  std::string TextWithChildren(std::size_t node, std::size_t depth = 0) const;

 private:
  bool MayBeAdded(std::string_view trimmed) const;
  // Adds nothing when the key is taken.
  void Add(std::string key, std::string_view text, ProtocolImage image, std::size_t parent);
  void AddReport(std::string_view name, ProtocolImage image);
  void AddMessages(const ResultDictionary::Item& item);

  std::vector<ProtocolNode> nodes_;
  std::vector<std::size_t> top_level_;
  std::unordered_map<std::string, std::size_t> places_;  // by folded key
};

}  // namespace tessary
