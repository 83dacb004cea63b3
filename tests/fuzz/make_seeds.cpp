// Writes the seeds of the fuzz targets: the short samples, random reports with their changed
// versions, and what the engine makes of them. Usage: make_seeds FOLDER, which gets one folder per
// target.

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "fuzz/fuzz_target.h"
#include "model/random_reports.h"
#include "platform/text.h"
#include "support/both_engines.h"
#include "support/manager_test_base.h"
#include "support/temporary_folder.h"

namespace fs = std::filesystem;
using tessary::model::Lines;

namespace {

std::string folder;

void PutSeed(const std::string& target, const std::string& name, const std::string& bytes) {
  const fs::path path = tessary::LibraryPath(folder) / target;
  fs::create_directories(path);
  tessary::PutFile(tessary::TextOf(path / name), bytes);
}

std::string Cut(const Lines& lines) { return tessary::FileText(lines) + "%%\n"; }

void PutRandomSeeds(int number) {
  tessary::model::Random random(static_cast<std::uint64_t>(number));
  const std::string name = "random-" + std::to_string(number);
  const Lines old_lines = tessary::model::RandomReport(random, 10 + 3 * number);
  const Lines new_lines = tessary::model::Changed(random, old_lines, 4);
  const Lines customer = tessary::model::Changed(random, old_lines, 3);
  Lines difference;
  tessary::CompareByBoth(old_lines, new_lines, difference);
  if (difference.empty()) difference = tessary::model::RandomDiffFile(random, 20);
  PutSeed("report_text", name, tessary::FileText(old_lines));
  PutSeed("difference_line", name, tessary::FileText(difference));
  PutSeed("difference_file", name, tessary::FileText(difference));
  PutSeed("compare", name, Cut(old_lines) + tessary::FileText(new_lines));
  PutSeed("apply", name, Cut(customer) + tessary::FileText(difference));
  PutSeed("apply", "any-" + std::to_string(number),
          Cut(customer) + tessary::FileText(tessary::model::RandomDiffFile(random, 20)));
  PutSeed("agreement", name, Cut(old_lines) + Cut(new_lines) + tessary::FileText(customer));
}

void PutSamples() {
  constexpr std::uintmax_t kMostBytes = 4000;
  for (const auto& entry : fs::recursive_directory_iterator(TESSARY_SAMPLES)) {
    if (!entry.is_regular_file() || entry.file_size() > kMostBytes) continue;
    const std::string bytes = tessary::GetFile(tessary::TextOf(entry.path()));
    if (bytes.find("[UserSection]") == std::string::npos) continue;
    std::string name =
        "sample-" + tessary::TextOf(entry.path().lexically_relative(TESSARY_SAMPLES));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '/' || c == ' ' || c < 0; }, '-');
    PutSeed("report_text", name, bytes);
    PutSeed("header", name, bytes.substr(0, 300));
  }
}

void PutTexts(const std::string& target, const std::vector<std::string>& texts) {
  int number = 0;
  for (const std::string& text : texts) PutSeed(target, "text-" + std::to_string(++number), text);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_seeds FOLDER\n");
    return 2;
  }
  folder = argv[1];
  constexpr int kRandomSeeds = 24;
  for (int number = 1; number <= kRandomSeeds; ++number) PutRandomSeeds(number);
  PutSamples();
  PutTexts("header", {"[UserSection]\r\nVersion=3\r\nReferenzbeleg=Rechnung\r\n",
                      "\xEF\xBB\xBF[USERSECTION]\nversion= 3,5 \n referenzbeleg =a\n",
                      std::string("\xFF\xFE[\0U\0s\0e\0r\0", 12), "[UserSection\nVersion=1",
                      "[UserSection]\nVersion=&HFF\nReferenzbeleg=\" x \"", "[]\n=\n"});
  PutTexts("difference_name", {"3_4Rechnung", "3_4", "x_4Rechnung", "34Rechnung", "3_4_5A",
                               "12_13Lieferschein", " 3 _ 4A", "1e1_&H1FA", "-1_2.5A", "3_4 5A",
                               "99999999999_1A", "1_99999999999", "3_4\xC4"});
  PutTexts("difference_line", {"U(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:"
                               "NextTyp=:PosNr=);Height=5\r\n",
                               "X(Key=a);b\n", "N(;)\n", "D();=\n", "(;\n"});
  PutTexts("report_text", {std::string(200, '{'), "{\n{\n{\n{\n{\n{\n{\n{\n{\n{\n{\n[A]\n}\n}\n",
                           "}\n}\n[A]\n", "\xFF\xFE", "[A]\n[A]\n[A]", "[@Lines]\n{\n[Line]\n"});
  return 0;
}
