#include "platform/profile_string.h"

#include <gtest/gtest.h>

#include "platform/path.h"
#include "platform/text.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using namespace std::string_literals;

std::string Utf16(std::string_view ascii, bool big_endian) {
  std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) {
    if (big_endian) bytes.push_back('\0');
    bytes.push_back(c);
    if (!big_endian) bytes.push_back('\0');
  }
  return bytes;
}

// The value of "Version" in "UserSection".
TEST(ProfileStringTest, Finds) {
  const struct {
    const char* name;
    std::string bytes;
    std::string value;
  } rows[] = {
      {"empty file", "", ""},
      {"plain", "[UserSection]\r\nVersion=3\r\nReferenzbeleg=Rechnung\r\n", "3"},
      {"line ends with LF", "[UserSection]\nVersion=3\nX=1\n", "3"},
      {"last line without an end", "[UserSection]\nVersion=3", "3"},
      {"lone CR is an ordinary character", "[UserSection]\nVersion=3\rX=1\n", "3\rX=1"},
      {"CR without LF at the file's end", "[UserSection]\nVersion=3\r", "3\r"},
      {"case", "[USERSECTION]\nvERSION=3\n", "3"},
      {"indented", "  [UserSection]\n\t  Version=3\n", "3"},
      {"blanks around the key", "[UserSection]\n  Version  =3\n", "3"},
      {"tab behind the key belongs to it", "[UserSection]\nVersion\t=3\n", ""},
      {"value as written", "[UserSection]\nVersion= a = b \t\r\n", " a = b \t"},
      {"value with quotes", "[UserSection]\nVersion=\"3\"\n", "\"3\""},
      {"empty value", "[UserSection]\nVersion=\nVersion=3\n", ""},
      {"no such key", "[UserSection]\nVersions=3\n", ""},
      {"key without =", "[UserSection]\nVersion\nVersion=4\n", "4"},
      {"first key counts", "[UserSection]\nVersion=3\nVersion=4\n", "3"},
      {"first section counts", "[UserSection]\nX=1\n[Other]\nVersion=4\n[UserSection]\nVersion=3\n",
       ""},
      {"key of another section", "[Other]\nVersion=4\n[UserSection]\nVersion=3\n", "3"},
      {"key before any section", "Version=4\n[UserSection]\nVersion=3\n", "3"},
      {"indented header ends the section", "[UserSection]\n \t[Other]\nVersion=3\n", ""},
      {"header without ] ends the section", "[UserSection]\n[Other\nVersion=3\n", ""},
      {"header without ] names nothing", "[UserSection\nVersion=3\n", ""},
      {"text behind the header", "[UserSection] ; Kopf\nVersion=3\n", "3"},
      {"text before the header", "x[UserSection]\nVersion=3\n", ""},
      {"braces between", "[UserSection]\n{\nVersion=3\n}\n", "3"},
      {"comment", "[UserSection]\n;Version=4\nVersion=3\n", "3"},
      {"blank lines", "\n\r\n[UserSection]\n\n  \nVersion=3\n", "3"},
      {"Windows-1252 value", "[UserSection]\nVersion=M\xFCller\x80\n", "Müller€"},
      {"Windows-1252 in other lines", "[\xDC]\n\xFF=\xFE\n[UserSection]\nVersion=3\n", "3"},
      {"zero bytes",
       "\0\0\n[UserSection]\nVersion=\0"s
       "3\n",
       "\0"s
       "3"},
      {"UTF-8", "\xEF\xBB\xBF[UserSection]\r\nVersion=Ω\r\n", "Ω"},
      {"UTF-8 with stray bytes", "\xEF\xBB\xBF[UserSection]\nVersion=\xFF\n", "\uFFFD"},
      {"UTF-16 little endian", Utf16("[UserSection]\r\nVersion=3\r\n", false), "3"},
      {"UTF-16 big endian", Utf16("[UserSection]\r\nVersion=3\r\n", true), "3"},
      {"UTF-16 with an odd last byte", Utf16("[UserSection]\nVersion=3\nX=", false) + "x", "3"},
      {"UTF-16 character", Utf16("[UserSection]\nVersion=", true) + "\x03\xA9\0\n"s, "Ω"},
      {"byte-order marks alone", "\xEF\xBB\xBF", ""},
      {"half a byte-order mark", "\xEF\xBB[UserSection]\nVersion=3", ""},
      {"braces only", "{{{{}}}}\n{\n}\n", ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(FindProfileString(row.bytes, "UserSection", "Version"), row.value) << row.name;
}

TEST(ProfileStringTest, UmlautsInNamesIgnoreCase) {
  const std::string bytes =
      "[\xDC"
      "bersicht]\nGR\xD6SSE=1\n";
  EXPECT_EQ(FindProfileString(bytes, "übersicht", "Größe"), "");
  EXPECT_EQ(FindProfileString(bytes, "übersicht", "grösse"), "1");
}

TEST(ProfileStringTest, LongValuesAreCut) {
  const auto find = [](const std::string& value) {
    return FindProfileString("[S]\nK=" + value + "\nL=1\n", "S", "K");
  };
  EXPECT_EQ(find(std::string(2046, 'x')).size(), 2046u);
  EXPECT_EQ(find(std::string(2047, 'x')).size(), 2047u);
  EXPECT_EQ(find(std::string(2048, 'x')).size(), 2047u);
  EXPECT_EQ(find(std::string(10'000'000, 'x')).size(), 2047u);
  EXPECT_EQ(find(std::string(5000, '\xFC')), DecodeWindows1252(std::string(2047, '\xFC')));
}

// Wherever the second key stands: the first block of a file has 4096 bytes.
TEST(ProfileStringTest, SeveralKeysAreFoundInOneReading) {
  constexpr std::string_view kKeys[] = {"Version", "Fehlt", "Beleg", "VERSION"};
  const std::string path = JoinPath("", "a.lst");
  MemoryFiles files;
  for (const std::size_t gap : {0u, 3000u, 4050u, 4080u, 4096u, 5000u, 100'000u}) {
    for (const bool utf16 : {false, true}) {
      const std::string text =
          "[S]\nVersion=3\nX=" + std::string(gap, 'x') + "\nBeleg=Rechnung\n[T]\nFehlt=1\n";
      files.Put(path, utf16 ? Utf16(text, false) : text);
      const auto values = FindProfileStrings(*files.OpenForReading(path), "s", kKeys);
      EXPECT_EQ(values, (std::vector<std::string>{"3", "", "Rechnung", "3"})) << gap;
      EXPECT_EQ(files.ReadProfileStrings(path, "s", kKeys), values);
    }
  }
  EXPECT_TRUE(FindProfileStrings(*files.OpenForReading(path), "S", {}).empty());
}

}  // namespace
}  // namespace tessary
