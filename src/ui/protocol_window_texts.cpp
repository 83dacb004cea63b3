#include "ui/protocol_window_texts.h"

#include "platform/path.h"

namespace tessary::protocol_window {

RepairGuide RepairGuideOf(std::string_view own_folder) {
  const std::string_view folder = WithoutTrailingSeparator(own_folder);
  const std::string database = JoinPath(folder, "DB");
  return {
      "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile möglicherweise "
      "nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen zu korrigieren:",
      {{"Starten Sie die Konvertierung erneut über:", JoinPath(folder, "Velquist.exe")},
       {"Wählen Sie das Verzeichnis für die Differenz-Berichte aus: ",
        JoinPath(database, "BerichteLLDiff")},
       {"Wählen Sie das Verzeichnis für die Berichte aus: ", JoinPath(database, "BerichteLLOrg")},
       {"Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.).", ""},
       {"Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit den "
        "Ursprungsberichten im Verzeichnis:",
        JoinPath(database, "BerichteLLBak")}}};
}

}  // namespace tessary::protocol_window
