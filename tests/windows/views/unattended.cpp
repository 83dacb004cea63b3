#include "windows/views/unattended.h"

#include "windows/views/client.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

enum Wrong { kNothing, kNoStation, kSucceeded, kAskedYes, kFailed, kChanged, kShown };

bool HideProcess() {
  const HWINSTA station = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
  if (!station || !SetProcessWindowStation(station)) return false;
  const HDESK desktop = CreateDesktopW(L"Verborgen", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  return desktop && SetThreadDesktop(desktop);
}

Wrong Convert(Client& client, const ReportFolders& folders) {
  PutFile(folders / "Datei", "x");
  const std::string before = GetFile(folders.report(1));
  if (client.ConvertReport(folders / "fehlt.lst", folders.difference_file(), "")) return kSucceeded;
  if (client.ConvertReport(folders.report(1), folders.difference_file(), folders / "Datei/Bak")) {
    return kAskedYes;
  }
  if (GetFile(folders.report(1)) != before) return kChanged;
  client.ShowErrorProtocol();
  if (!client.ConvertReport(folders.report(1), folders.difference_file(), "")) return kFailed;
  return kNothing;
}

}  // namespace

int RunUnattended() {
  if (!HideProcess()) return kNoStation;
  const ReportFolders folders(1);
  Wrong wrong = kNothing;
  Client client([&](Client& self) { wrong = Convert(self, folders); });
  const Heard& heard = client.Join();
  if (wrong == kNothing && !heard.captions.empty()) return kShown;
  return wrong;
}

}  // namespace tessary::win32
