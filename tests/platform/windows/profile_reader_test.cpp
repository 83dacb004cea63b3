#include <gtest/gtest.h>

#include "platform/file_system.h"
#include "platform/windows/native_path.h"
#include "platform/windows/system_headers.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

class ProfileReaderTest : public testing::Test {
 protected:
  FileSystem& files_ = SystemFiles();
  TemporaryFolder folder_;
  std::string path_ = folder_ / "Bericht.lst";

  std::string Read(std::string_view key) {
    return files_.ReadProfileString(path_, "UserSection", key);
  }
  // The value of the key K in a file of these bytes.
  std::string ValueIn(std::string_view bytes) {
    PutFile(path_, bytes);
    return Read("K");
  }
};

TEST_F(ProfileReaderTest, ReadsTheHeaderOfAReport) {
  PutFile(path_,
          "[Layout]\r\nVersion=9\r\n  [usersection]\r\n  VERSION = 3\r\nReferenzbeleg=\xDC"
          "bersicht\r\n[Next]\r\nOther=1\r\n");
  EXPECT_EQ(Read("Version"), "3");
  EXPECT_EQ(Read("referenzbeleg"), "Übersicht");
  EXPECT_EQ(Read("Other"), "");
}

TEST_F(ProfileReaderTest, TheSystemDropsBlanksAndQuotesAroundAValue) {
  EXPECT_EQ(ValueIn("[UserSection]\r\nK=  a b  \r\n"), "a b");
  EXPECT_EQ(ValueIn("[UserSection]\r\nK=\"a b\"\r\n"), "a b");
}

TEST_F(ProfileReaderTest, CutsAfter2047Characters) {
  EXPECT_EQ(ValueIn("[UserSection]\r\nK=" + std::string(3000, 'x') + "\r\n"),
            std::string(2047, 'x'));
}

TEST_F(ProfileReaderTest, ReadsFilesWithAByteOrderMark) {
  const std::string text = "[UserSection]\r\nK=Größe Ω\r\n";
  EXPECT_EQ(ValueIn("\xEF\xBB\xBF" + text), "Größe Ω");
  std::string little("\xFF\xFE");
  std::string big("\xFE\xFF");
  for (const char16_t unit : u"[UserSection]\r\nK=Größe Ω\r\n") {
    if (unit == 0) break;
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    little.append({low, high});
    big.append({high, low});
  }
  EXPECT_EQ(ValueIn(little), "Größe Ω");
  EXPECT_EQ(ValueIn(big), "Größe Ω");
}

TEST_F(ProfileReaderTest, WhatIsMissingIsEmpty) {
  EXPECT_EQ(Read("K"), "");
  EXPECT_EQ(ValueIn(""), "");
  EXPECT_EQ(ValueIn("[UserSection]\r\nK="), "");
  for (const std::string& path : {std::string(), folder_.path(), folder_ / "missing\\a",
                                  std::string("NUL"), std::string("C:\\a:b")})
    EXPECT_EQ(files_.ReadProfileString(path, "UserSection", "K"), "") << path;
}

// The system looks for a bare name in its own folder.
TEST_F(ProfileReaderTest, ARelativePathMeansTheCurrentFolder) {
  PutFile(path_, "[UserSection]\r\nK=here\r\n");
  wchar_t before[MAX_PATH];
  ASSERT_GT(GetCurrentDirectoryW(MAX_PATH, before), 0u);
  ASSERT_TRUE(SetCurrentDirectoryW(NativePath(folder_.path()).c_str()));
  EXPECT_EQ(files_.ReadProfileString("Bericht.lst", "UserSection", "K"), "here");
  SetCurrentDirectoryW(before);
}

TEST_F(ProfileReaderTest, ReadsPathsOfEveryKind) {
  const std::string long_folder = folder_ / std::string(150, 'x');
  files_.CreateFolder(long_folder);
  for (const std::string& path :
       {folder_ / "Größe Ω中文.lst", long_folder + "\\" + std::string(150, 'y') + ".lst"}) {
    const auto file = files_.OpenForReplacing(path);
    file->Write("[UserSection]\r\nK=value\r\n");
    file->Commit();
    EXPECT_EQ(files_.ReadProfileString(path, "UserSection", "K"), "value") << path;
  }
}

}  // namespace
}  // namespace tessary
