#include "manager/user_section.h"

#include <array>
#include <vector>

#include "platform/number.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::string_view kSection = "UserSection";
constexpr std::string_view kVersion = "Version";
constexpr std::string_view kReference = "Referenzbeleg";

std::int32_t VersionOf(std::string_view value) { return ToLong(value).value_or(0); }

// The values of the version and of the reference, in one reading.
std::vector<std::string> ReadHeader(FileSystem& files, const std::string& path) {
  constexpr std::array kKeys = {kVersion, kReference};
  if (TrimBlanks(path).empty()) return std::vector<std::string>(kKeys.size());
  return files.ReadProfileStrings(path, kSection, kKeys);
}

std::string VersionText(std::int32_t version) {
  return version > 0 ? std::to_string(version) : std::string();
}

// The bytes of the first character, which may be several.
std::size_t FirstCharacterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
  return size;
}

}  // namespace

std::int32_t GetReportVersion(FileSystem& files, const std::string& path) {
  if (TrimBlanks(path).empty()) return 0;
  return VersionOf(files.ReadProfileString(path, kSection, kVersion));
}

std::string GetReportReference(FileSystem& files, const std::string& path) {
  if (TrimBlanks(path).empty()) return {};
  return files.ReadProfileString(path, kSection, kReference);
}

bool IsReportFile(FileSystem& files, const std::string& path, std::int32_t& version,
                  std::string& reference) {
  version = 0;
  reference.clear();
  try {
    const std::string extension(TrimBlanks(ExtensionOf(path)));
    if (!extension.empty() && extension.find('~') == std::string::npos) {
      const std::vector<std::string> header = ReadHeader(files, path);
      version = VersionOf(header[0]);
      reference = TrimBlanks(header[1]);
    }
  } catch (const std::exception&) {
    return false;
  }
  return version >= 1 && !reference.empty();
}

std::string BuildDiffFileName(FileSystem& files, const std::string& old_path,
                              const std::string& new_path) {
  const std::int32_t old_version = GetReportVersion(files, old_path);
  const std::vector<std::string> header = ReadHeader(files, new_path);
  return VersionText(old_version) + "_" + VersionText(VersionOf(header[0])) + header[1];
}

DiffFileName ParseDiffFileName(std::string_view name) {
  DiffFileName result;
  const auto separator = name.find('_');
  if (separator == std::string_view::npos) return result;
  const auto old_version = ToLong(TrimBlanks(name.substr(0, separator)));
  if (!old_version) return result;
  result.old_version = *old_version;
  std::string_view rest = TrimLeadingBlanks(name.substr(separator + 1));
  std::string digits;
  while (!rest.empty()) {
    result.reference = rest;
    const std::size_t size = FirstCharacterSize(rest);
    digits.append(rest.substr(0, size));
    rest.remove_prefix(size);
    const auto new_version = ToLong(digits);
    if (!new_version) break;
    result.new_version = *new_version;
  }
  return result;
}

}  // namespace tessary
