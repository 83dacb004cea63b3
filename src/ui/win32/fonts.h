#pragma once

#include <string>

#include "ui/win32/handles.h"

namespace tessary::win32 {

enum class FontWeight { kNormal = FW_NORMAL, kBold = FW_BOLD };

// Sizes in quarters of a point, of which the named sizes are multiples.
inline constexpr int kTitleSize = 39;   // 9.75 points
inline constexpr int kNormalSize = 33;  // 8.25 points

Font MakeTahoma(int quarter_points, FontWeight weight, int resolution);
Font MakeSansSerif(int resolution);

// The size of a text that is broken into lines of at most `width`, between words or, where one
// is too long, inside it.
SIZE MeasureText(HFONT font, const std::wstring& text, int width);
int LineHeight(HFONT font);

}  // namespace tessary::win32
