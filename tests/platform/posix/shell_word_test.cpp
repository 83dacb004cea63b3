#include "platform/shell_word.h"

#include <gtest/gtest.h>

#include <string>

namespace tessary {
namespace {

TEST(ShellWord, QuotesWhatTheShellWouldChange) {
  const struct {
    std::string argument;
    std::string word;
  } rows[] = {
      {"", "''"},
      {"/srv/Berichte/a_1-2.lst", "/srv/Berichte/a_1-2.lst"},
      {"Österreich", "Österreich"},
      {"a b", "'a b'"},
      {"$HOME", "'$HOME'"},
      {"~x", "'~x'"},
      {"it's", "'it'\\''s'"},
      {"a\nb", "'a\nb'"},
      {"[a]", "'[a]'"},
  };
  for (const auto& row : rows) EXPECT_EQ(ShellWord(row.argument), row.word);
}

}  // namespace
}  // namespace tessary
