#include "ui/console/text_style.h"

namespace tessary {

TextStyle StyleFor(const Console& console, ConsoleStream stream) {
  return {console.IsTerminal(stream) && console.ShowsUnicode(),
          console.TakesColours(stream) && console.Environment("NO_COLOR").empty()};
}

}  // namespace tessary
