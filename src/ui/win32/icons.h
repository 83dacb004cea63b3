#pragma once

#include "ui/icon_drawing.h"
#include "ui/win32/handles.h"

namespace tessary::win32 {

Icon MakeIcon(IconShape shape, int size);

// The images of the protocol's nodes, in the order of ProtocolImage.
ImageList MakeProtocolImages(int size);

}  // namespace tessary::win32
