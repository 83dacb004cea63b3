#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "platform/file_system.h"
#include "support/memory_files.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

TEST(StampTest, IsAnotherOneAfterEveryChange) {
  FileSystem& files = SystemFiles();
  const TemporaryFolder folder;
  const std::string path = folder / "a.lst";
  const auto put = [&](const std::string& contents, std::chrono::seconds later) {
    static const auto begin = fs::file_time_type::clock::now();
    PutFile(path, contents);
    fs::last_write_time(path, begin + later);
  };
  put("one", std::chrono::seconds(0));
  const std::string stamp = files.StampOf(path);
  EXPECT_FALSE(stamp.empty());
  EXPECT_EQ(GetFile(path), "one");
  EXPECT_EQ(files.StampOf(path), stamp);

  put("two", std::chrono::seconds(2));
  EXPECT_NE(files.StampOf(path), stamp) << "written to later";
  put("three", std::chrono::seconds(0));
  EXPECT_NE(files.StampOf(path), stamp) << "of another size";
  put("two", std::chrono::seconds(0));
  EXPECT_NE(files.StampOf(path), stamp) << "with the time put back";
  fs::copy_file(path, folder / "b.lst");
  fs::last_write_time(folder / "b.lst", fs::last_write_time(path));
  EXPECT_NE(files.StampOf(folder / "b.lst"), stamp) << "another file";
}

TEST(StampTest, WhatIsNoFileHasNone) {
  FileSystem& files = SystemFiles();
  const TemporaryFolder folder;
  EXPECT_EQ(files.StampOf(folder.path()), "");
  EXPECT_EQ(files.StampOf(folder / "none"), "");
  EXPECT_EQ(files.StampOf(""), "");
}

TEST(StampTest, FilesInMemoryAreToldApartByTheirContents) {
  MemoryFiles files;
  files.Put("/a", "one");
  files.Put("/b", "one");
  const std::string stamp = files.StampOf("/a");
  EXPECT_NE(files.StampOf("/b"), stamp);
  files.Put("/a", "two");
  EXPECT_NE(files.StampOf("/a"), stamp);
  EXPECT_EQ(files.StampOf("/none"), "");
}

}  // namespace
}  // namespace tessary
