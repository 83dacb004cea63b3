#include "ui/protocol_tree.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace tessary {
namespace {

using Items = std::vector<ResultDictionary::Item>;

ResultDictionary Dictionary(const Items& items) {
  ResultDictionary dictionary;
  for (const auto& item : items) dictionary.Add(item.text, item.messages);
  return dictionary;
}

// One line per node in the order of drawing: "+" correct, "-" error, "!" warning, indented.
void Dump(const ProtocolTree& tree, const std::vector<std::size_t>& nodes, std::size_t depth,
          std::string& text) {
  constexpr std::string_view kSigns = "+-!";
  for (const std::size_t index : nodes) {
    const ProtocolNode& node = tree.nodes()[index];
    text.append(2 * depth, ' ').append(1, kSigns[static_cast<std::size_t>(node.image)]);
    text.append(node.text).append("\n");
    Dump(tree, node.children, depth + 1, text);
  }
}

struct TreeCase {
  const char* name;
  Items errors;
  Items correct;
  std::string expected;
};

void PrintTo(const TreeCase& row, std::ostream* out) { *out << row.name; }

class ProtocolTreeTest : public testing::TestWithParam<TreeCase> {};

TEST_P(ProtocolTreeTest, HoldsTheNodesInOrder) {
  const ProtocolTree tree(Dictionary(GetParam().errors), Dictionary(GetParam().correct));
  std::string text;
  Dump(tree, tree.top_level(), 0, text);
  EXPECT_EQ(text, GetParam().expected);
}

const TreeCase kTreeCases[] = {
    {"Empty", {}, {}, ""},
    {"SuccessesBeforeFailures",
     {{"B fehlgeschlagen.", {"x", "y"}}},
     {{"A konvertiert.", {""}}},
     "+A konvertiert.\n-B fehlgeschlagen.\n  !x\n  !y\n"},
    {"OrderOfTheLog", {{"b", {}}, {"a", {}}}, {{"d", {}}, {"c", {}}}, "+d\n+c\n-b\n-a\n"},
    {"NameWithSurroundingBlanks", {{"  B  ", {" x "}}}, {{" A ", {}}}, "+A\n-B\n  !x\n"},
    {"BlankNameLosesItsMessages", {{"   ", {"x"}}, {"B", {"y"}}}, {}, "-B\n  !y\n"},
    {"NoMessages", {{"B", {}}}, {}, "-B\n"},
    {"EmptyMessage", {{"B", {""}}}, {}, "-B\n"},
    {"BlankMessage", {{"B", {"  "}}}, {}, "-B\n"},
    {"SameMessageTwice", {{"B", {"x", "y", "x"}}}, {}, "-B\n  !x\n  !y\n"},
    {"SameMessageInOtherCase", {{"B", {"Über", "ÜBER"}}}, {}, "-B\n  !Über\n"},
    {"SameMessageBelowTwoReports", {{"A", {"x"}}, {"B", {"x"}}}, {}, "-A\n  !x\n-B\n  !x\n"},
    {"InBothKeepsTheSuccess", {{"A", {"x"}}}, {{"A", {}}}, "+A\n  !x\n"},
    {"InBothInOtherCase", {{"bericht", {"x"}}}, {{"BERICHT", {}}}, "+BERICHT\n  !x\n"},
    {"MessageEqualsAReport", {{"A", {}}, {"B", {"a", "x"}}}, {}, "-A\n-B\n  !x\n"},
    {"MessageEqualsALaterReport", {{"A", {"B"}}, {"B", {}}}, {}, "-A\n  !B\n-B\n"},
    {"ReportNamedLikeAMessageKey", {{"A", {"x"}}, {"A\\x", {"y"}}}, {}, "-A\n  !x\n    !y\n"},
};

INSTANTIATE_TEST_SUITE_P(Rows, ProtocolTreeTest, testing::ValuesIn(kTreeCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ProtocolTree, KeysOfMessagesNameTheirReport) {
  const ProtocolTree tree(Dictionary({{"B", {"x"}}}), {});
  ASSERT_EQ(tree.nodes().size(), 2u);
  EXPECT_EQ(tree.nodes()[0].key, "B");
  EXPECT_EQ(tree.nodes()[0].parent, ProtocolNode::kTopLevel);
  EXPECT_EQ(tree.nodes()[1].key, "B\\x");
  EXPECT_EQ(tree.nodes()[1].parent, 0u);
}

TEST(ProtocolTree, TextOfANodeHoldsWhatHangsBelowIt) {
  const ProtocolTree tree(Dictionary({{"B", {"x", "ü"}}, {"B\\x", {"y"}}}), {});
  ASSERT_EQ(tree.nodes().size(), 4u);
  EXPECT_EQ(tree.TextWithChildren(0), "B\r\n\tx\r\n\t\ty\r\n\tü\r\n");
  EXPECT_EQ(tree.TextWithChildren(2), "ü\r\n");
}

}  // namespace
}  // namespace tessary
