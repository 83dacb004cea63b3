#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/text.h"
#include "windows/component.h"

namespace tessary::com {
namespace {

// A text of a file's German version resource; empty when there is none.
std::string VersionText(const std::wstring& path, const std::wstring& name) {
  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &unused));
  void* text = nullptr;
  UINT size = 0;
  if (block.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueW(block.data(), (L"\\StringFileInfo\\040704B0\\" + name).c_str(), &text,
                      &size)) {
    return {};
  }
  return ToUtf8(Bstr(std::wstring_view(static_cast<const wchar_t*>(text))).get());
}

TEST(VersionResource, TellsWhatTheFilesAre) {
  const struct {
    const char* path;
    std::string name, description;
  } files[] = {
      {TESSARY_DLL, "Tessary.dll",
       "Umstellung von List & Label Berichten auf neue Programmversionen"},
      {TESSARY_BINARY, "tessary.exe",
       "Tessary: Abgleich und Übernahme von Berichtsänderungen (Kommandozeile)"},
  };
  for (const auto& file : files) {
    const std::wstring path = NativePath(file.path);
    EXPECT_EQ(VersionText(path, L"ProductName"), "Tessary");
    EXPECT_EQ(VersionText(path, L"OriginalFilename"), file.name);
    EXPECT_EQ(VersionText(path, L"FileDescription"), file.description);
    EXPECT_EQ(VersionText(path, L"ProductVersion"), TESSARY_VERSION);
    EXPECT_EQ(VersionText(path, L"FileVersion"), TESSARY_VERSION);
  }
}

}  // namespace
}  // namespace tessary::com
