#include "ui/printable.h"

#include "platform/utf8.h"

namespace tessary {
namespace {

constexpr char32_t kDelete = 0x7F;
constexpr char32_t kFirstUpperPrintable = 0xA0;
constexpr char32_t kFirstWide = 0x1100;

bool IsControl(char32_t character) {
  return character < U' ' || (character >= kDelete && character < kFirstUpperPrintable);
}

std::size_t ColumnsOfCharacter(char32_t character) { return character < kFirstWide ? 1 : 2; }

}  // namespace

std::string Printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) {
    const Utf8Character character = DecodeUtf8(text, pos);
    const bool shown = character.well_formed && !IsControl(character.code_point);
    AppendUtf8(result, shown ? character.code_point : kReplacementCharacter);
    pos += character.length;
  }
  return result;
}

std::size_t ColumnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (std::size_t pos = 0; pos < text.size();) {
    const Utf8Character character = DecodeUtf8(text, pos);
    columns += ColumnsOfCharacter(character.code_point);
    pos += character.length;
  }
  return columns;
}

std::string_view CutToColumns(std::string_view text, std::size_t columns) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    const Utf8Character character = DecodeUtf8(text, pos);
    const std::size_t width = ColumnsOfCharacter(character.code_point);
    if (width > columns) break;
    columns -= width;
    pos += character.length;
  }
  return text.substr(0, pos);
}

}  // namespace tessary
