#pragma once

#include <cstdint>
#include <vector>

// The small pictures of the windows, drawn from their shapes in whatever size is asked for, so that
// their edges are as sharp at 200 % as at 100 %.

namespace tessary {

// The first three stand for the images of ProtocolImage, in its order; the last one for reports.
enum class IconShape { kCorrect, kError, kWarning, kReport };

// `size` rows of `size` pixels from the top, each 0xAARRGGBB; the colours are not multiplied by
// their opacity.
std::vector<std::uint32_t> DrawIcon(IconShape shape, int size);

}  // namespace tessary
