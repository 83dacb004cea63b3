#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "levels/section_reader.h"
#include "platform/file_system.h"

namespace tessary {

// What reading a file came to beside its tree.
struct ReadStatistics {
  std::int64_t lines = 0;
  std::int64_t lines_dropped = 0;  // outside the levels 0 to 9
  std::int32_t last_level = 0;     // 0 or 1 after the last line of a well-formed file
};

// Reads a report or difference file, Windows-1252 with lines ending in LF or CRLF, into an element
// array; null for a file without lines. Raises Failure and leaves entries in the context's error
// collection; `statistics` may be null and is set on success. `sections`: may be null; those of
// another release of the report, read with the same context and unchanged since; or none, which
// become those of this one.
Ref<ElementTable> ReadReport(FileSystem& files, const Ref<EngineContext>& context,
                             const std::string& path, ReadStatistics* statistics,
                             FileSections* sections = nullptr);

// When the disk knows of an exchange of files (FileReplacement::DeferName).
enum class NewName { kAtOnce, kLater };

// True for the beginning of a file of a newer format, which ReadReport refuses. As many bytes as
// the longest mark has tell.
inline constexpr std::size_t kLongestByteOrderMark = 3;
bool HasByteOrderMark(std::string_view bytes);

// The bytes of a file, in large pieces one behind the other.
using FilePieces = std::vector<std::string>;
using TakePiece = std::function<void(std::string piece)>;

// Gives the bytes of a file that holds the tree, piece by piece and at least one. Raises Failure,
// also what `take` raises, and leaves entries that speak of the file `name`.
void EncodeReport(const Ref<EngineContext>& context, const std::string& name,
                  const Ref<ElementTable>& lines, const TakePiece& take);

// What a file is to hold: a tree, what EncodeReport gives for it, or a replacement of the file to
// which that has been written already.
struct NewContents {
  Ref<EngineContext> context;  // of the tree, and for the errors of writing
  Ref<ElementTable> lines = {};
  FilePieces encoded = {};
  std::unique_ptr<FileReplacement> replacement = {};

  bool IsEmpty() const { return IsArrayEmpty(lines) && encoded.empty() && !replacement; }
};

// Writes contents over `path`, which is replaced as a whole wherever that is possible. Raises
// Failure and leaves entries in the context's error collection; then `damaged`, which may be null,
// tells whether the file itself was overwritten in part. The contents are used up either way.
void WriteReport(FileSystem& files, const std::string& path, NewContents contents, bool* damaged,
                 NewName new_name = NewName::kAtOnce);

}  // namespace tessary
