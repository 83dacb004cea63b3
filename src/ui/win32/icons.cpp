#include "ui/win32/icons.h"

#include <algorithm>
#include <vector>

namespace tessary::win32 {
namespace {

class Bitmap {
 public:
  explicit Bitmap(HBITMAP bitmap) : bitmap_(bitmap) {}
  ~Bitmap() { DeleteObject(bitmap_); }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  HBITMAP get() const { return bitmap_; }

 private:
  HBITMAP bitmap_;
};

HBITMAP ColoursOf(const std::vector<std::uint32_t>& pixels, int size) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size;
  info.bmiHeader.biHeight = -size;  // rows from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (bitmap) std::copy(pixels.begin(), pixels.end(), static_cast<std::uint32_t*>(bits));
  return bitmap;
}

// One bit per pixel, set where the picture is clear; rows are padded to whole words.
HBITMAP MaskOf(const std::vector<std::uint32_t>& pixels, int size) {
  const auto width = static_cast<std::size_t>(size);
  const std::size_t stride = (width + 15) / 16 * 2;
  std::vector<unsigned char> bits(stride * width);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const std::size_t x = i % width;
    if (pixels[i] == 0)
      bits[i / width * stride + x / 8] |= static_cast<unsigned char>(0x80 >> x % 8);
  }
  return CreateBitmap(size, size, 1, 1, bits.data());
}

}  // namespace

Icon MakeIcon(IconShape shape, int size) {
  const std::vector<std::uint32_t> pixels = DrawIcon(shape, size);
  const Bitmap colours(ColoursOf(pixels, size));
  const Bitmap mask(MaskOf(pixels, size));
  ICONINFO icon{};
  icon.fIcon = TRUE;
  icon.hbmColor = colours.get();
  icon.hbmMask = mask.get();
  return Icon(CreateIconIndirect(&icon));
}

ImageList MakeProtocolImages(int size) {
  constexpr IconShape kShapes[] = {IconShape::kCorrect, IconShape::kError, IconShape::kWarning};
  ImageList images(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 3, 0));
  for (const IconShape shape : kShapes) {
    ImageList_ReplaceIcon(images.get(), -1, MakeIcon(shape, size).get());
  }
  return images;
}

}  // namespace tessary::win32
