#include "cli/json_output.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "support/json.h"

namespace tessary {
namespace {

TEST(ResultAsJson, OfAnEmptyLogHasAllMembersButWarnings) {
  EXPECT_EQ(ParseJson(ResultAsJson(true, ResultLog(), {})),
            ParseJson(R"({"result": true, "correct": [], "errors": {}, "entries": []})"));
}

TEST(ResultAsJson, KeepsTheOrderOfLogMessagesAndEntries) {
  ResultLog log;
  log.AddToResultLog("z", false);
  log.AddToResultLog("a", false);
  log.errors.objErrors->Add({ErrorEntry::kFailure, kWrongKindOfFile, "Quelle", "erste"});
  log.errors.objErrors->Add({ErrorEntry::kNotRestored, 70, "Quelle 2", "zweite"});
  log.AddToResultLog("y fehlgeschlagen.", true);
  log.AddToResultLog("b fehlgeschlagen.", true);
  const std::string text = ResultAsJson(false, log, {"w2", "w1"});
  const Json expected = ParseJson(R"({
    "result": false,
    "correct": ["z", "a"],
    "errors": {"y fehlgeschlagen.": ["zweite", "erste"], "b fehlgeschlagen.": ["zweite", "erste"]},
    "entries": [
      {"kind": 4, "number": -2147216502, "source": "Quelle", "message": "erste"},
      {"kind": 1, "number": 70, "source": "Quelle 2", "message": "zweite"}
    ],
    "warnings": ["w2", "w1"]
  })");
  EXPECT_EQ(ParseJson(text).dump(), expected.dump());
  EXPECT_TRUE(text.ends_with("}\n"));
}

TEST(ResultAsJson, IsValidUtf8WhateverTheTextsHold) {
  const std::string bytes = "Datei \xFF\xC3 \"\\\x01\n.lst";
  const std::string shown = "Datei \uFFFD\uFFFD \"\\\x01\n.lst";
  ResultLog log;
  log.errors.objErrors->Add({ErrorEntry::kFailure, 53, bytes, bytes});
  log.AddToResultLog(bytes, true);
  log.AddToResultLog(bytes, false);
  const std::string text = ResultAsJson(false, log, {bytes});
  EXPECT_EQ(ToValidUtf8(text), text);
  const Json object = ParseJson(text);
  EXPECT_EQ(object["correct"][0], shown);
  EXPECT_EQ(object["errors"][shown][0], shown);
  EXPECT_EQ(object["entries"][0]["source"], shown);
  EXPECT_EQ(object["entries"][0]["message"], shown);
  EXPECT_EQ(object["warnings"][0], shown);
}

TEST(ResultAsJson, HasNoKeyTwice) {
  ResultLog log;
  log.dictErrors.Add("Datei \xFE", {"eins"});
  log.dictErrors.Add("Datei \xFF", {"zwei", "drei"});
  const Json object = ParseJson(ResultAsJson(false, log, {}));
  EXPECT_EQ(object["errors"].size(), 1u);
  EXPECT_EQ(object["errors"]["Datei \uFFFD"], Json::array({"eins", "zwei", "drei"}));
}

}  // namespace
}  // namespace tessary
