// Line by line through the bytes. Line ends, brackets and "=" are the same bytes in Windows-1252
// and UTF-8, so only the few texts that are compared or returned are decoded; UTF-16 is decoded as
// a whole first.

#include "platform/profile_string.h"

#include <optional>
#include <utility>

#include "platform/text.h"
#include "platform/utf8.h"

namespace tessary {

namespace {

constexpr std::size_t kLongestValue = 2047;
constexpr std::size_t kFirstBlock = 4096;

using TextDecoder = std::string (*)(std::string_view);

std::string FromWindows1252(std::string_view bytes) {
  return DecodeWindows1252(std::string(bytes));
}

std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  if (end != std::string_view::npos && line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view WithoutIndentation(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view() : line.substr(first);
}

// The first characters of `text`, at most `count`.
std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  std::size_t pos = 0;
  for (; count > 0 && pos < text.size(); --count) pos += DecodeUtf8(text, pos).length;
  return text.substr(0, pos);
}

// `line` begins with "[".
bool IsHeaderOf(std::string_view line, std::string_view section, TextDecoder decode) {
  const std::size_t end = line.find(']');
  return end != std::string_view::npos &&
         EqualsIgnoreCase(decode(line.substr(1, end - 1)), section);
}

std::optional<std::string> FindInLines(std::string_view rest, std::string_view section,
                                       std::string_view key, TextDecoder decode) {
  bool in_section = false;
  while (!rest.empty()) {
    const std::string_view line = WithoutIndentation(TakeLine(rest));
    if (line.starts_with('[')) {
      if (in_section) break;
      in_section = IsHeaderOf(line, section, decode);
      continue;
    }
    if (!in_section) continue;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    if (!EqualsIgnoreCase(decode(TrimBlanks(line.substr(0, equals))), key)) continue;
    const std::string value = decode(line.substr(equals + 1));
    return std::string(FirstCharacters(value, kLongestValue));
  }
  return std::nullopt;
}

bool IsUtf16(std::string_view bytes) {
  return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE");
}

std::optional<std::string> Find(std::string_view bytes, std::string_view section,
                                std::string_view key) {
  if (bytes.starts_with("\xEF\xBB\xBF"))
    return FindInLines(bytes.substr(3), section, key, &ToValidUtf8);
  if (IsUtf16(bytes)) {
    const bool big_endian = bytes.starts_with("\xFE");
    return FindInLines(DecodeUtf16(bytes.substr(2), big_endian), section, key, &ToValidUtf8);
  }
  return FindInLines(bytes, section, key, &FromWindows1252);
}

}  // namespace

std::string FindProfileString(std::string_view bytes, std::string_view section,
                              std::string_view key) {
  return Find(bytes, section, key).value_or(std::string());
}

std::vector<std::string> FindProfileStrings(FileReader& file, std::string_view section,
                                            std::span<const std::string_view> keys) {
  std::string bytes(kFirstBlock, '\0');
  bytes.resize(file.Read(bytes.data(), bytes.size()));
  const std::size_t whole_lines = IsUtf16(bytes) ? 0 : bytes.rfind('\n') + 1;
  bool is_read = false;
  std::vector<std::string> values;
  for (const std::string_view key : keys) {
    auto value = Find(std::string_view(bytes).substr(0, whole_lines), section, key);
    if (!value && !std::exchange(is_read, true)) bytes.append(ReadWholeFile(file));
    values.push_back(value ? *std::move(value) : FindProfileString(bytes, section, key));
  }
  return values;
}

}  // namespace tessary
