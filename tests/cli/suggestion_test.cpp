#include "cli/suggestion.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "cli/command_table.h"

namespace tessary {
namespace {

struct DistanceCase {
  std::string a;
  std::string b;
  std::size_t expected;
};

TEST(EditDistance, CountsSingleSteps) {
  const DistanceCase rows[] = {
      {"", "", 0},         {"", "abc", 3},       {"abc", "", 3},      {"diff", "diff", 0},
      {"dif", "diff", 1},  {"diiff", "diff", 1}, {"doff", "diff", 1}, {"idff", "diff", 1},
      {"DIFF", "diff", 0}, {"show", "info", 4},  {"ca", "abc", 3},    {"conevrt", "convert", 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(EditDistance(row.a, row.b), row.expected) << row.a << " " << row.b;
    EXPECT_EQ(EditDistance(row.b, row.a), row.expected) << row.b << " " << row.a;
  }
}

struct SuggestionCase {
  std::string typed;
  std::string expected;  // empty for none
};

TEST(SuggestWord, FindsTheCommandThatWasMeant) {
  std::vector<std::string_view> names;
  for (const CommandSpec& command : AllCommands()) names.push_back(command.name);
  const SuggestionCase rows[] = {
      {"dif", "diff"},
      {"diff-foldr", "diff-folder"},
      {"difffolder", "diff-folder"},
      {"Convert", "convert"},
      {"conver", "convert"},
      {"convert_folder", "convert-folder"},
      {"shwo", "show"},
      {"inof", "info"},
      {"roundtirp", "roundtrip"},
      {"hlep", "help"},
      {"conv", "convert"},
      {"round", "roundtrip"},
      {"", ""},
      {"c", ""},
      {"xyz", ""},
      {"Rechnung.lst", ""},
      {std::string(100000, 'x'), ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SuggestWord(row.typed, names).value_or(""), row.expected) << row.typed;
  }
}

TEST(SuggestWord, LooksAtOptionsWithoutTheirDashes) {
  const std::array<std::string_view, 3> options = {"--backup", "--json", "--quiet"};
  const SuggestionCase rows[] = {
      {"--bakup", "--backup"}, {"-json", "--json"}, {"--quite", "--quiet"}, {"-q", ""},
      {"--qu", "--quiet"},     {"--", ""},          {"--verbose", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SuggestWord(row.typed, options).value_or(""), row.expected) << row.typed;
  }
}

}  // namespace
}  // namespace tessary
