#pragma once

#include <array>
#include <string>
#include <string_view>

// The fixed texts of the error-protocol window, to the letter: callers' documents quote them, also
// where they are misspelt. How a failed report is repaired by hand is told in five steps, four of
// which name a place below the folder of the component.

namespace tessary::protocol_window {

inline constexpr std::string_view kCaption = "TALVERO Fehlerprotokoll";
inline constexpr std::string_view kTitle = "Berichtskonvertierung";
inline constexpr std::string_view kSubtitle = "Fehlerprotokoll";
inline constexpr std::string_view kClose = "Schließen";
inline constexpr std::string_view kIntroduction =
    "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile möglicherweise "
    "nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen zu korrigieren:";

struct RepairStep {
  std::string_view number;
  std::string_view text;
};

inline constexpr std::array<RepairStep, 5> kSteps = {{
    {"1.", "Starten Sie die Konvertierung erneut über:"},
    {"2.", "Wählen Sie das Verzeichnis für die Differenz-Berichte aus: "},
    {"3.", "Wählen Sie das Verzeichnis für die Berichte aus: "},
    {"4.", "Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.)."},
    {"5.",
     "Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit den "
     "Ursprungsberichten im Verzeichnis:"},
}};

// What stands below the text of each step; empty where nothing does.
using RepairPaths = std::array<std::string, kSteps.size()>;

// The paths below the folder in which the component lies, with one separator between the parts.
RepairPaths RepairPathsOf(std::string_view own_folder);

}  // namespace tessary::protocol_window
