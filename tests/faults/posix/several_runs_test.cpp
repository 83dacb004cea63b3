// The built command several times at once on one folder, and against a folder that is held.

#ifdef TESSARY_BINARY

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "faults/posix/fault_world.h"
#include "support/run_program.h"

namespace tessary {
namespace {

ProgramResult ConvertFolder(const FaultWorld& world) {
  return RunProgram({TESSARY_BINARY, {"convert-folder", world.In("diff"), world.In("R")}});
}

std::string Folder(const FaultWorld& world, std::size_t number) {
  return world.In("Filiale" + std::to_string(number));
}

TEST(SeveralRuns, AtOnceDoWhatOneDoes) {
  const FaultWorld world(false);
  std::vector<ProgramResult> results(4);
  std::vector<std::thread> threads;
  for (ProgramResult& result : results)
    threads.emplace_back([&] { result = ConvertFolder(world); });
  for (std::thread& thread : threads) thread.join();
  std::string out;
  for (const ProgramResult& result : results) {
    EXPECT_EQ(result.exit_code, 0) << result.out << result.err;
    out += result.out;
  }
  for (const char* step : {"A.lst wurde erfolgreich von Version 3 nach 4",
                           "A.lst wurde erfolgreich von Version 4 nach 5",
                           "B.lst wurde erfolgreich von Version 4 nach 5"}) {
    const auto place = out.find(step);
    EXPECT_NE(place, std::string::npos) << step;
    EXPECT_EQ(out.find(step, place + 1), std::string::npos) << "twice: " << step;
  }
  world.ExpectFinished();
}

// Whoever comes first, every original is kept, or its report is left as it was.
TEST(SeveralRuns, InSeveralFoldersMayShareABackupFolder) {
  const FaultWorld world(false);
  constexpr std::size_t kFolders = 6;
  std::vector<std::string> originals;
  for (std::size_t i = 0; i < kFolders; ++i) {
    originals.push_back(SmallReport(3, "A") + "[Folder]\r\nNumber=" + std::to_string(i) + "\r\n");
    std::filesystem::create_directory(Folder(world, i));
    PutFile(Folder(world, i) + "/A.lst", originals[i]);
  }
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kFolders; ++i) {
    threads.emplace_back([&world, i] {
      RunProgram({TESSARY_BINARY,
                  {"convert-folder", world.In("diff"), Folder(world, i), "--backup",
                   world.In("Sicherung")}});
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto files = world.Files();
  for (std::size_t i = 0; i < kFolders; ++i) {
    const bool is_kept = std::any_of(files.begin(), files.end(), [&](const auto& file) {
      return file.first.find("~tessary-") == std::string::npos && file.second == originals[i];
    });
    EXPECT_TRUE(is_kept) << i;
  }
}

TEST(SeveralRuns, OneThatWaitsInVainFailsWithError70AndTouchesNothing) {
  const FaultWorld world(false);
  const auto before = world.Files();
  const auto other_run = SystemFiles().TryLockFolder(world.In("R"));
  const ProgramResult result = ConvertFolder(world);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("Im Ordner " + world.In("R") +
                            " werden gerade Berichte von einem anderen Vorgang konvertiert."),
            std::string::npos)
      << result.out;
  EXPECT_EQ(world.Files(), before);
}

}  // namespace
}  // namespace tessary

#endif  // TESSARY_BINARY
