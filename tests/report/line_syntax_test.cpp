#include "report/line_syntax.h"

#include <gtest/gtest.h>

namespace tessary {
namespace {

TEST(LineSyntaxTest, ASectionHeaderBeginsAndEndsWithBrackets) {
  const struct {
    const char* line;
    bool section;
  } rows[] = {{"[Object]", true}, {"[]", true},     {"[@Lines]", true}, {"[a]b]", true},
              {"[[", false},      {"[", false},     {"]", false},       {"", false},
              {"[Line", false},   {"Line]", false}, {" [A]", false},    {"[A] ", false},
              {"[A]=[B]", true},  {"[ü]", true}};
  for (const auto& row : rows) EXPECT_EQ(IsSectionLine(row.line), row.section) << row.line;
}

TEST(LineSyntaxTest, ALineSectionIsFoundWithoutRegardToCase) {
  for (const char* line : {"[Line]", "[LINE]", "[line]"}) EXPECT_TRUE(IsLineSection(line)) << line;
  for (const char* line : {"", "[Lines]", "[@Lines]", "Line", "[Line] "}) {
    EXPECT_FALSE(IsLineSection(line)) << line;
  }
}

TEST(LineSyntaxTest, PropertiesAreSplitAtTheFirstEqualsSign) {
  const struct {
    const char* line;
    const char* name;
    const char* key;
    const char* value;
  } rows[] = {
      {"Width=10", "Width", "Width", "10"},
      {"  Name = Value  ", "Name", "Name", " Value"},  // the blank behind "=" is kept
      {"A=B=C", "A", "A", "B=C"},
      {"A==", "A", "A", "="},
      {"Foo", "Foo", "Foo", ""},
      {"  Foo bar ", "Foo bar", "Foo bar", ""},
      {"Foo=", "Foo", "Foo", ""},
      {"=x", "", "", "x"},
      {"=", "", "", ""},
      {"", "", "", ""},
      {"   ", "", "", ""},
      {"[A]=1", "[A]", "[A]", "1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    const Property property = SplitProperty(row.line);
    EXPECT_EQ(property.strName, row.name);
    EXPECT_EQ(property.strKey, row.key);
    EXPECT_EQ(property.strValue, row.value);
  }
}

TEST(LineSyntaxTest, NumberedVariablesAreKnownByTheirOwnName) {
  const struct {
    const char* name;
    const char* line;
    const char* variable;  // name, or null for an ordinary property
    const char* key;
    const char* value;
  } rows[] = {
      {"user variable", "User3=@Total;Sum(Price)", "User", "@Total", "Sum(Price)"},
      {"sum variable", "Sum12=@S;x", "Sum", "@S", "x"},
      {"other case", "user7=@x;y", "User", "@x", "y"},
      {"upper case", "SUM7=@x;y", "Sum", "@x", "y"},
      {"without semicolon", "Sum12=@Total", nullptr, "Sum12", "@Total"},
      {"no number", "User=@x;y", nullptr, "User", "@x;y"},
      {"own name without @", "User7=x;@y", nullptr, "User7", "x;@y"},
      {"value without @", "User3=Total", nullptr, "User3", "Total"},
      {"no value", "User3=", nullptr, "User3", ""},
      {"prefix inside the key", "XSum12=@a;b", nullptr, "XSum12", "@a;b"},
      {"prefix inside the key, number behind the first letters", "12Sum3=@a;b", nullptr, "12Sum3",
       "@a;b"},
      {"User is looked for before Sum", "Sum1User=@a;b", nullptr, "Sum1User", "@a;b"},
      {"key that is a number behind its first three letters", "xxx5Sum=@a;b", nullptr, "xxx5Sum",
       "@a;b"},
      {"text behind the prefix", "Userx=@a;b", nullptr, "Userx", "@a;b"},
      {"number and text", "User3x=@a;b", nullptr, "User3x", "@a;b"},
      {"blank before the number", "User 3=@a;b", "User", "@a", "b"},
      {"signed number", "User-3=@a;b", "User", "@a", "b"},
      {"decimal number", "Sum1,5=@a;b", "Sum", "@a", "b"},
      {"number with exponent", "Sum1e2=@a;b", "Sum", "@a", "b"},
      {"blanks around the own name", "User3=  @a b ; c ", "User", "@a b", " c"},
      {"only the first semicolon counts", "User3=@a;b;c", "User", "@a", "b;c"},
      {"nothing behind the semicolon", "User3=@a;", "User", "@a", ""},
      {"own name is only @", "User3=@;b", "User", "@", "b"},
      {"empty own name", "User3=;@b", nullptr, "User3", ";@b"},
      {"blank own name", "User3=  ;@b", nullptr, "User3", "  ;@b"},
      {"equals sign in the value", "Sum2=@a;b=c", "Sum", "@a", "b=c"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Property property = SplitProperty(row.line);
    EXPECT_EQ(property.strName, row.variable ? row.variable : row.key);
    EXPECT_EQ(property.strKey, row.key);
    EXPECT_EQ(property.strValue, row.value);
  }
}

TEST(LineSyntaxTest, JoiningUndoesSplitting) {
  const struct {
    const char* name;
    const char* key;
    const char* value;
    const char* line;
  } rows[] = {
      {"Width", "Width", "10", "Width=10"},
      {"width", "WIDTH", "10", "WIDTH=10"},
      {"User3", "@Total", "Sum(Price)", "User3=@Total;Sum(Price)"},
      {"User1", "User", "abc", "User1=User;abc"},
      {"A", "", "1", "A=;1"},
      {"", "K", "1", "=K;1"},
      {" ", " ", "1", ""},
      {"", "", "1", ""},
      {"Foo", "Foo", "", "Foo="},
      {"Ä", "ä", "1", "ä=1"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(JoinProperty(row.name, row.key, row.value), row.line);
    std::string line = "N;";
    AppendProperty(row.name, row.key, row.value, line);
    EXPECT_EQ(line, "N;" + std::string(row.line));
  }
}

}  // namespace
}  // namespace tessary
