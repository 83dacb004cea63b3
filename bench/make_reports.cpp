// Writes generated reports: make_reports SHAPE LINES CHANGES FOLDER [COUNT]. The folder, which must
// exist, gets old.lst, new.lst and customer.lst; with a count, the folders old, new and customer in
// it, which must exist, get that many files each.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "generated_reports.h"

namespace {

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::badbit | std::ios::failbit);
  file << bytes;
  file.close();
}

// A report whose reference, and so whose difference file, has a number of its own.
std::string WithReference(std::string report, int number) {
  const std::string reference = "Referenzbeleg=Rechnung";
  return report.insert(report.find(reference) + reference.size(), std::to_string(number));
}

void WriteFolders(const tessary::ReportSet& reports, const std::string& folder, int count) {
  for (int number = 1; number <= count; ++number) {
    const std::string name = "/" + std::to_string(number) + ".lst";
    WriteFile(folder + "/old" + name, WithReference(reports.old_report, number));
    WriteFile(folder + "/new" + name, WithReference(reports.new_report, number));
    WriteFile(folder + "/customer" + name, WithReference(reports.customer_report, number));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5 && argc != 6) {
    std::fputs("usage: make_reports SHAPE LINES CHANGES FOLDER [COUNT]\n", stderr);
    return 2;
  }
  try {
    const tessary::ReportSet reports =
        tessary::GenerateReports(tessary::ShapeNamed(argv[1]), std::strtoul(argv[2], nullptr, 10),
                                 std::strtoul(argv[3], nullptr, 10));
    const std::string folder = argv[4];
    if (argc == 6) {
      WriteFolders(reports, folder, std::atoi(argv[5]));
    } else {
      WriteFile(folder + "/old.lst", reports.old_report);
      WriteFile(folder + "/new.lst", reports.new_report);
      WriteFile(folder + "/customer.lst", reports.customer_report);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_reports: %s\n", error.what());
    return 1;
  }
  return 0;
}
