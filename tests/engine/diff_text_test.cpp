#include "engine/diff_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tessary {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::string DiffText(BXStatus status, const DiffFields& fields) {
  std::string line;
  ElementToDiffText(status, fields, line);
  return line;
}

TEST(DiffTextTest, StatusLettersAreCapitals) {
  const struct {
    BXStatus status;
    const char* letter;
  } rows[] = {{bxsDelete, "D"}, {bxsNew, "N"}, {bxsUpdate, "U"}, {bxsUnknown, ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(StatusToLetter(row.status), row.letter);
    EXPECT_EQ(LetterToStatus(row.letter), row.status);
  }
  EXPECT_EQ(StatusToLetter(static_cast<BXStatus>(17)), "");
  EXPECT_EQ(StatusToLetter(static_cast<BXStatus>(-1)), "");
  for (const char* text : {"d", "n", "u", "X", "DN", " N", "N "}) {
    EXPECT_EQ(LetterToStatus(text), bxsUnknown) << text;
  }
}

TEST(DiffTextTest, AnUnknownStatusGivesNoTextWhateverTheFields) {
  EXPECT_EQ(DiffText(bxsUnknown, {}), "");
  EXPECT_EQ(DiffText(bxsUnknown, {"1", "2", "3", "4", "5", "6", "7", "8", "9"}), "");
}

TEST(DiffTextTest, TheDescriptionHasAllNineLabels) {
  EXPECT_EQ(
      DiffText(bxsNew, {"", "", "Width", "", "", "Height", "", "", ""}),
      "N(Key=:Typ=:PrevName=Width:PrevKey=:PrevTyp=:NextName=Height:NextKey=:NextTyp=:PosNr=);");
  EXPECT_EQ(
      DiffText(bxsDelete, {"1", "2", "3", "4", "5", "6", "7", "8", "9"}),
      "D(Key=1:Typ=2:PrevName=3:PrevKey=4:PrevTyp=5:NextName=6:NextKey=7:NextTyp=8:PosNr=9);");
  EXPECT_EQ(DiffText(bxsUpdate, {}),
            "U(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);");
}

TEST(DiffTextTest, TheDescriptionIsAppended) {
  std::string line = "x";
  ElementToDiffText(bxsUpdate, {}, line);
  EXPECT_EQ(line.substr(0, 3), "xU(");
}

TEST(DiffTextTest, LinesWithoutTheNineFieldsAreReadWithEmptyOnes) {
  const std::string eight =
      "Key=1:Typ=2:PrevName=3:PrevKey=4:PrevTyp=5:NextName=6:NextKey=7:NextTyp=8";
  const struct {
    const char* name;
    std::string line;
    BXStatus status;
    std::string text;
  } rows[] = {
      {"empty line", "", bxsUnknown, ""},
      {"plain property", "Width=10", bxsUnknown, "Width=10"},
      {"untrimmed without semicolon", "  a  ", bxsUnknown, "  a  "},
      {"short form", "N;Width=10", bxsNew, "Width=10"},
      {"short form of a deletion", "D;[Object]", bxsDelete, "[Object]"},
      {"short form with blanks", "  U  ;  Width=10  ", bxsUpdate, "Width=10"},
      {"short form without a line", "N;", bxsNew, ""},
      {"lower-case letter", "n;Width=10", bxsUnknown, "n;Width=10"},
      {"full form of an unknown letter", "X(" + eight + ":PosNr=9);Width=10", bxsUnknown,
       "X(" + eight + ":PosNr=9);Width=10"},
      {"full form of a lower-case letter", "u(" + eight + ":PosNr=9);Width=10", bxsUnknown,
       "u(" + eight + ":PosNr=9);Width=10"},
      {"formula", "Formula=A;B", bxsUnknown, "Formula=A;B"},
      {"only a semicolon", ";", bxsUnknown, ";"},
      {"semicolon first", ";N;x", bxsUnknown, ";N;x"},
      {"eight fields", "N(" + eight + ");Width=10", bxsNew, "Width=10"},
      {"ten fields", "N(" + eight + ":PosNr=9:x);Width=10", bxsNew, "Width=10"},
      {"no fields", "N();Width=10", bxsNew, "Width=10"},
      {"nothing behind the bracket", "N(;Width=10", bxsNew, "Width=10"},
      {"blanks behind the bracket", "N(   ;Width=10", bxsNew, "Width=10"},
      {"no closing bracket", "N(" + eight + ":PosNr=9;Width=10", bxsNew, "Width=10"},
      {"a value with a colon",
       "N(Key=a:b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);X=1", bxsNew,
       "X=1"},
      {"a value with a closing bracket",
       "N(Key=f(x):Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);X=1",
       bxsNew, "X=1"},
      {"a value with a semicolon",
       "N(Key=a;b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);X=1", bxsNew,
       "b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);X=1"},
      {"two letters", "NU;X=1", bxsUnknown, "NU;X=1"},
      {"text that is no letter before a bracket", "Wert(1);X=1", bxsUnknown, "Wert(1);X=1"},
      {"further semicolons belong to the text", "U;Formel=A;B;C", bxsUpdate, "Formel=A;B;C"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DiffLine line;
    DiffTextToElement(row.line, line);
    EXPECT_EQ(line.status, row.status);
    EXPECT_EQ(line.text, row.text);
    EXPECT_THAT(line.fields, Each(IsEmpty()));
  }
}

TEST(DiffTextTest, FieldsLoseTheirLabelsAndBlanks) {
  const struct {
    const char* name;
    std::string description;
    std::array<const char*, 9> fields;
  } rows[] = {
      {"in order",
       "Key=1:Typ=2:PrevName=3:PrevKey=4:PrevTyp=5:NextName=6:NextKey=7:NextTyp=8:PosNr=9",
       {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
      {"all empty",
       "Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=",
       {"", "", "", "", "", "", "", "", ""}},
      {"no labels", "1:2:3:4:5:6:7:8:9", {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
      {"only colons", "::::::::", {"", "", "", "", "", "", "", "", ""}},
      {"labels in other case",
       "KEY=1:tYP=2:prevname=3:PREVKEY=4:prevtyp=5:NEXTNAME=6:nextkey=7:NextTYP=8:posnr=9",
       {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
      {"a value that contains its own label",
       "Key=aKEY=b:Typ=Typ=x:PrevName=:::::::",
       {"", "", "", "", "", "", "", "", ""}},
      {"the label goes wherever it stands",
       "Key=aKEY=b:Typ=Typ=x:y PrevName=::::::",
       {"ab", "x", "y", "", "", "", "", "", ""}},
      {"removing is not repeated", "KKey=ey=1::::::::", {"Key=1", "", "", "", "", "", "", "", ""}},
      {"another column's label stays", "Typ=1::::::::", {"Typ=1", "", "", "", "", "", "", "", ""}},
      {"blanks around values",
       "Key= 1 : Typ=2 :PrevName=  a b  :4 : 5:6:7:8:  9  ",
       {"1", "2", "a b", "4", "5", "6", "7", "8", "9"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string text = "U(" + row.description + ");X=1";
    DiffLine line;
    DiffTextToElement(text, line);
    EXPECT_EQ(line.status, bxsUpdate);
    EXPECT_EQ(line.text, "X=1");
    EXPECT_THAT(line.fields, ElementsAreArray(row.fields));
  }
}

TEST(DiffTextTest, BlanksAreDroppedEverywhere) {
  DiffLine line;
  DiffTextToElement(
      "  U  (  Key= k : Typ= t :PrevName= a:PrevKey=b :PrevTyp=c:NextName= d :NextKey=e:NextTyp=f:"
      "PosNr= 2 ) ;  Width = 10  ",
      line);
  EXPECT_EQ(line.status, bxsUpdate);
  EXPECT_EQ(line.text, "Width = 10");
  EXPECT_THAT(line.fields, ElementsAre("k", "t", "a", "b", "c", "d", "e", "f", "2"));
}

TEST(DiffTextTest, WhatFollowsTheClosingBracketIsIgnored) {
  DiffLine line;
  DiffTextToElement("D(1:2:3:4:5:6:7:8:9) rest );[A]", line);
  EXPECT_EQ(line.status, bxsDelete);
  EXPECT_EQ(line.text, "[A]");
  EXPECT_THAT(line.fields, ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9"));
}

TEST(DiffTextTest, ALineLeavesNothingBehindForTheNext) {
  DiffLine line;
  DiffTextToElement("N(KKey=ey=1:2:3:4:5:6:7:8:9);A=1", line);
  DiffTextToElement("B=2", line);
  EXPECT_EQ(line.status, bxsUnknown);
  EXPECT_EQ(line.text, "B=2");
  EXPECT_THAT(line.fields, Each(IsEmpty()));
}

// Texts without ":", ")", ";", surrounding blanks and, as labels never contain one, "=".
std::string AnyField(std::mt19937& random) {
  constexpr std::string_view kLetters = "aZ0[](@-_.,\xC3";
  std::string text(random() % 6, ' ');
  for (char& c : text) {
    do c = kLetters[random() % kLetters.size()];
    while (c == ')');
  }
  return text;
}

TEST(DiffTextTest, AWrittenElementReadsBackTheSame) {
  std::mt19937 random(7);
  for (int n = 0; n < 2000; ++n) {
    std::array<std::string, 9> texts;
    for (std::string& text : texts) text = AnyField(random);
    DiffFields fields;
    std::copy(texts.begin(), texts.end(), fields.begin());
    const auto status = static_cast<BXStatus>(random() % 3);
    const std::string written = DiffText(status, fields) + "Name=Wert;(x:y)";
    DiffLine line;
    DiffTextToElement(written, line);
    ASSERT_EQ(line.status, status) << written;
    ASSERT_EQ(line.text, "Name=Wert;(x:y)") << written;
    ASSERT_EQ(line.fields, fields) << written;
  }
}

}  // namespace
}  // namespace tessary
