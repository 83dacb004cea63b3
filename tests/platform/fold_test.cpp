#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "platform/text.h"
#include "platform/utf8.h"

namespace tessary {
namespace {

using namespace std::string_literals;

std::string Encoded(char32_t code_point) {
  std::string text;
  AppendUtf8(text, code_point);
  return text;
}

TEST(FoldTest, FoldsOneToOne) {
  const struct {
    const char* name;
    std::string text;
    std::string folded;
  } rows[] = {
      {"empty", "", ""},
      {"ASCII", "[Line]", "[line]"},
      {"neighbours of the letters", "@AZ[`az{\x7F", "@az[`az{\x7F"},
      {"longer than a word", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"},
      {"umlauts", "ÄÖÜäöü", "äöüäöü"},
      {"sharp s stays one character", "Straße", "straße"},
      {"capital sharp s", "STRAẞE", "straße"},
      {"no letters between letters", "×÷", "×÷"},
      {"micro sign is the Greek letter", "µ", "μ"},
      {"Greek", "ΑΩΆ", "αωά"},
      {"final sigma", "Σσς", "σσσ"},
      {"Ohm sign", "\u2126", "ω"},
      {"Kelvin and Angstrom signs", "\u212A\u212B", "kå"},
      {"long s", "ſ", "s"},
      {"Cyrillic", "ЖЯЁ", "жяё"},
      {"Turkish dotted I has no one-to-one folding", "İ", "İ"},
      {"Turkish dotless i", "ı", "ı"},
      {"digraph in three cases", "ǄǅǆǄ", "ǆǆǆǆ"},
      {"longer when folded", "Ⱥ", "ⱥ"},
      {"Greek with iota", "ᾈᾼ", "ᾀᾳ"},
      {"ligature stays", "ﬁ", "ﬁ"},
      {"full width", "ＡＺ", "ａｚ"},
      {"Cherokee folds to capitals", "ꭰᏸ", "ᎠᏰ"},
      {"beyond the basic plane", "𐐀𞤀", "𐐨𞤢"},
      {"after the alternating letters", "ĿŁŊ", "ŀłŋ"},
      {"stray bytes",
       "A\xC4"
       "B\xFF",
       "a\xC4"
       "b\xFF"},
      {"truncated character before a capital",
       "\xE2\x84"
       "AÄ",
       "\xE2\x84"
       "aä"},
      {"zero byte", "A\0Ä"s, "a\0ä"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FoldCase(row.text), row.folded) << row.name;
    EXPECT_EQ(FoldCase(row.folded), row.folded) << row.name;
    EXPECT_TRUE(EqualsIgnoreCase(row.text, row.folded)) << row.name;
    EXPECT_EQ(CompareIgnoreCase(row.text, row.folded), 0) << row.name;
  }
}

// The table as a whole: its size is that of the one-to-one foldings of its Unicode version.
TEST(FoldTest, FoldsEveryCharacterOnce) {
  int changed = 0;
  for (char32_t code_point = 0x80; code_point <= 0x10FFFF; ++code_point) {
    if (code_point == 0xD800) code_point = 0xE000;
    const std::string text = Encoded(code_point);
    const std::string folded = FoldCase(text);
    changed += static_cast<int>(folded != text);
    ASSERT_EQ(DecodeUtf8(folded, 0).length, folded.size()) << std::uint32_t{code_point};
    ASSERT_EQ(FoldCase(folded), folded) << std::uint32_t{code_point};
  }
  EXPECT_EQ(changed, 1428);
}

TEST(FoldTest, ComparesByFolding) {
  const struct {
    const char* name;
    std::string a;
    std::string b;
    int order;
  } rows[] = {
      {"both empty", "", "", 0},
      {"empty first", "", "a", -1},
      {"prefix first", "Rechnung", "RECHNUNGEN", -1},
      {"case does not matter", "rechnung", "RECHNUNG", 0},
      {"letters", "abc", "ABD", -1},
      {"small and capital letters fold to small ones", "_", "A", -1},
      {"difference behind a word", "0123456789ABCDEFx", "0123456789abcdefY", -1},
      {"difference inside a word", "0123X567", "0123x568", -1},
      {"umlaut behind z", "Zebra", "Äpfel", -1},
      {"umlauts", "ÄPFEL MIT BIRNEN", "äpfel mit birnen", 0},
      {"by code point beyond the basic plane", "\uFF21", "\U00010400", -1},
      {"Omega and Ohm sign", "Ω", "\u2126", 0},
      {"texts of different length", "\u212Aelvin", "kelvin", 0},
      {"stray byte equals itself", "a\xFF", "A\xFF", 0},
      {"stray byte equals no other", "\xC4", "\xE4", -1},
      {"stray byte equals no character", "\xE4", "ä", 1},
      {"stray byte behind all characters", "\x80", "\U0010FFFF", 1},
      {"stray byte behind equal ASCII", "0123456789\xFF", "0123456789a", 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CompareIgnoreCase(row.a, row.b), row.order) << row.name;
    EXPECT_EQ(CompareIgnoreCase(row.b, row.a), -row.order) << row.name;
    EXPECT_EQ(EqualsIgnoreCase(row.a, row.b), row.order == 0) << row.name;
  }
}

TEST(FoldTest, ComparisonAgreesWithFoldingOnRandomTexts) {
  const std::vector<std::string> pieces = {"a", "A",      "b",    "B",        "ä",
                                           "Ä", "\u212A", "k",    "\0"s,      "z",
                                           "_", "\xC3",   "\xA4", "\xE2\x84", "12345678"};
  std::mt19937 random(20240501);
  const auto draw = [&] {
    std::string text;
    for (std::size_t count = random() % 6; count > 0; --count)
      text += pieces[random() % pieces.size()];
    return text;
  };
  for (int i = 0; i < 50000; ++i) {
    const std::string a = draw();
    const std::string b = draw();
    ASSERT_EQ(EqualsIgnoreCase(a, b), FoldCase(a) == FoldCase(b)) << a << " | " << b;
    ASSERT_EQ(CompareIgnoreCase(a, b) == 0, EqualsIgnoreCase(a, b)) << a << " | " << b;
    ASSERT_EQ(CompareIgnoreCase(a, b), -CompareIgnoreCase(b, a)) << a << " | " << b;
  }
}

TEST(FoldTest, FindsAsciiParts) {
  constexpr auto kNowhere = std::string_view::npos;
  const struct {
    const char* name;
    std::string text;
    std::string part;
    std::string_view::size_type position;
  } rows[] = {
      {"empty in empty", "", "", 0},
      {"in empty", "", "a", kNowhere},
      {"at the beginning", "Visible", "vis", 0},
      {"inside", "Is.Visible", "VISIBLE", 3},
      {"at the end", "lst~", "~", 3},
      {"first of several", "aBab", "B", 1},
      {"after a false start", "aab", "AB", 1},
      {"part longer than the rest", "xab", "abc", kNowhere},
      {"position in bytes", "üÜ.X", "x", 5},
      {"after stray bytes", "\xFF\xC3x", "X", 2},
      {"not inside a character", "\u2161", "a", kNowhere},
      {"sign that folds to a letter", "\u212Aa", "ka", 0},
  };
  for (const auto& row : rows)
    EXPECT_EQ(FindIgnoreCase(row.text, row.part), row.position) << row.name;
}

}  // namespace
}  // namespace tessary
