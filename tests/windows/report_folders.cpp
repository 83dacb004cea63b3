#include "windows/report_folders.h"

#include <filesystem>

#include "platform/windows/wide_text.h"
#include "windows/component.h"

namespace tessary::win32 {

ReportFolders::ReportFolders(int reports) {
  namespace fs = std::filesystem;
  const std::string samples = Utf8FromWide(com::NativePath(TESSARY_SAMPLES)) + "\\hersteller\\";
  const std::string old_report = GetFile(samples + "version3\\Rechnung.lst");
  for (const char* name : {"alt", "neu", "diff", "Berichte"}) {
    fs::create_directory(LibraryPath(folder_ / name));
  }
  PutFile(folder_ / "alt/Rechnung.lst", old_report);
  PutFile(folder_ / "neu/Rechnung.lst", GetFile(samples + "version4\\Rechnung.lst"));
  PutFile(difference_file(),
          "U(Key=[Layout]:Typ=:PrevName=[UserSection]:PrevKey=[UserSection]:PrevTyp=:"
          "NextName=[Variables]:NextKey=[Variables]:NextTyp=:PosNr=);[Layout]\r\n"
          " U(Key=Copies:Typ=:PrevName=DefaultFont:PrevKey=DefaultFont:PrevTyp=:"
          "NextName=FaxSupport:NextKey=FaxSupport:NextTyp=:PosNr=);Copies=2\r\n");
  for (int i = 1; i <= reports; ++i) PutFile(report(i), old_report);
}

std::string ReportFolders::report(int number) const {
  return reports() + "\\Bericht " + std::to_string(number) + ".lst";
}

}  // namespace tessary::win32
