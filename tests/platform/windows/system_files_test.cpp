#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/windows/file_replacement.h"
#include "platform/windows/native_path.h"
#include "platform/windows/windows_io.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"

// Behind the system's own header.
#include <sddl.h>

namespace tessary {
namespace {

using Names = std::vector<std::string>;

DWORD AttributesOf(const std::string& path) { return GetFileAttributesW(NativePath(path).c_str()); }

void SetAttributes(const std::string& path, DWORD attributes) {
  ASSERT_TRUE(SetFileAttributesW(NativePath(path).c_str(), attributes));
}

// Owner or access list of a file as text ("D:P(A;;FA;;;...)"), empty where the system tells none.
std::wstring SecurityOf(const std::string& path, SECURITY_INFORMATION part) {
  std::vector<std::byte> descriptor(64 * 1024);
  DWORD needed = 0;
  wchar_t* text = nullptr;
  if (!GetFileSecurityW(NativePath(path).c_str(), part, descriptor.data(),
                        static_cast<DWORD>(descriptor.size()), &needed) ||
      !ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor.data(), SDDL_REVISION_1,
                                                            part, &text, nullptr)) {
    return {};
  }
  std::wstring result = text;
  LocalFree(text);
  return result;
}

bool SetAccessList(const std::string& path, const std::wstring& list) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(list.c_str(), SDDL_REVISION_1,
                                                            &descriptor, nullptr)) {
    return false;
  }
  const bool done =
      SetFileSecurityW(NativePath(path).c_str(), DACL_SECURITY_INFORMATION, descriptor) != 0;
  LocalFree(descriptor);
  return done;
}

class SystemFilesTest : public testing::Test {
 protected:
  FileSystem& files_ = SystemFiles();
  TemporaryFolder folder_;

  std::string Put(std::string_view name, std::string_view contents) {
    std::string path = folder_ / name;
    PutFile(path, contents);
    return path;
  }

  void Replace(const std::string& path, std::string_view contents) {
    const auto replacement = files_.OpenForReplacing(path);
    replacement->Write(contents);
    replacement->Commit();
    EXPECT_FALSE(replacement->Damaged());
  }

  std::string Read(const std::string& path) { return ReadWholeFile(*files_.OpenForReading(path)); }
  Names AllNames() { return files_.ListFiles(folder_.path()); }
};

TEST_F(SystemFilesTest, TellsFilesFromFolders) {
  const std::string file = Put("a", "");
  files_.CreateFolder(folder_ / "dir");
  const struct {
    std::string path;
    bool is_file;
    bool is_folder;
  } rows[] = {
      {file, true, false},
      {folder_ / "A", true, false},
      {folder_ / "dir", false, true},
      {folder_ / "dir\\", false, true},
      {folder_.path() + "/dir/", false, true},
      {folder_ / "dir\\..\\a", true, false},
      {folder_ / "a\\", false, false},
      {folder_ / "missing", false, false},
      {folder_ / "missing\\a", false, false},
      {folder_ / "a:stream", false, false},
      {folder_ / "a*", false, false},
      {"NUL", false, false},
      {folder_ / "nul.lst", false, false},
      {"\\\\.\\NUL", false, false},
      {"", false, false},
      {file + std::string(1, '\0') + "x", false, false},
      {folder_ / "\xFF", false, false},
      {"C:\\", false, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(files_.FileExists(row.path), row.is_file) << row.path;
    EXPECT_EQ(files_.FolderExists(row.path), row.is_folder) << row.path;
  }
}

TEST_F(SystemFilesTest, KnowsAFolderByEveryName) {
  const std::string folder = folder_.path();
  std::string capitals = folder;
  std::transform(capitals.begin(), capitals.end(), capitals.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  EXPECT_TRUE(files_.SameFolder(folder, folder + "\\"));
  EXPECT_TRUE(files_.SameFolder(folder, capitals));
  EXPECT_FALSE(files_.SameFolder(folder, folder + "\\.."));
  EXPECT_FALSE(files_.SameFolder(folder, folder_ / "none"));
  files_.CreateFolder(folder_ / "other");
  EXPECT_FALSE(files_.SameFolder(folder, folder_ / "other"));
}

TEST_F(SystemFilesTest, ListsFilesInOrder) {
  EXPECT_EQ(AllNames(), Names{});
  for (const char* const name : {"b.lst", "A.lst", ".hidden", "Ä.lst", "Ω中文.lst", "\U0001F4C4"})
    Put(name, "");
  files_.CreateFolder(folder_ / "dir");
  SetAttributes(folder_ / "b.lst", FILE_ATTRIBUTE_HIDDEN);
  EXPECT_EQ(AllNames(), (Names{".hidden", "A.lst", "b.lst", "Ä.lst", "Ω中文.lst", "\U0001F4C4"}));
  EXPECT_EQ(files_.ListFiles(folder_ / "dir\\"), Names{});
}

TEST_F(SystemFilesTest, ReadsInPieces) {
  const auto reader = files_.OpenForReading(Put("a", "0123456789"));
  EXPECT_EQ(reader->SizeHint(), 10u);
  char buffer[4];
  EXPECT_EQ(reader->Read(buffer, 4), 4u);
  EXPECT_EQ(std::string(buffer, 4), "0123");
  EXPECT_EQ(reader->SizeHint(), 6u);
  EXPECT_EQ(ReadWholeFile(*reader), "456789");
  EXPECT_EQ(reader->Read(buffer, 4), 0u);
}

TEST_F(SystemFilesTest, RefusesBadPaths) {
  Put("a", "old");
  files_.CreateFolder(folder_ / "dir");
  const struct {
    std::string path;
    std::int32_t reading;
    std::int32_t replacing;
  } rows[] = {
      {folder_ / "missing", kFileNotFound, 0},
      {folder_ / "missing\\a", kPathNotFound, kPathNotFound},
      {folder_ / "a\\b", kPathNotFound, kPathNotFound},
      {folder_ / "a\\", kPathNotFound, kPathNotFound},
      {folder_ / "dir", kPathFileAccess, kPathFileAccess},
      {folder_ / "dir\\", kPathFileAccess, kPathFileAccess},
      {"NUL", kPathFileAccess, kPathFileAccess},
      {folder_ / "com1.lst", kPathFileAccess, kPathFileAccess},
      {folder_ / "a:stream", kBadFileName, kBadFileName},
      {folder_ / "a\xFF", kBadFileName, kBadFileName},
      {folder_ / std::string("a\0b", 3), kBadFileName, kBadFileName},
      {"", kBadFileName, kBadFileName},
  };
  for (const auto& row : rows) {
    const auto& path = row.path;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReading(path); }), row.reading) << path;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), row.replacing) << path;
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(path, folder_ / "copy"); }), row.reading) << path;
    EXPECT_FALSE(files_.SameContents(path, folder_ / "a")) << path;
  }
  EXPECT_EQ(AllNames(), Names{"a"});
}

TEST_F(SystemFilesTest, RefusesBadFolders) {
  Put("a", "");
  const struct {
    std::string path;
    std::int32_t listing;
    std::int32_t creating;
  } rows[] = {
      {folder_ / "missing\\x", kPathNotFound, kPathNotFound},
      {folder_ / "a", kPathNotFound, kFileExists},
      {folder_ / "a\\x", kPathNotFound, kPathNotFound},
      {"", kBadFileName, kBadFileName},
      {folder_ / "NUL", kPathFileAccess, kPathFileAccess},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureNumber([&] { files_.ListFiles(row.path); }), row.listing) << row.path;
    EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(row.path); }), row.creating) << row.path;
    EXPECT_NO_THROW(files_.RemoveLeftovers(row.path));
  }
}

TEST_F(SystemFilesTest, ReplacingSwapsAtTheCommitAndLeavesNothing) {
  const std::string path = Put("a.lst", "old contents");
  const auto replacement = files_.OpenForReplacing(path);
  replacement->Write("new");
  EXPECT_EQ(GetFile(path), "old contents");
  replacement->Write(" text");
  replacement->Commit();
  EXPECT_EQ(GetFile(path), "new text");
  EXPECT_EQ(AllNames(), Names{"a.lst"});
  EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kInvalidCall);
}

TEST_F(SystemFilesTest, ReplacingCreatesAMissingFile) {
  Replace(folder_ / "new", "text");
  EXPECT_EQ(GetFile(folder_ / "new"), "text");
  EXPECT_EQ(AllNames(), Names{"new"});
}

TEST_F(SystemFilesTest, ReplacingWithoutCommitLeavesNothing) {
  const std::string path = Put("a", "old");
  for (const std::string& target : {path, folder_ / "new"}) {
    const auto replacement = files_.OpenForReplacing(target);
    replacement->Write(std::string(1'000'000, 'x'));
    EXPECT_EQ(FileNamesIn(folder_.path()).size(), 2u);
  }
  EXPECT_EQ(GetFile(path), "old");
  EXPECT_EQ(FileNamesIn(folder_.path()), Names{"a"});
}

TEST_F(SystemFilesTest, ReplacingTakesPiecesOfEverySize) {
  const std::string path = folder_ / "a";
  std::mt19937 random(7);
  for (const std::size_t largest : {3u, 5000u, 300'000u}) {
    std::string expected;
    const auto replacement = files_.OpenForReplacing(path);
    while (expected.size() < 10 * largest) {
      const std::string piece(random() % largest, static_cast<char>('a' + random() % 26));
      replacement->Write(piece);
      expected += piece;
    }
    replacement->Commit();
    EXPECT_TRUE(GetFile(path) == expected) << largest;
  }
}

TEST_F(SystemFilesTest, ReplacingKeepsAttributes) {
  const std::string path = Put("a.lst", "old");
  constexpr DWORD kAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  SetAttributes(path, kAttributes);
  if ((AttributesOf(path) & kAttributes) != kAttributes)
    GTEST_SKIP() << "NOT TESTED: this file system keeps no attributes";
  Replace(path, "new");
  EXPECT_EQ(AttributesOf(path) & kAttributes, kAttributes);
  EXPECT_EQ(GetFile(path), "new");
}

TEST_F(SystemFilesTest, ReplacingKeepsTheAccessList) {
  const std::string path = Put("a.lst", "old");
  const std::wstring usual = SecurityOf(path, DACL_SECURITY_INFORMATION);
  const std::wstring owner = SecurityOf(path, OWNER_SECURITY_INFORMATION);  // "O:S-1-..."
  ASSERT_GT(owner.size(), 2u);
  ASSERT_TRUE(SetAccessList(path, L"D:P(A;;FA;;;" + owner.substr(2) + L")"));
  const std::wstring own = SecurityOf(path, DACL_SECURITY_INFORMATION);
  if (own == usual) GTEST_SKIP() << "NOT TESTED: this file system keeps no access lists";
  Replace(path, "new");
  EXPECT_EQ(SecurityOf(path, DACL_SECURITY_INFORMATION), own);
  EXPECT_EQ(GetFile(path), "new");
}

TEST_F(SystemFilesTest, AReadOnlyFileIsRefusedAndLeftAlone) {
  const std::string path = Put("a", "old");
  SetAttributes(path, FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files_.CopyFile(Put("b", "new"), path); }), kPermissionDenied);
  EXPECT_EQ(GetFile(path), "old");
  EXPECT_EQ(AllNames(), (Names{"a", "b"}));
  SetAttributes(path, FILE_ATTRIBUTE_NORMAL);
}

// Each row: how another program has the file open, and what becomes of ours.
TEST_F(SystemFilesTest, AFileThatAnotherProgramHasOpenIsLeftAlone) {
  const std::string path = Put("Größe.lst", "old");
  const struct {
    DWORD access;
    DWORD share;
    std::int32_t reading;
    std::int32_t replacing;
  } rows[] = {
      {GENERIC_READ | GENERIC_WRITE, 0, kPermissionDenied, kPermissionDenied},
      {GENERIC_READ, FILE_SHARE_READ, 0, kPermissionDenied},
      {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, 0, kPermissionDenied},
      {GENERIC_READ | GENERIC_WRITE, kShareAll, 0, kPermissionDenied},
      {GENERIC_READ, kShareAll, 0, 0},
  };
  for (const auto& row : rows) {
    const FileHandle other = TryOpen(NativePath(path), row.access, row.share);
    ASSERT_TRUE(other.is_open());
    EXPECT_EQ(FailureNumber([&] { Read(path); }), row.reading);
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), row.replacing);
    EXPECT_EQ(AllNames(), Names{"Größe.lst"});
  }
  EXPECT_EQ(GetFile(path), "old");
}

TEST_F(SystemFilesTest, AReaderDoesNotKeepAFileFromBeingReplaced) {
  const std::string path = Put("a", "old");
  const auto reader = files_.OpenForReading(path);
  Replace(path, "new");
  EXPECT_EQ(ReadWholeFile(*reader), "old");
  EXPECT_EQ(GetFile(path), "new");
}

TEST_F(SystemFilesTest, ASecondReplacementIsRefusedWhileTheFirstLives) {
  for (const std::string& path : {Put("a", "old"), folder_ / "new"}) {
    const auto first = files_.OpenForReplacing(path);
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), kPermissionDenied);
    files_.RemoveLeftovers(folder_.path());
    first->Write("first");
    first->Commit();
    EXPECT_EQ(GetFile(path), "first");
    Replace(path, "second");
    EXPECT_EQ(GetFile(path), "second");
  }
}

TEST_F(SystemFilesTest, ReplacingGoesRoundALeftoverThatCannotBeRemoved) {
  const std::string path = Put("a", "old");
  files_.CreateFolder(folder_ / TemporaryNameFor("a", 0));
  Replace(path, "new");
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(AllNames(), Names{"a"});
}

TEST_F(SystemFilesTest, AFileOfSeveralNamesIsReplacedInPlace) {
  const std::string path = Put("a", "old contents");
  ASSERT_TRUE(
      CreateHardLinkW(NativePath(folder_ / "b").c_str(), NativePath(path).c_str(), nullptr));
  for (const std::string_view contents : {"new", "longer than the old contents", ""}) {
    const auto replacement = files_.OpenForReplacing(path);
    replacement->Write(contents);
    EXPECT_EQ(AllNames(), (Names{"a", "b"}));
    replacement->Commit();
    EXPECT_FALSE(replacement->Damaged());
    EXPECT_EQ(GetFile(folder_ / "b"), contents);
    EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kInvalidCall);
  }
  files_.OpenForReplacing(path)->Write("lost");
  EXPECT_EQ(GetFile(path), "");
}

TEST_F(SystemFilesTest, AFileWithAVeryLongNameIsReplacedInPlace) {
  const std::string path = Put(std::string(250, 'x'), "old");
  Replace(path, "new");
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(AllNames().size(), 1u);
}

TEST_F(SystemFilesTest, AFileThatTheSystemDoesNotReplaceIsOverwritten) {
  const std::string path = Put("a", "old contents");
  files_.CreateFolder(folder_ / "~tessary-a.~old");
  for (const std::string_view contents : {"new", "longer than the old contents"}) {
    Replace(path, contents);
    EXPECT_EQ(GetFile(path), contents);
    EXPECT_EQ(AllNames(), Names{"a"});
  }
}

TEST_F(SystemFilesTest, TakesLongPathsAndNamesOfEveryScript) {
  std::string deep = folder_.path();
  for (const std::string part : {"Größe", "Ω中文", "Жук"}) {
    deep = JoinPath(deep, part + std::string(120, 'x'));
    files_.CreateFolder(deep);
  }
  for (const std::string name : {"Übersicht.lst", "Ω.lst", "中文.lst", "\U0001F4C4 x.lst"}) {
    const std::string path = JoinPath(deep, name);
    Replace(path, "first");
    Replace(path, "second");
    EXPECT_EQ(Read(path), "second");
    files_.CopyFile(path, path + "~");
    EXPECT_TRUE(files_.SameContents(path, path + "~"));
    files_.RenameFile(path + "~", path + "~2");
    EXPECT_TRUE(files_.FileExists(path + "~2"));
  }
  EXPECT_TRUE(files_.FolderExists(deep));
  EXPECT_EQ(files_.ListFiles(deep).size(), 8u);
  files_.RemoveLeftovers(deep);
}

TEST_F(SystemFilesTest, CopiesWholeFilesWithTheirTime) {
  const std::string contents(200'001, '\xE4');
  const std::string from = Put("from", contents);
  const FILETIME time = {0x12345678, 0x01D00000};
  {
    const FileHandle file = TryOpen(NativePath(from), FILE_WRITE_ATTRIBUTES, kShareAll);
    ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &time));
  }
  const std::string other = Put("other", "old and longer");
  for (const std::string& to : {folder_ / "to", other}) {
    files_.CopyFile(from, to);
    EXPECT_TRUE(GetFile(to) == contents);
    const OpenedFile file = OpenRegularFile(NativePath(to), GENERIC_READ, kShareAll);
    EXPECT_EQ(CompareFileTime(&file.info.ftLastWriteTime, &time), 0);
  }
}

TEST_F(SystemFilesTest, TheCopyOfAReadOnlyFileCanBeReplaced) {
  const std::string from = Put("from", "text");
  SetAttributes(from, FILE_ATTRIBUTE_READONLY);
  files_.CopyFile(from, folder_ / "to");
  EXPECT_EQ(AttributesOf(folder_ / "to") & FILE_ATTRIBUTE_READONLY, 0u);
  files_.CopyFile(from, folder_ / "to");
  SetAttributes(from, FILE_ATTRIBUTE_NORMAL);
}

TEST_F(SystemFilesTest, AddsCopiesWithoutReplacingAnything) {
  const std::string from = Put("from", "text");
  EXPECT_TRUE(files_.AddCopy(from, folder_ / "new"));
  EXPECT_EQ(GetFile(folder_ / "new"), "text");
  EXPECT_TRUE(files_.AddCopy(from, Put("same", "text")));
  EXPECT_FALSE(files_.AddCopy(from, Put("other", "other")));
  EXPECT_EQ(GetFile(folder_ / "other"), "other");
  files_.CreateFolder(folder_ / "dir");
  EXPECT_FALSE(files_.AddCopy(from, folder_ / "dir"));
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(from, from); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(from, folder_ / "missing/to"); }), kPathNotFound);
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(folder_ / "missing", folder_ / "to"); }),
            kFileNotFound);
  EXPECT_EQ(AllNames(), (Names{"from", "new", "other", "same"}));
}

TEST_F(SystemFilesTest, ANewFileDoesNotReplaceOneThatCameMeanwhile) {
  const std::string path = folder_ / "a";
  {
    const auto file = OpenNewFile(path);
    file->Write("mine");
    PutFile(path, "other");
    EXPECT_EQ(FailureNumber([&] { file->Commit(); }), kFileExists);
    EXPECT_FALSE(file->Damaged());
  }
  EXPECT_EQ(GetFile(path), "other");
  EXPECT_EQ(FailureNumber([&] { OpenNewFile(path); }), kFileExists);
  EXPECT_EQ(AllNames(), Names{"a"});
}

TEST_F(SystemFilesTest, CopyingOntoItselfFails) {
  const std::string path = Put("a", "text");
  files_.CreateFolder(folder_ / "dir");
  ASSERT_TRUE(
      CreateHardLinkW(NativePath(folder_ / "hard").c_str(), NativePath(path).c_str(), nullptr));
  for (const char* const other : {"a", "A", "hard", "dir\\..\\a", ".\\a"}) {
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(path, folder_ / other); }), kPermissionDenied);
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(folder_ / other, path); }), kPermissionDenied);
    EXPECT_EQ(GetFile(path), "text") << other;
  }
}

TEST_F(SystemFilesTest, CopyingToABadPathFails) {
  const std::string from = Put("from", "text");
  files_.CreateFolder(folder_ / "dir");
  const auto copy_to = [&](const std::string& to) {
    return FailureNumber([&] { files_.CopyFile(from, to); });
  };
  EXPECT_EQ(copy_to(folder_ / "dir"), kPathFileAccess);
  EXPECT_EQ(copy_to(folder_ / "missing\\to"), kPathNotFound);
  EXPECT_EQ(copy_to("NUL"), kPathFileAccess);
  EXPECT_EQ(copy_to(""), kBadFileName);
  EXPECT_EQ(AllNames(), Names{"from"});
}

TEST_F(SystemFilesTest, RenamesToFreeNamesOnly) {
  const std::string path = Put("a", "a");
  Put("taken", "taken");
  files_.CreateFolder(folder_ / "dir");
  const auto rename_to = [&](std::string_view name) {
    return FailureNumber([&] { files_.RenameFile(path, folder_ / name); });
  };
  EXPECT_EQ(rename_to("taken"), kFileExists);
  EXPECT_EQ(rename_to("dir"), kFileExists);
  EXPECT_EQ(rename_to("missing\\a"), kPathNotFound);
  EXPECT_EQ(rename_to("nul"), kPathFileAccess);
  EXPECT_EQ(GetFile(folder_ / "taken"), "taken");
  EXPECT_EQ(rename_to("~a.~1"), 0);
  EXPECT_EQ(GetFile(folder_ / "~a.~1"), "a");
  EXPECT_EQ(rename_to("c"), kFileNotFound);
  const auto rename_folder = [&] { files_.RenameFile(folder_ / "dir", folder_ / "other"); };
  EXPECT_EQ(FailureNumber(rename_folder), kPathFileAccess);
}

TEST_F(SystemFilesTest, ComparesContents) {
  const std::string long_text(200'000, 'x');
  const std::string a = Put("a", long_text);
  EXPECT_TRUE(files_.SameContents(a, Put("b", long_text)));
  EXPECT_FALSE(files_.SameContents(a, Put("b", long_text + "x")));
  EXPECT_FALSE(files_.SameContents(a, Put("b", long_text.substr(1) + "y")));
  EXPECT_TRUE(files_.SameContents(a, a));
}

TEST_F(SystemFilesTest, AFolderIsHeldByOneRunAtATime) {
  auto lock = files_.TryLockFolder(folder_.path());
  EXPECT_NE(lock, nullptr);
  EXPECT_EQ(files_.TryLockFolder(folder_.path()), nullptr);
  EXPECT_TRUE(files_.ListFiles(folder_.path()).empty()) << "the lock is no file of the folder";
  lock.reset();
  EXPECT_NE(files_.TryLockFolder(folder_.path()), nullptr);
  EXPECT_TRUE(std::filesystem::is_empty(LibraryPath(folder_.path())));
}

TEST_F(SystemFilesTest, WhatCannotBeLockedKeepsNobodyAway) {
  for (const std::string& path : {folder_ / "missing", std::string("a\0b", 3)}) {
    const auto lock = files_.TryLockFolder(path);
    EXPECT_NE(lock, nullptr);
    EXPECT_NE(files_.TryLockFolder(path), nullptr);
  }
}

DWORD HandleCount() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

TEST_F(SystemFilesTest, NothingStaysOpen) {
  const std::string path = Put("a", "text");
  files_.CreateFolder(folder_ / "dir");
  const auto use_everything = [&] {
    FailureNumber([&] { files_.CopyFile(path, path); });
    FailureNumber([&] { files_.CopyFile(path, folder_ / "dir"); });
    FailureNumber([&] { files_.OpenForReading(folder_ / "dir"); });
    FailureNumber([&] { files_.ListFiles(path); });
    files_.SameContents(path, folder_ / "dir");
    files_.OpenForReplacing(path);
    Replace(path, "new");
    files_.ReadProfileString(path, "S", "K");
    AllNames();
  };
  use_everything();
  const DWORD before = HandleCount();
  for (int i = 0; i < 20; ++i) use_everything();
  EXPECT_LT(HandleCount(), before + 20);
}

}  // namespace
}  // namespace tessary
