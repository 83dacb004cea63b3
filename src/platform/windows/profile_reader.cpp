#include "platform/windows/profile_reader.h"

#include "platform/profile_string.h"
#include "platform/text.h"
#include "platform/windows/native_path.h"
#include "platform/windows/system_headers.h"
#include "platform/windows/wide_text.h"

namespace tessary {

namespace {

constexpr std::size_t kBufferSize = 2048;
constexpr UINT kReportCodePage = 1252;

bool IsReadableBySystem(std::string_view beginning, const std::wstring& path) {
  if (path.size() > kLongestOrdinaryPath) return false;
  if (beginning.starts_with("\xFF\xFE")) return true;
  const bool foreign = beginning.starts_with("\xEF\xBB\xBF") || beginning.starts_with("\xFE\xFF");
  return !foreign && GetACP() == kReportCodePage;
}

std::string FirstBytes(FileReader& file) {
  std::string bytes(4, '\0');
  bytes.resize(file.Read(bytes.data(), bytes.size()));
  return bytes;
}

}  // namespace

std::string SystemProfileString(FileReader& file, const std::string& path, std::string_view section,
                                std::string_view key) {
  const std::wstring native = NativePath(path);
  std::string bytes = FirstBytes(file);
  if (!IsReadableBySystem(bytes, native))
    return FindProfileString(bytes.append(ReadWholeFile(file)), section, key);
  std::wstring value(kBufferSize, L'\0');
  const DWORD size =
      GetPrivateProfileStringW(WideFromUtf8(section).c_str(), WideFromUtf8(key).c_str(), L"",
                               value.data(), static_cast<DWORD>(value.size()), native.c_str());
  value.resize(size);
  return ToValidUtf8(Utf8FromWide(value));
}

}  // namespace tessary
