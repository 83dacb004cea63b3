#pragma once

#include <cstdint>
#include <string_view>

namespace tessary {

class EngineContext;
class LevelBase;

// Adds the topmost lines of `text`, the contents of a section or a whole report, to `list`, the
// empty level object that they belong to, and gives what stands below each of them to that
// element's child level, which reads it when it is asked for. The text must live as long as the
// texts of `list` and have no status in any line. Returns the level of the last line, or -1 when
// the text is not well nested or has lines with a status; `list` is of no use then.
// `context`: whose message loop gets its turns, or null for none. The number of lines is added to
// `line_count`.
std::int32_t ReadSection(LevelBase& list, std::string_view text, const EngineContext* context,
                         std::int64_t& line_count);

}  // namespace tessary
