#pragma once

#include <string>
#include <string_view>

#include "platform/ascii_run.h"

// Texts are UTF-8. Functions that look at characters take any bytes: a byte that is no part of a
// well-formed character counts as a character of its own that equals only itself.

namespace tessary {

// `text` without the blanks (U+0020 only) at both ends, or at its beginning.
inline std::string_view TrimLeadingBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return text;
}
inline std::string_view TrimBlanks(std::string_view text) {
  text = TrimLeadingBlanks(text);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// `text` with every character replaced by its simple (one-to-one) case folding.
std::string FoldCase(std::string_view text);

// Less than, equal to or greater than zero as `a` sorts before, with or after `b` by their case
// foldings, compared by code point.
int CompareIgnoreCase(std::string_view a, std::string_view b);

// True when both texts have the same simple case folding; no locale is involved. Most texts that
// differ do so in their first letter, so that is looked at before anything is called.
inline bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return a.empty() == b.empty();
  const bool ascii = IsAscii(a.front()) && IsAscii(b.front());
  if (ascii && LowerAscii(a.front()) != LowerAscii(b.front())) return false;
  return a == b || CompareIgnoreCase(a, b) == 0;
}

// Position in bytes of the first occurrence of `part` in `text` without regard to case, or npos.
// `part` must be ASCII.
std::string_view::size_type FindIgnoreCase(std::string_view text, std::string_view part);

// Code page Windows-1252. The five bytes that it leaves open (81, 8D, 8F, 90, 9D) stand for
// U+0081, U+008D, U+008F, U+0090 and U+009D, so every byte string survives the way in and out.
std::string DecodeWindows1252(std::string bytes);

// Raises Failure 5 with a text naming the character when `text` holds one that the code page
// lacks, or is not well-formed.
std::string EncodeWindows1252(std::string text);

// `text` with every ill-formed sequence replaced by U+FFFD, one per maximal subpart; for showing
// names that are arbitrary bytes.
std::string ToValidUtf8(std::string_view text);

// UTF-16 bytes in the given byte order as UTF-8; unpaired surrogates and an odd last byte become
// U+FFFD.
std::string DecodeUtf16(std::string_view bytes, bool big_endian);

}  // namespace tessary
