#include "engine/text_pool.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/text.h"

namespace tessary {
namespace {

TEST(TextPoolTest, EqualTextsHaveEqualSymbols) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  const Symbol name = pool->Intern("Name");
  EXPECT_EQ(pool->Intern(std::string("Na") + "me"), name);
  EXPECT_NE(pool->Intern("name"), name);
  EXPECT_NE(pool->Intern("Name "), name);
  EXPECT_EQ(pool->Text(name), "Name");
}

TEST(TextPoolTest, TheEmptyTextIsSymbolZero) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  EXPECT_EQ(pool->Intern(""), Symbol::kEmpty);
  EXPECT_EQ(pool->Intern(std::string_view()), Symbol::kEmpty);
  EXPECT_EQ(pool->Text(Symbol::kEmpty), "");
  EXPECT_EQ(pool->Fold(Symbol::kEmpty), Symbol::kEmpty);
  EXPECT_FALSE(pool->Same(Symbol::kEmpty, pool->Intern(" ")));
}

TEST(TextPoolTest, SameIgnoresCase) {
  const struct {
    const char* a;
    const char* b;
    bool same;
  } rows[] = {
      {"Name", "NAME", true},     {"Name", "Nam", false},      {"größe", "GRÖßE", true},
      {"ä", "Ä", true},           {"ä", "a", false},           {"straße", "strasse", false},
      {"Ωmega", "ωMEGA", true},   {"\xFF", "\xFF", true},      {"\xE4", "\xC4", false},
      {"[Line]", "[LINE]", true}, {"@Total", "`Total", false}, {"[a", "{A", false},
  };
  const Ref<TextPool> pool = MakeRef<TextPool>();
  for (const auto& row : rows) {
    const Symbol a = pool->Intern(row.a);
    const Symbol b = pool->Intern(row.b);
    EXPECT_EQ(pool->Same(a, b), row.same) << row.a << " and " << row.b;
    EXPECT_EQ(pool->Same(b, a), row.same) << row.b << " and " << row.a;
    EXPECT_EQ(pool->Fold(a) == pool->Fold(b), row.same) << row.a << " and " << row.b;
  }
}

TEST(TextPoolTest, TheFoldingDoesNotDependOnWhichSpellingCameFirst) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  const Symbol folded_first = pool->Intern("abc");
  EXPECT_EQ(pool->Fold(pool->Intern("ABC")), folded_first);
  const Symbol folded_last = pool->Intern("XyZ");
  EXPECT_EQ(pool->Intern("xyz"), pool->Fold(folded_last));
  EXPECT_EQ(pool->Text(pool->Fold(folded_last)), "xyz");
}

TEST(TextPoolTest, NumbersAreTheirDecimalTexts) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  for (const std::int32_t number :
       {0, 1, 7, 10, 12345, (1 << 20) - 1, 1 << 20, INT32_MAX, -1, INT32_MIN}) {
    const Symbol symbol = pool->InternNumber(number);
    EXPECT_EQ(pool->Text(symbol), std::to_string(number));
    EXPECT_EQ(pool->Intern(std::to_string(number)), symbol);
    EXPECT_EQ(pool->InternNumber(number), symbol);
  }
}

TEST(TextPoolTest, KeptTextsAreCopies) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  std::string text = "Wert";
  const std::string_view kept = pool->Keep(text);
  const Symbol symbol = pool->Intern(text);
  text.assign("xxxx");
  EXPECT_EQ(kept, "Wert");
  EXPECT_EQ(pool->Text(symbol), "Wert");
  EXPECT_EQ(pool->Keep(""), "");
}

TEST(TextPoolTest, LongTextsAreKeptWhole) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  const std::string small(100, 's');
  const std::string large(1'000'000, 'l');
  const std::string_view kept_small = pool->Keep(small);
  const std::string_view kept_large = pool->Keep(large);
  const std::string_view kept_after = pool->Keep(small);
  EXPECT_EQ(kept_small, small);
  EXPECT_EQ(kept_large, large);
  EXPECT_EQ(kept_after, small);
  EXPECT_EQ(pool->Text(pool->Intern(large)), large);
}

TEST(TextPoolTest, PartsOfAnAdoptedBufferAreNotCopied) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  for (const std::string& text : {std::string("kurz"), std::string(1000, 'x')}) {
    const std::string_view buffer = pool->Adopt(text);
    EXPECT_EQ(buffer, text);
    EXPECT_EQ(pool->Keep(buffer).data(), buffer.data());
    const std::string_view part = buffer.substr(1, 2);
    EXPECT_EQ(pool->Keep(part).data(), part.data());
    EXPECT_EQ(pool->Keep(buffer.substr(buffer.size())), "");
  }
}

TEST(TextPoolTest, AnAdoptedBufferThatIsEmptyKeepsNothing) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  EXPECT_EQ(pool->Adopt(""), "");
  EXPECT_EQ(pool->Text(pool->Intern("a")), "a");
}

// Texts of all lengths around the widths in which the hash reads, with bytes of every kind.
std::string RandomText(std::mt19937& random) {
  constexpr std::string_view kLetters = "aAbBzZ0 \t[]=;\xC3\xA4\xC3\x84\xFF";
  std::string text(random() % 20, ' ');
  for (char& c : text) c = kLetters[random() % kLetters.size()];
  return text;
}

TEST(TextPoolTest, ManyTextsAgreeWithAMap) {
  const Ref<TextPool> pool = MakeRef<TextPool>();
  std::mt19937 random(20'240'601);
  std::map<std::string, Symbol> symbols{{"", Symbol::kEmpty}};
  std::map<std::string, std::vector<Symbol>> same;
  for (int n = 0; n < 20'000; ++n) {
    const std::string text = RandomText(random);
    const Symbol symbol = pool->Intern(text);
    const auto [place, is_new] = symbols.emplace(text, symbol);
    ASSERT_EQ(place->second, symbol) << n;
    if (is_new) same[FoldCase(text)].push_back(symbol);
  }
  for (const auto& [text, symbol] : symbols) ASSERT_EQ(pool->Text(symbol), text);
  for (const auto& [folded, spellings] : same) {
    for (const Symbol symbol : spellings) {
      ASSERT_TRUE(pool->Same(symbol, spellings.front())) << folded;
      ASSERT_EQ(pool->Text(pool->Fold(symbol)), folded);
    }
  }
}

}  // namespace
}  // namespace tessary
