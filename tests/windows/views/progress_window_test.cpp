#include <gmock/gmock.h>

#include <set>

#include "ui/win32/window_controls.h"
#include "windows/views/client.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

using testing::Contains;
using testing::Each;
using testing::EndsWith;
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
    const HWND active = client.Active();
    if (active != client.window()) seen.client_stayed_active = !IsWindow(window);
    return !IsWindow(window);
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
