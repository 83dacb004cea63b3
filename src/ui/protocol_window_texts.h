#pragma once

#include <string_view>

#include "ui/repair_guide.h"

// The fixed texts of the error-protocol window, to the letter: callers' documents quote them, also
// where they are misspelt.

namespace tessary::protocol_window {

inline constexpr std::string_view kCaption = "TALVERO Fehlerprotokoll";
inline constexpr std::string_view kTitle = "Berichtskonvertierung";
inline constexpr std::string_view kSubtitle = "Fehlerprotokoll";
inline constexpr std::string_view kClose = "Schließen";

// How failed reports are repaired by hand, in five steps. Four of them name a place below the
// folder in which the component lies, with one separator between the parts.
RepairGuide RepairGuideOf(std::string_view own_folder);

}  // namespace tessary::protocol_window
