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
      {"", "\"\""},
      {"C:\\Berichte\\a_1-2.lst", "C:\\Berichte\\a_1-2.lst"},
      {"Österreich", "Österreich"},
      {"a b", "\"a b\""},
      {"a&b", "\"a&b\""},
      {"C:\\a b\\", "\"C:\\a b\\\\\""},
      {"a\\\"b", "\"a\\\\\\\"b\""},
  };
  for (const auto& row : rows) EXPECT_EQ(ShellWord(row.argument), row.word);
}

}  // namespace
}  // namespace tessary
