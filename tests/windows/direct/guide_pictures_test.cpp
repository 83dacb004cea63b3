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
       "Fehler beim Öffnen der Datei C:\\Auftrag\\Berichte\\Rechnung Österreich.lst"});
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

void ExpandAll(HWND tree) {
  const auto next = [tree](WPARAM relation, LPARAM item) {
    return SendMessageW(tree, TVM_GETNEXTITEM, relation, item);
  };
  for (LPARAM item = next(TVGN_ROOT, 0); item; item = next(TVGN_NEXT, item)) {
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, item);
  }
}

HINSTANCE Own() { return GetModuleHandleW(nullptr); }

TEST(GuidePictures, Protocol) {
  const ResultDictionary failures = Failures();
  const ProtocolTree tree(failures, Successes());
  const RepairGuide guide = protocol_window::RepairGuideOf("C:\\Programme\\Auftragsverwaltung");
  const ProtocolWindow window(Own(), nullptr, tree, guide);
  ExpandAll(ControlOf(window.window(), kTreeView1));
  ShowWindow(window.window(), SW_SHOW);
  ThreadMessageLoop().TakeTurn();
  EXPECT_THAT(ClippedTexts(window.window()), IsEmpty());
  SavePicture(window.window(), "fehlerprotokoll");
}

TEST(GuidePictures, Progress) {
  ThreadMessageLoop loop;
  WindowsProgressWindow progress(Own(), nullptr, loop);
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
}

}  // namespace
}  // namespace tessary::win32
