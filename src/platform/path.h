#pragma once

#include <string>
#include <string_view>

// Paths are byte strings (UTF-8 on Windows, whatever bytes the file system uses elsewhere). The
// component's rules join folder and name with one separator and never normalise.

namespace tessary {

// "/" or "\\", by system.
extern const char kPathSeparator;

// `folder`, separator, `name`, whatever `folder` ends with.
std::string JoinPath(std::string_view folder, std::string_view name);

// The last component: what stands behind the last separator, trailing separators left out.
std::string FileNameOf(std::string_view path);

// What stands before the last component, without the separator between them; a root stays whole
// ("/x" gives "/"). Empty when there is no separator.
std::string ParentFolderOf(std::string_view path);

// The text behind the last "." of the path's file name; empty when it has none or ends in it.
std::string ExtensionOf(std::string_view path);

// The path's file name without its last extension ("a.b.lst" gives "a.b").
std::string BaseNameOf(std::string_view path);

// `path` without one trailing separator.
std::string_view WithoutTrailingSeparator(std::string_view path);

// `path` made absolute against the current folder and normalised lexically ("." and ".." are
// resolved by their text); an empty path stays empty and one trailing separator is kept.
std::string MakeAbsolute(std::string_view path);

}  // namespace tessary
