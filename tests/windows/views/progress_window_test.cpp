#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "ui/win32/window_controls.h"
#include "windows/views/client.h"
#include "windows/views/window_reader.h"

// The second needs the first.
// clang-format off
#include "platform/windows/system_headers.h"
#include <tlhelp32.h>
// clang-format on

namespace tessary::win32 {
namespace {

using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr wchar_t kCaption[] = L"Bitte warten ...";
constexpr int kReports = 60;

// What somebody sees who looks at the window again and again.
struct Seen {
  std::set<std::string> steps;
  std::set<LRESULT> bar;
  bool client_stayed_active = true;
};

Seen LookUntilGone(HWND window, const Client& client) {
  Seen seen;
  const HWND step = ControlOf(window, kLblProcess);
  const HWND bar = ControlOf(window, kProgressBar1);
  WaitUntil([&] {
    const std::string text = TextOf(step);
    if (text.empty()) return !IsWindow(window);  // it has gone since
    seen.steps.insert(text);
    seen.bar.insert(SendMessageW(bar, PBM_GETPOS, 0, 0));
    const bool active = client.Active() == client.window() && client.Focus() == client.window();
    const bool gone = !IsWindow(window);
    seen.client_stayed_active = seen.client_stayed_active && (active || gone);
    return gone;
  });
  return seen;
}

TEST(ProgressWindow, ShowsTitleStepsAndMovingBarWhileReportsAreConverted) {
  const ReportFolders folders(kReports);
  bool succeeded = false;
  Client client([&](Client& self) {
    succeeded = self.ConvertReports(folders.differences(), folders.reports());
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  EXPECT_EQ(TextOf(ControlOf(window, kLblCaptionBold)), "Berichtskonvertierung");
  EXPECT_EQ(TextOf(ControlOf(window, kLblCaptionNormal)), "List & Label");
  const HWND bar = ControlOf(window, kProgressBar1);
  WaitUntil([bar] { return !IsWindow(bar) || SendMessageW(bar, PBM_GETPOS, 0, 0) > 10; });
  SavePicture(window, "progress");
  EXPECT_THAT(ClippedTexts(window), IsEmpty());
  const int resolution = SystemResolution();
  EXPECT_EQ(FontNameOf(ControlOf(window, kLblCaptionBold)), "Tahoma bold");
  EXPECT_EQ(FontHeightOf(ControlOf(window, kLblCaptionBold)), MulDiv(39, resolution, 288));
  for (const int id : {kLblCaptionNormal + 0, kLblProcess + 0}) {
    EXPECT_EQ(FontNameOf(ControlOf(window, id)), "Tahoma");
    EXPECT_EQ(FontHeightOf(ControlOf(window, id)), MulDiv(33, resolution, 288));
  }
  const Seen seen = LookUntilGone(window, client);
  const Heard& heard = client.Join();
  EXPECT_TRUE(succeeded);
  EXPECT_TRUE(seen.client_stayed_active);
  EXPECT_GE(seen.bar.size(), 3u);
  EXPECT_THAT(seen.steps, Each(EndsWith(" ...")));
  for (const std::string& step : seen.steps) EXPECT_THAT(heard.steps, Contains(step));
  EXPECT_THAT(heard.titles, Each("Berichtskonvertierung"));
}

TEST(ProgressWindow, NamesEveryStepAndGoesRoundUntilItIsFull) {
  const ReportFolders folders(kReports);
  HCURSOR after = nullptr;
  const HCURSOR own = LoadCursorW(nullptr, IDC_CROSS);
  Client client([&](Client& self) {
    SetCursor(own);
    self.ConvertReports(folders.differences(), folders.reports());
    after = GetCursor();
  });
  const Heard& heard = client.Join();
  ASSERT_FALSE(heard.bar.empty());
  // The label gets its text once when it is made.
  ASSERT_GE(heard.steps.size(), 4u * kReports + 1);
  EXPECT_EQ(heard.steps.front(), "Berichtskonvertierung wird vorbereitet ...");
  for (const char* step : {"Differenzdatei wird gelesen ...", "Berichtsdatei wird gelesen ...",
                           "Bericht Bericht 7.lst wird von Version 3 nach 4 konvertiert ...",
                           "Bericht Bericht 7.lst wird von Version 3 nach 4 aktualisiert ..."}) {
    EXPECT_THAT(heard.steps, Contains(step));
  }
  for (std::size_t i = 1; i + 1 < heard.bar.size(); ++i) {
    EXPECT_EQ(heard.bar[i], heard.bar[i - 1] == 100 ? 0 : heard.bar[i - 1] + 1);
  }
  EXPECT_EQ(heard.bar.back(), 100);
  EXPECT_THAT(heard.pointers, Contains(LoadCursorW(nullptr, IDC_WAIT)));
  EXPECT_EQ(after, own) << "the pointer is given back";
}

TEST(ProgressWindow, HourglassStaysOverTheClientsWindow) {
  const ReportFolders folders(kReports);
  Client client([&](Client& self) {
    SetCursor(LoadCursorW(nullptr, IDC_CROSS));
    self.ConvertReports(folders.differences(), folders.reports());
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const HWND clients = client.window();
  // The system sends this when the mouse moves; the window answers by setting its own pointer.
  while (IsWindow(window)) {
    SendMessageW(clients, WM_SETCURSOR, reinterpret_cast<WPARAM>(clients),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    Sleep(10);
  }
  const std::vector<HCURSOR> pointers = client.Join().pointers;
  const HCURSOR hourglass = LoadCursorW(nullptr, IDC_WAIT);
  const auto first = std::find(pointers.begin(), pointers.end(), hourglass);
  ASSERT_NE(first, pointers.end());
  EXPECT_THAT(std::vector<HCURSOR>(first, pointers.end()), Each(hourglass));
}

TEST(ProgressWindow, TellsItsBarOfNewColours) {
  const ReportFolders folders(kReports);
  Client client(
      [&](Client& self) { self.ConvertReports(folders.differences(), folders.reports()); });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  SendMessageW(window, WM_SYSCOLORCHANGE, 0, 0);
  EXPECT_THAT(client.Join().colours, Contains(int{kProgressBar1}));
}

TEST(ProgressWindow, LeavesARequestToEndTheProgramToTheClient) {
  const ReportFolders folders(kReports);
  bool succeeded = false;
  MSG last{};
  Client client([&](Client& self) {
    succeeded = self.ConvertReports(folders.differences(), folders.reports());
    while (PeekMessageW(&last, nullptr, 0, 0, PM_REMOVE) && last.message != WM_QUIT) {
      DispatchMessageW(&last);
    }
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  PostThreadMessageW(client.thread_id(), WM_QUIT, 17, 0);
  client.Join();
  EXPECT_TRUE(succeeded);
  EXPECT_EQ(last.message, UINT{WM_QUIT});
  EXPECT_EQ(last.wParam, 17u);
}

// The paths of the modules of this process that have this name, in small letters.
std::vector<std::wstring> LoadedModules(const std::wstring& name) {
  std::vector<std::wstring> paths;
  const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, GetCurrentProcessId());
  MODULEENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Module32FirstW(modules, &entry); more; more = Module32NextW(modules, &entry)) {
    if (CompareStringOrdinal(entry.szModule, -1, name.c_str(), -1, TRUE) != CSTR_EQUAL) continue;
    CharLowerW(entry.szExePath);
    paths.emplace_back(entry.szExePath);
  }
  CloseHandle(modules);
  return paths;
}

TEST(ProgressWindow, IsMadeOfTheNewerCommonControls) {
  const ReportFolders folders(kReports);
  EXPECT_THAT(LoadedModules(L"comctl32.dll"), IsEmpty()) << "this program does without them";
  Client client(
      [&](Client& self) { self.ConvertReports(folders.differences(), folders.reports()); });
  ASSERT_TRUE(WaitForWindow(kCaption));
  EXPECT_THAT(LoadedModules(L"comctl32.dll"), Contains(HasSubstr(L"\\winsxs\\")));
}

TEST(ProgressWindow, IsCentredOnTheClientAndCannotBeClosed) {
  const ReportFolders folders(kReports);
  Client client(
      [&](Client& self) { self.ConvertReports(folders.differences(), folders.reports()); });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const RECT own = PlaceOf(window);
  const RECT clients = PlaceOf(client.window());
  EXPECT_NEAR(own.left + own.right, clients.left + clients.right, 2);
  EXPECT_NEAR(own.top + own.bottom, clients.top + clients.bottom, 2);
  EXPECT_EQ(GetWindow(window, GW_OWNER), client.window());
  EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & WS_SYSMENU, 0) << "has no close button";
  PostMessageW(window, WM_CLOSE, 0, 0);
  PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
  // The bar moves only when nothing else waits to be handled.
  const HWND bar = ControlOf(window, kProgressBar1);
  WaitUntil([bar] { return !IsWindow(bar) || SendMessageW(bar, PBM_GETPOS, 0, 0) > 10; });
  EXPECT_TRUE(IsWindow(window)) << "is there as long as the work goes on";
  client.Join();
  EXPECT_FALSE(IsWindow(window));
}

TEST(ProgressWindow, ComparisonsHaveTheirOwnTitle) {
  const ReportFolders folders(0);
  Client client([&](Client& self) {
    self.CreateDiffFiles(folders.old_release(), folders.new_release(), folders.differences());
  });
  const Heard& heard = client.Join();
  ASSERT_FALSE(heard.titles.empty());
  EXPECT_EQ(heard.titles.back(), "Berichtsvergleich");
  EXPECT_EQ(heard.steps.front(), "Erstellen der Differrenzdateien wird vorbereitet ...");
}

TEST(ProgressWindow, FollowsAChangeOfResolution) {
  const ReportFolders folders(kReports);
  Client client(
      [&](Client& self) { self.ConvertReports(folders.differences(), folders.reports()); });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const int resolution = 2 * SystemResolution();
  const SIZE before = ClientSizeOf(window);
  const int font = FontHeightOf(ControlOf(window, kLblCaptionBold));
  RECT place = PlaceOf(window);
  SendMessageW(window, WM_DPICHANGED, static_cast<WPARAM>(MAKELONG(resolution, resolution)),
               reinterpret_cast<LPARAM>(&place));
  EXPECT_EQ(ClientSizeOf(window).cx, 2 * before.cx);
  EXPECT_NEAR(FontHeightOf(ControlOf(window, kLblCaptionBold)), 2 * font, 1);
  EXPECT_THAT(ClippedTexts(window), IsEmpty());
}

}  // namespace
}  // namespace tessary::win32
