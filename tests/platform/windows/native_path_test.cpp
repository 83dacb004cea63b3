#include "platform/windows/native_path.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

TEST(NativePathTest, DeviceNames) {
  const struct {
    const char* name;
    bool is_device;
  } rows[] = {
      {"NUL", true},       {"nul", true},       {"nul.lst", true},    {"Nul .lst", true},
      {"CON", true},       {"prn.a.b", true},   {"AUX ", true},       {"COM1", true},
      {"com9.lst", true},  {"COM\u00B9", true}, {"lpt3", true},       {"CONIN$", true},
      {"conout$", true},   {"COM", false},      {"COM10", false},     {"COMx", false},
      {"LPTX.lst", false}, {"NULL", false},     {"Nul1", false},      {"xNUL", false},
      {"", false},         {".", false},        {".nul", false},      {"Kontrolle.lst", false},
      {"3_4NUL", false},   {"CONIN", false},    {"COM\u2074", false},
  };
  for (const auto& row : rows) EXPECT_EQ(IsDeviceName(row.name), row.is_device) << row.name;
}

TEST(NativePathTest, OnlyLongPathsGetThePrefix) {
  const std::wstring name(300, L'x');
  const std::wstring fitting = L"C:\\" + std::wstring(kLongestOrdinaryPath - 3, L'x');
  const struct {
    std::wstring path;
    std::wstring native;
  } rows[] = {
      {L"C:\\a", L"C:\\a"},
      {fitting, fitting},
      {fitting + L"x", L"\\\\?\\" + fitting + L"x"},
      {L"\\\\server\\share\\a", L"\\\\server\\share\\a"},
      {L"\\\\server\\share\\" + name, L"\\\\?\\UNC\\server\\share\\" + name},
      {L"\\\\?\\C:\\" + name, L"\\\\?\\C:\\" + name},
  };
  for (const auto& row : rows) EXPECT_TRUE(WithLongPathPrefix(row.path) == row.native);
}

TEST(NativePathTest, WhatIsNoPathIsRefused) {
  const struct {
    std::string path;
    std::int32_t number;
  } rows[] = {
      {"", kBadFileName},
      {std::string("C:\\a\0b", 6), kBadFileName},
      {"C:\\a\xFF", kBadFileName},
      {"C:\\a:b", kBadFileName},
      {"Bericht.lst:strom", kBadFileName},
      {"\\\\server\\share\\a:b", kBadFileName},
      {"NUL", kPathFileAccess},
      {"C:\\x\\com1.lst", kPathFileAccess},
      {"\\\\.\\PhysicalDrive0", kPathFileAccess},
      {"\\\\.\\C:\\a", kPathFileAccess},
      {"C:\\a", 0},
      {"C:a", 0},
      {"\\\\?\\C:\\a", 0},
  };
  for (const auto& row : rows)
    EXPECT_EQ(FailureNumber([&] { NativePath(row.path); }), row.number) << row.path;
}

TEST(NativePathTest, Parts) {
  EXPECT_EQ(NativeFolderOf(L"C:\\dir\\a.lst"), L"C:\\dir\\");
  EXPECT_EQ(NativeFileName(L"C:\\dir\\Gr\u00F6\u00DFe.lst"), "Größe.lst");
  EXPECT_EQ(NativeSibling(L"C:\\dir\\a.lst", "ä"), L"C:\\dir\\\u00E4");
}

}  // namespace
}  // namespace tessary
