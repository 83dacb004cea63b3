#include "manager/read_warnings.h"

namespace tessary {
namespace {

std::string LineCount(std::int64_t lines) {
  return std::to_string(lines) + (lines == 1 ? " Zeile" : " Zeilen");
}

}  // namespace

std::vector<std::string> ReadWarnings(const std::string& path, const ReadStatistics& read) {
  std::vector<std::string> warnings;
  if (read.lines_dropped > 0) {
    warnings.push_back("Die Datei " + path + " hat " + LineCount(read.lines_dropped) +
                       " außerhalb der Ebenen 0 bis 9; sie " +
                       (read.lines_dropped == 1 ? "wird" : "werden") + " nicht übernommen.");
  }
  if (read.last_level != 0 && read.last_level != 1) {
    warnings.push_back("Die Datei " + path + " (" + LineCount(read.lines) + ") endet auf Ebene " +
                       std::to_string(read.last_level) + "; ihre Blöcke sind nicht ausgeglichen.");
  }
  return warnings;
}

}  // namespace tessary
