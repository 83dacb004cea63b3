#include <gmock/gmock.h>

#include "platform/path.h"
#include "platform/windows/wide_text.h"
#include "ui/win32/window_controls.h"
#include "windows/views/client.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr wchar_t kCaption[] = L"TALVERO Fehlerprotokoll";
constexpr int kPanes = 5;

// A client that converts one report and then fails at one whose name is long.
class ProtocolWindow : public testing::Test {
 protected:
  std::string Missing(int number) const {
    return folders_ / ("Ein Bericht mit einem langen Namen, der in keine Zeile passt und trotzdem "
                       "gelesen werden kann " +
                       std::to_string(number) + ".lst");
  }
  bool FailAt(Client& client, int number) const {
    return client.ConvertReport(Missing(number), folders_.difference_file(), "");
  }
  Client::Work SucceedAndFail() const {
    return [this](Client& client) {
      client.ConvertReport(folders_.report(1), folders_.difference_file(), "");
      FailAt(client, 1);
    };
  }
  std::string FailedNodes(int number) const {
    return "-Konvertierung des Berichts " + Missing(number) + " fehlgeschlagen.\n" +
           "  !Die Datei " + Missing(number) + " existiert nicht.\n";
  }
  static void Close(HWND window) {
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitUntilGone(window));
  }
  static HTREEITEM FirstFailed(HWND tree) {
    const auto next = [tree](WPARAM relation, LPARAM item) {
      return SendMessageW(tree, TVM_GETNEXTITEM, relation, item);
    };
    return reinterpret_cast<HTREEITEM>(next(TVGN_NEXT, next(TVGN_ROOT, 0)));
  }
  static void Expand(HWND tree) {
    const HTREEITEM failed = FirstFailed(tree);
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(failed));
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(failed));
  }

  const std::string success_ =
      "+Der Bericht Bericht 1.lst wurde erfolgreich von Version 3 nach 4 konvertiert.\n";
  ReportFolders folders_{1};
};

TEST_F(ProtocolWindow, ShowsEveryTextAndNode) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const std::string folder = ParentFolderOf(Utf8FromWide(com::NativePath(TESSARY_DLL)));
  const struct {
    int id;
    std::string text;
  } rows[] = {
      {kLabel3, "Berichtskonvertierung"},
      {kLabel1, "Fehlerprotokoll"},
      {kCmdClose, "Schließen"},
      {kLabel2,
       "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile möglicherweise "
       "nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen zu korrigieren:"},
      {kLabel11, "1."},
      {kLabel11 + 1, "2."},
      {kLabel11 + 2, "3."},
      {kLabel11 + 3, "4."},
      {kLabel11 + 4, "5."},
      {kStepText, "Starten Sie die Konvertierung erneut über:"},
      {kStepPath, folder + "\\Velquist.exe"},
      {kStepText + 1, "Wählen Sie das Verzeichnis für die Differenz-Berichte aus: "},
      {kStepPath + 1, folder + "\\DB\\BerichteLLDiff"},
      {kStepText + 2, "Wählen Sie das Verzeichnis für die Berichte aus: "},
      {kStepPath + 2, folder + "\\DB\\BerichteLLOrg"},
      {kStepText + 3, "Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.)."},
      {kStepText + 4,
       "Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit den "
       "Ursprungsberichten im Verzeichnis:"},
      {kStepPath + 4, folder + "\\DB\\BerichteLLBak"},
  };
  for (const auto& row : rows) EXPECT_EQ(TextOf(ControlOf(window, row.id)), row.text) << row.id;
  const HWND tree = ControlOf(window, kTreeView1);
  EXPECT_EQ(NodesOf(tree), success_ + FailedNodes(1));
  const auto failed = reinterpret_cast<WPARAM>(FirstFailed(tree));
  EXPECT_EQ(SendMessageW(tree, TVM_GETITEMSTATE, failed, TVIS_EXPANDED) & TVIS_EXPANDED, 0)
      << "nodes are not expanded by the window";
  EXPECT_THAT(ClippedTexts(window), IsEmpty());
  Expand(tree);
  SavePicture(window, "protocol");
  Close(window);
}

TEST_F(ProtocolWindow, HasTheArrowAndGivesTheClientsPointerBack) {
  const HCURSOR own = LoadCursorW(nullptr, IDC_CROSS);
  HCURSOR after = nullptr;
  Client client([&](Client& self) {
    SetCursor(own);
    FailAt(self, 1);
    after = GetCursor();
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  SendMessageW(window, WM_SYSCOLORCHANGE, 0, 0);
  Close(window);
  const Heard& heard = client.Join();
  EXPECT_EQ(heard.pointer_at.at("TALVERO Fehlerprotokoll"), LoadCursorW(nullptr, IDC_ARROW));
  EXPECT_EQ(after, own);
  EXPECT_THAT(heard.colours, Contains(int{kTreeView1})) << "the tree is told of new colours";
}

TEST_F(ProtocolWindow, HasTheNamedFonts) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const int resolution = SystemResolution();
  EXPECT_EQ(FontNameOf(ControlOf(window, kLabel3)), "Tahoma bold");
  EXPECT_EQ(FontHeightOf(ControlOf(window, kLabel3)), MulDiv(39, resolution, 288));
  for (const int id : {kLabel1 + 0, kTreeView1 + 0, kLabel2 + 0, kCmdClose + 0}) {
    EXPECT_EQ(FontNameOf(ControlOf(window, id)), "Tahoma");
    EXPECT_EQ(FontHeightOf(ControlOf(window, id)), MulDiv(33, resolution, 288));
  }
  EXPECT_EQ(FontNameOf(ControlOf(window, kStepPath)),
            resolution <= 96 ? "MS Sans Serif" : "Microsoft Sans Serif");
  Close(window);
}

TEST_F(ProtocolWindow, IsModalToTheClientsWindowAndGivesItBack) {
  BOOL enabled_after = FALSE;
  HWND active_after = nullptr;
  Client client([&](Client& self) {
    FailAt(self, 1);
    enabled_after = IsWindowEnabled(self.window());
    active_after = GetActiveWindow();
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  EXPECT_EQ(GetWindow(window, GW_OWNER), client.window());
  EXPECT_FALSE(IsWindowEnabled(client.window()));
  Close(window);
  client.Join();
  EXPECT_TRUE(enabled_after);
  EXPECT_EQ(active_after, client.window());
}

TEST_F(ProtocolWindow, IsClosedByKeyboardAndShowsTheLogAsItIsThen) {
  Client client([&](Client& self) {
    FailAt(self, 1);
    FailAt(self, 2);
    self.ShowErrorProtocol();
  });
  const struct {
    WPARAM key;
    std::string nodes;
  } rows[] = {{VK_ESCAPE, FailedNodes(1)},
              {VK_RETURN, FailedNodes(1) + FailedNodes(2)},
              {VK_ESCAPE, FailedNodes(1) + FailedNodes(2)}};
  for (const auto& row : rows) {
    const HWND window = WaitForWindow(kCaption);
    ASSERT_TRUE(window);
    const HWND tree = ControlOf(window, kTreeView1);
    EXPECT_EQ(NodesOf(tree), row.nodes);
    PostMessageW(tree, WM_KEYDOWN, row.key, 0);
    EXPECT_TRUE(WaitUntilGone(window));
  }
}

TEST_F(ProtocolWindow, CloseButtonIsReachedByTabAndCloses) {
  Client client([&](Client& self) { FailAt(self, 1); });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const HWND tree = ControlOf(window, kTreeView1);
  const HWND button = ControlOf(window, kCmdClose);
  EXPECT_TRUE(WaitUntil([&] { return client.Focus() == tree; }));
  PostMessageW(tree, WM_KEYDOWN, VK_TAB, 0);
  EXPECT_TRUE(WaitUntil([&] { return client.Focus() == button; }));
  PostMessageW(button, WM_KEYDOWN, VK_TAB, 0);
  EXPECT_TRUE(WaitUntil([&] { return client.Focus() == tree; }));
  PostMessageW(button, BM_CLICK, 0, 0);
  EXPECT_TRUE(WaitUntilGone(window));
}

TEST_F(ProtocolWindow, PanesKeepOneCommonWidth) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const SIZE sizes[] = {{1100, 900}, {700, 800}, {10, 10}};
  for (const SIZE& size : sizes) {
    SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER);
    const SIZE inside = ClientSizeOf(window);
    LONG height = 0;
    for (int i = 0; i < kPanes; ++i) {
      const HWND pane = GetDlgItem(window, kFirstPane + i);
      EXPECT_EQ(ClientSizeOf(pane).cx, inside.cx) << i;
      EXPECT_EQ(TextOf(pane), "") << "screen readers would read it";
      height += ClientSizeOf(pane).cy;
    }
    EXPECT_EQ(height, inside.cy);
    EXPECT_THAT(ClippedTexts(window), IsEmpty()) << size.cx << " x " << size.cy;
  }
  EXPECT_GE(ClientSizeOf(window).cx, 400 * SystemResolution() / 96) << "the least width";
  // The scroll bar below them may take the place of one row.
  EXPECT_GE(ClientSizeOf(ControlOf(window, kTreeView1)).cy, 5 * 20 * SystemResolution() / 96);
  SavePicture(window, "protocol-smallest");
  Close(window);
}

TEST_F(ProtocolWindow, FollowsAChangeOfResolution) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const HWND tree = ControlOf(window, kTreeView1);
  const int before = SystemResolution();
  const int resolution = before == 96 ? 144 : 96;
  RECT place{20, 10, 20 + 700 * resolution / 96, 10 + 720 * resolution / 96};
  SendMessageW(window, WM_DPICHANGED, static_cast<WPARAM>(MAKELONG(resolution, resolution)),
               reinterpret_cast<LPARAM>(&place));
  const RECT now = PlaceOf(window);
  EXPECT_TRUE(EqualRect(&now, &place));
  EXPECT_EQ(FontHeightOf(ControlOf(window, kLabel3)), MulDiv(39, resolution, 288));
  EXPECT_EQ(FontHeightOf(tree), MulDiv(33, resolution, 288));
  EXPECT_GE(SendMessageW(tree, TVM_GETITEMHEIGHT, 0, 0), 20 * resolution / 96);
  EXPECT_THAT(ClippedTexts(window), IsEmpty());
  Expand(tree);
  SavePicture(window, "protocol-moved-to-" + std::to_string(resolution));
  Close(window);
}

TEST_F(ProtocolWindow, LongMessagesAreShownWholeAsTips) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const HWND tree = ControlOf(window, kTreeView1);
  const auto tip_of = [&](HTREEITEM item, LPARAM index) {
    wchar_t text[1024] = {};
    NMTVGETINFOTIPW tip{};
    tip.hdr = {tree, kTreeView1, TVN_GETINFOTIPW};
    tip.pszText = text;
    tip.cchTextMax = 1024;
    tip.hItem = item;
    tip.lParam = index;
    SendMessageW(GetParent(tree), WM_NOTIFY, kTreeView1, reinterpret_cast<LPARAM>(&tip));
    return Utf8FromWide(text);
  };
  EXPECT_EQ(tip_of(FirstFailed(tree), 1),
            "Konvertierung des Berichts " + Missing(1) + " fehlgeschlagen.");
  SetWindowPos(window, nullptr, 0, 0, 1900, 1000, SWP_NOZORDER);
  const auto first = reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
  EXPECT_EQ(tip_of(first, 0), "") << "what is seen needs no tip";
  EXPECT_NE(GetWindowLongPtrW(tree, GWL_STYLE) & TVS_INFOTIP, 0);
  Close(window);
}

std::string ClipboardText() {
  if (!OpenClipboard(nullptr)) return {};
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  const auto* text = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
  const std::string utf8 = text ? Utf8FromWide(text) : std::string();
  if (data) GlobalUnlock(data);
  CloseClipboard();
  return utf8;
}

TEST_F(ProtocolWindow, ControlAndCCopyTheSelectedReportWithItsMessages) {
  Client client(SucceedAndFail());
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  const HWND tree = ControlOf(window, kTreeView1);
  Expand(tree);
  // The state of the keyboard is shared for a moment to hold the key down.
  ASSERT_TRUE(AttachThreadInput(GetCurrentThreadId(), client.thread_id(), TRUE));
  BYTE keys[256] = {};
  GetKeyboardState(keys);
  keys[VK_CONTROL] = 0x80;
  SetKeyboardState(keys);
  SendMessageW(tree, WM_KEYDOWN, 'C', 0);
  keys[VK_CONTROL] = 0;
  SetKeyboardState(keys);
  AttachThreadInput(GetCurrentThreadId(), client.thread_id(), FALSE);
  const std::string expected = "Konvertierung des Berichts " + Missing(1) +
                               " fehlgeschlagen.\r\n\tDie Datei " + Missing(1) +
                               " existiert nicht.\r\n";
  EXPECT_EQ(ClipboardText(), expected);
  Close(window);
}

TEST_F(ProtocolWindow, IsNotShownForSuccessesAlone) {
  bool succeeded = false;
  Client client([&](Client& self) {
    succeeded = self.ConvertReport(folders_.report(1), folders_.difference_file(), "");
    self.ShowErrorProtocol();
  });
  const Heard& heard = client.Join();  // a modal window would keep it from ending
  EXPECT_TRUE(succeeded);
  EXPECT_THAT(heard.captions, Contains("Bitte warten ..."));
  EXPECT_THAT(heard.captions, Not(Contains("TALVERO Fehlerprotokoll")));
}

// A window of another thread that comes in front of the client's, as another program's would.
class WindowInFront {
 public:
  WindowInFront() { SetForegroundWindow(window_); }
  ~WindowInFront() { DestroyWindow(window_); }
  WindowInFront(const WindowInFront&) = delete;
  WindowInFront& operator=(const WindowInFront&) = delete;

 private:
  HWND window_ = CreateWindowExW(0, L"STATIC", L"Anderes Programm", WS_POPUP | WS_VISIBLE, 0, 0,
                                 200, 100, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(ProtocolWindow, IsModalToTheClientsWindowThatWasActiveWhenTheOperationBegan) {
  PutFile(folders_ / "Datei", "x");
  BOOL enabled_after = FALSE;
  Client client([&](Client& self) {
    self.ConvertReport(folders_.report(1), folders_ / "fehlt", folders_ / "Datei/Sicherung");
    enabled_after = IsWindowEnabled(self.window());
  });
  const HWND question = WaitForQuestion();
  ASSERT_TRUE(question);
  const WindowInFront other;
  ASSERT_TRUE(WaitUntil([&] { return client.Active() == nullptr; }));
  PostMessageW(GetDlgItem(question, IDYES), BM_CLICK, 0, 0);
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  EXPECT_EQ(GetWindow(window, GW_OWNER), client.window());
  EXPECT_FALSE(IsWindowEnabled(client.window()));
  Close(window);
  client.Join();
  EXPECT_TRUE(enabled_after);
}

TEST_F(ProtocolWindow, DisablesTheThreadsWindowsWhenNoneIsActive) {
  const HANDLE in_front = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HWND disabled_before = nullptr;
  BOOL enabled_after = FALSE;
  BOOL disabled_after = FALSE;
  Client client([&](Client& self) {
    disabled_before =
        CreateWindowExW(0, L"STATIC", L"Gesperrt", WS_POPUP | WS_VISIBLE | WS_DISABLED, 0, 0, 50,
                        50, nullptr, nullptr, nullptr, nullptr);
    WaitForSingleObject(in_front, kPatience);
    WaitUntil([] {
      MSG message{};
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      return GetActiveWindow() == nullptr;
    });
    FailAt(self, 1);
    enabled_after = IsWindowEnabled(self.window());
    disabled_after = !IsWindowEnabled(disabled_before);
    DestroyWindow(disabled_before);
  });
  const WindowInFront other;
  SetEvent(in_front);
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  EXPECT_FALSE(IsWindowEnabled(client.window()));
  EXPECT_TRUE(IsWindowEnabled(window));
  Close(window);
  client.Join();
  CloseHandle(in_front);
  EXPECT_TRUE(enabled_after);
  EXPECT_TRUE(disabled_after) << "was so before";
}

TEST_F(ProtocolWindow, ReturnsWhenAnotherThreadSendsTheRequestToClose) {
  Client client([&](Client& self) { FailAt(self, 1); });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  ASSERT_TRUE(WaitUntil([&] { return client.Focus() == ControlOf(window, kTreeView1); }));
  DWORD_PTR answer = 0;
  EXPECT_TRUE(SendMessageTimeoutW(window, WM_CLOSE, 0, 0, SMTO_NORMAL, kPatience, &answer));
  EXPECT_TRUE(WaitUntilGone(window));
}

TEST_F(ProtocolWindow, ReturnsWhenItsOwnerIsDestroyed) {
  bool returned = false;
  Client client([&](Client& self) {
    FailAt(self, 1);
    returned = true;
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  ASSERT_TRUE(WaitUntil([&] { return client.Focus() == ControlOf(window, kTreeView1); }));
  DWORD_PTR answer = 0;
  EXPECT_TRUE(
      SendMessageTimeoutW(client.window(), WM_CLOSE, 0, 0, SMTO_NORMAL, kPatience, &answer));
  EXPECT_FALSE(IsWindow(window));
  client.Join();
  EXPECT_TRUE(returned);
}

// The state of the program's own message loop when it is asked to end meanwhile.
TEST_F(ProtocolWindow, LeavesARequestToEndTheProgramToTheClient) {
  WPARAM code = 0;
  Client client([&](Client& self) {
    FailAt(self, 1);
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) code = message.wParam;
    }
  });
  const HWND window = WaitForWindow(kCaption);
  ASSERT_TRUE(window);
  PostThreadMessageW(client.thread_id(), WM_QUIT, 17, 0);
  client.Join();
  EXPECT_EQ(code, 17u);
}

}  // namespace
}  // namespace tessary::win32
