// What concerns a process as a whole is tried out in one of its own: this program once more.

#include <gtest/gtest.h>

#include "platform/windows/wide_text.h"
#include "support/run_program.h"
#include "windows/component.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

std::string OwnPath() {
  wchar_t path[MAX_PATH] = {};
  const DWORD size = GetModuleFileNameW(nullptr, path, MAX_PATH);
  return Utf8FromWide({path, size});
}

TEST(UnattendedProcess, ShowsNothingAndTakesQuestionsForNo) {
  const ProgramResult run = RunProgram({OwnPath(), {"--unattended"}});
  EXPECT_EQ(run.exit_code, 0) << run.out << run.err;
}

// The resolution that processes started meanwhile find, set back at the end.
class SystemResolutionSetting {
 public:
  explicit SystemResolutionSetting(DWORD resolution) {
    RegCreateKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, nullptr, 0, KEY_ALL_ACCESS,
                    nullptr, &key_, nullptr);
    DWORD size = sizeof before_;
    had_value_ = RegQueryValueExW(key_, kName, nullptr, nullptr, reinterpret_cast<BYTE*>(&before_),
                                  &size) == ERROR_SUCCESS;
    Set(resolution);
  }
  ~SystemResolutionSetting() {
    if (had_value_) {
      Set(before_);
    } else {
      RegDeleteValueW(key_, kName);
    }
    RegCloseKey(key_);
  }
  SystemResolutionSetting(const SystemResolutionSetting&) = delete;
  SystemResolutionSetting& operator=(const SystemResolutionSetting&) = delete;

 private:
  static constexpr const wchar_t* kName = L"LogPixels";

  void Set(DWORD resolution) {
    RegSetValueExW(key_, kName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&resolution),
                   sizeof resolution);
  }

  HKEY key_ = nullptr;
  DWORD before_ = 0;
  bool had_value_ = false;
};

TEST(ScaledProcess, HasTheSameWindowsAtTwiceTheSize) {
  constexpr int kResolution = 192;
  const SystemResolutionSetting setting(kResolution);
  ASSERT_EQ(RunProgram({OwnPath(), {"--resolution"}}).exit_code, kResolution);
  const std::wstring folder = com::NativePath(TESSARY_PICTURES) + L"\\";
  const wchar_t* const pictures[] = {L"progress-192.png", L"protocol-192.png",
                                     L"protocol-smallest-192.png", L"question-192.png",
                                     L"question-report-192.png"};
  for (const wchar_t* picture : pictures) DeleteFileW((folder + picture).c_str());
  const ProgramResult run = RunProgram(
      {OwnPath(),
       {"--gtest_filter=ProgressWindow.Shows*:ProtocolWindow.*:Answers/Question.*/Yes"}});
  EXPECT_EQ(run.exit_code, 0) << run.out;
  for (const wchar_t* picture : pictures) {
    EXPECT_NE(GetFileAttributesW((folder + picture).c_str()), INVALID_FILE_ATTRIBUTES)
        << Utf8FromWide(picture);
  }
}

}  // namespace
}  // namespace tessary::win32
