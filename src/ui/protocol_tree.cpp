#include "ui/protocol_tree.h"

#include <utility>

#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::string_view kKeySeparator = "\\";

}  // namespace

ProtocolTree::ProtocolTree(const ResultDictionary& dictErrors,
                           const ResultDictionary& dictCorrect) {
  for (const auto& item : dictCorrect.items()) AddReport(item.text, ProtocolImage::kCorrect);
  for (const auto& item : dictErrors.items()) {
    AddReport(item.text, ProtocolImage::kError);
    AddMessages(item);
  }
}

std::string ProtocolTree::TextWithChildren(std::size_t node, std::size_t depth) const {
  std::string text = std::string(depth, '\t') + nodes_[node].text + "\r\n";
  for (const std::size_t child : nodes_[node].children) {
    text.append(TextWithChildren(child, depth + 1));
  }
  return text;
}

bool ProtocolTree::MayBeAdded(std::string_view trimmed) const {
  return !trimmed.empty() && !places_.contains(FoldCase(trimmed));
}

void ProtocolTree::Add(std::string key, std::string_view text, ProtocolImage image,
                       std::size_t parent) {
  if (!places_.emplace(FoldCase(key), nodes_.size()).second) return;
  auto& siblings = parent == ProtocolNode::kTopLevel ? top_level_ : nodes_[parent].children;
  siblings.push_back(nodes_.size());
  nodes_.push_back({std::move(key), std::string(text), image, parent});
}

void ProtocolTree::AddReport(std::string_view name, ProtocolImage image) {
  const std::string_view trimmed = TrimBlanks(name);
  if (MayBeAdded(trimmed)) Add(std::string(trimmed), trimmed, image, ProtocolNode::kTopLevel);
}

void ProtocolTree::AddMessages(const ResultDictionary::Item& item) {
  const std::string_view report = TrimBlanks(item.text);
  const auto parent = places_.find(FoldCase(report));
  if (parent == places_.end()) return;
  const std::size_t parent_node = parent->second;
  for (const std::string& text : item.messages) {
    const std::string_view message = TrimBlanks(text);
    if (!MayBeAdded(message)) continue;
    Add(std::string(report).append(kKeySeparator).append(message), message, ProtocolImage::kWarning,
        parent_node);
  }
}

}  // namespace tessary
