#include "ui/win32/fonts.h"

#include <algorithm>

namespace tessary::win32 {
namespace {

Font MakeFont(const wchar_t* face, int quarter_points, FontWeight weight, int resolution) {
  constexpr int kQuarterPointsPerInch = 4 * 72;
  return Font(CreateFontW(-MulDiv(quarter_points, resolution, kQuarterPointsPerInch), 0, 0, 0,
                          static_cast<int>(weight), FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                          DEFAULT_PITCH | FF_SWISS, face));
}

// A screen's device context in which a font is selected.
class FontInUse {
 public:
  explicit FontInUse(HFONT font) : before_(SelectObject(device_, font)) {}
  ~FontInUse() {
    SelectObject(device_, before_);
    ReleaseDC(nullptr, device_);
  }
  FontInUse(const FontInUse&) = delete;
  FontInUse& operator=(const FontInUse&) = delete;

  HDC device() const { return device_; }

 private:
  HDC device_ = GetDC(nullptr);
  HGDIOBJ before_;
};

}  // namespace

Font MakeTahoma(int quarter_points, FontWeight weight, int resolution) {
  return MakeFont(L"Tahoma", quarter_points, weight, resolution);
}

Font MakeSansSerif(int resolution) {
  // MS Sans Serif is made of dots, in few sizes; beyond 100 % its scalable counterpart is used.
  const wchar_t* face =
      resolution <= USER_DEFAULT_SCREEN_DPI ? L"MS Sans Serif" : L"Microsoft Sans Serif";
  return MakeFont(face, kNormalSize, FontWeight::kNormal, resolution);
}

SIZE MeasureText(HFONT font, const std::wstring& text, int width) {
  const FontInUse in_use(font);
  RECT room{0, 0, width, 0};
  DrawTextW(in_use.device(), text.c_str(), static_cast<int>(text.size()), &room,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
  return {room.right, room.bottom};
}

int LineHeight(HFONT font) {
  constexpr int kAnyWidth = 1000;
  return std::max(1, static_cast<int>(MeasureText(font, L"X", kAnyWidth).cy));
}

}  // namespace tessary::win32
