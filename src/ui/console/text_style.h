#pragma once

#include "platform/console.h"

namespace tessary {

// How text on a stream may look.
struct TextStyle {
  bool unicode_marks = false;
  bool colours = false;
};

// Marks only on a terminal that shows them; colours only on a terminal that takes them, and not
// where the environment variable NO_COLOR asks for none.
TextStyle StyleFor(const Console& console, ConsoleStream stream);

}  // namespace tessary
