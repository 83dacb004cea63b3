#include "platform/file_names.h"

#include <gtest/gtest.h>

#include "platform/path.h"

namespace tessary {
namespace {

TEST(FileNamesTest, SortsWithoutRegardToCase) {
  std::vector<std::string> names = {"b.lst", "a.lst", "B.lst", "\xFF", "Ä.lst", "C.lst",
                                    "A.lst", "ä.lst", "",      "10",   "2"};
  SortFileNames(names);
  const std::vector<std::string> sorted = {"",      "10",    "2",     "A.lst", "a.lst", "B.lst",
                                           "b.lst", "C.lst", "Ä.lst", "ä.lst", "\xFF"};
  EXPECT_EQ(names, sorted);
}

TEST(FileNamesTest, TemporaryNamesAreRecognised) {
  for (const char* const name : {"", "Rechnung.lst", "3_4Rechnung", "\xFF\n"}) {
    const std::string temporary = TemporaryNameFor(name, 0);
    EXPECT_TRUE(IsTemporaryName(temporary)) << temporary;
    EXPECT_EQ(temporary[0], '~');
    EXPECT_NE(ExtensionOf(temporary).find('~'), std::string::npos);
    EXPECT_EQ(temporary, TemporaryNameFor(name, 0));
    EXPECT_NE(temporary, TemporaryNameFor(name, 1));
  }
  EXPECT_NE(TemporaryNameFor("a", 0), TemporaryNameFor("b", 0));
}

TEST(FileNamesTest, OtherNamesAreNot) {
  for (const char* const name :
       {"", "~tessary-.~tmp", "~tessary-0123456789abcde.~tmp", "~tessary-0123456789abcdef0.~tmp",
        "~tessary-0123456789abcdeg.~tmp", "~tessary-0123456789ABCDEF.~tmp",
        "x~tessary-0123456789abcdef.~tmp", "~tessary-0123456789abcdef.~tmq",
        "~tessary-0123456789abcdef.~tmp~", "~tessarx-0123456789abcdef.~tmp"})
    EXPECT_FALSE(IsTemporaryName(name)) << name;
  EXPECT_TRUE(IsTemporaryName("~tessary-0123456789abcdef.~tmp"));
}

TEST(ServiceFiles, AreTakenOutOfALiveFolder) {
  std::vector<std::string> names = {"A.lst",
                                    std::string(kLockFileName),
                                    TemporaryNameFor("A.lst", 0),
                                    "~tessary-A.lst.~old",
                                    "~tessary-A.lst",
                                    "~A.lst.~1",
                                    "tessary-x.~tmp"};
  DropServiceFiles(names);
  EXPECT_EQ(names,
            (std::vector<std::string>{"A.lst", "~tessary-A.lst", "~A.lst.~1", "tessary-x.~tmp"}));
}

}  // namespace
}  // namespace tessary
