// The pictures in the administrator's guide: the windows with contents as in practice.

#include <gmock/gmock.h>

#include "ui/win32/progress_window.h"
#include "ui/win32/protocol_window.h"
#include "ui/win32/window_controls.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

using testing::IsEmpty;

ResultDictionary Failures() {
  ResultDictionary failures;
  failures.Add("Konvertierung des Berichts Lieferschein Streckengeschäft.lst fehlgeschlagen.",
               {"Die Datei Lieferschein Streckengeschäft.lst ist keine List & Label "
                "Berichtsdatei."});
  failures.Add(
      "Konvertierung des Berichts Rechnung Österreich.lst von Version 4 nach 5 "
      "fehlgeschlagen.",
      {"Fehler beim Schreiben in die Datei Rechnung Österreich.lst",
       "Fehler beim Öffnen der Datei Rechnung Österreich.lst"});
  return failures;
}

ResultDictionary Successes() {
  ResultDictionary successes;
  for (const char* name : {"Angebot", "Lieferschein", "Rechnung"}) {
    for (const char* step : {"3 nach 4", "4 nach 5"}) {
      successes.Add("Der Bericht " + std::string(name) + ".lst wurde erfolgreich von Version " +
                        step + " konvertiert.",
                    {""});
    }
  }
  return successes;
}

// Every message can be seen and the first failed report is selected.
void ExpandAll(HWND tree) {
  const auto next = [tree](WPARAM relation, LPARAM item) {
    return SendMessageW(tree, TVM_GETNEXTITEM, relation, item);
  };
  const LPARAM first = next(TVGN_ROOT, 0);
  LPARAM failed = 0;
  for (LPARAM item = first; item; item = next(TVGN_NEXT, item)) {
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, item);
    if (!failed && next(TVGN_CHILD, item)) failed = item;
  }
  SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, failed);
  SendMessageW(tree, TVM_ENSUREVISIBLE, 0, first);
}

HINSTANCE Own() { return GetModuleHandleW(nullptr); }

TEST(GuidePictures, Protocol) {
  const ResultDictionary failures = Failures();
  const ProtocolTree tree(failures, Successes());
  const RepairGuide guide = protocol_window::RepairGuideOf("C:\\Programme\\Auftragsverwaltung");
  const ProtocolWindow window(Own(), nullptr, tree, guide);
  ShowWindow(window.window(), SW_SHOW);
  ThreadMessageLoop().TakeTurn();
  ExpandAll(ControlOf(window.window(), kTreeView1));
  EXPECT_THAT(ClippedTexts(window.window()), IsEmpty());
  SavePicture(window.window(), "fehlerprotokoll");
}

DWORD paused = 0;
LRESULT shown_meanwhile = 0;

void WINAPI NotePause(DWORD milliseconds) {
  paused += milliseconds;
  shown_meanwhile =
      SendMessageW(ControlOf(WaitForWindow(L"Bitte warten ..."), kProgressBar1), PBM_GETPOS, 0, 0);
}

TEST(GuidePictures, Progress) {
  ThreadMessageLoop loop;
  WindowsProgressWindow progress(Own(), nullptr, loop, NotePause);
  progress.Init("Berichtskonvertierung", "List & Label");
  progress.Show();
  progress.Process("Bericht Rechnung Österreich.lst wird von Version 4 nach 5 konvertiert");
  const HWND window = WaitForWindow(L"Bitte warten ...");
  ASSERT_TRUE(window);
  const HWND bar = ControlOf(window, kProgressBar1);
  EXPECT_TRUE(WaitUntil([&] {
    loop.TakeTurn();
    return SendMessageW(bar, PBM_GETPOS, 0, 0) >= 40;
  }));
  EXPECT_THAT(ClippedTexts(window), IsEmpty());
  SavePicture(window, "fortschritt");
  progress.StopProgress();
  EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 100);
  EXPECT_EQ(paused, 200u);
  EXPECT_EQ(shown_meanwhile, 100) << "the full bar is seen";
}

TEST(GuidePictures, ProgressWithALongName) {
  ThreadMessageLoop loop;
  WindowsProgressWindow progress(Own(), nullptr, loop, NotePause);
  progress.Show();
  const HWND window = WaitForWindow(L"Bitte warten ...");
  ASSERT_TRUE(window);
  const LONG before = ClientSizeOf(window).cy;
  std::string name;
  for (int i = 1; name.size() < 200; ++i) name += "Verkaufsübersicht " + std::to_string(i) + " ";
  const std::string unbroken(200, 'W');
  for (const std::string& part : {name, unbroken}) {
    const std::string step = "Bericht " + part + ".lst wird von Version 4 nach 5 konvertiert";
    progress.Process(step);
    EXPECT_EQ(TextOf(ControlOf(window, kLblProcess)), step + " ...");
    EXPECT_THAT(ClippedTexts(window), IsEmpty());
  }
  SavePicture(window, "fortschritt-langer-name");
  const LONG grown = ClientSizeOf(window).cy;
  EXPECT_GT(grown, before);
  progress.Process("Berichtsdatei wird gelesen");
  EXPECT_EQ(ClientSizeOf(window).cy, grown) << "it does not jump to and fro";
}

}  // namespace
}  // namespace tessary::win32
