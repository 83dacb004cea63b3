// Folder runs that work ahead, on any number of threads, come to the same as those that do one
// thing after the other: the same files, the same log, the same words.

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "platform/path.h"
#include "support/manager_test_base.h"
#include "support/real_files_test_base.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

// Notes each step with the number of its differences when it has ended.
class StepNotes : public StepObservers {
 public:
  std::unique_ptr<StepObserver> Begin(const ConversionStep& step) override {
    return std::make_unique<Note>(*this, FileNameOf(step.report_path));
  }

  const std::vector<std::string>& ended() const { return ended_; }

 private:
  class Note : public StepObserver {
   public:
    Note(StepNotes& notes, std::string name) : notes_(notes), name_(std::move(name)) {}

    void Enter(const ElementTexts&) override {}
    void Leave() override {}
    void Applied(BXStatus, const ElementTexts&, std::string_view, std::string_view) override {
      ++applied_;
    }
    void Skipped(BXStatus, const ElementTexts&, std::string_view, SkipReason) override {
      ++skipped_;
    }
    void End(bool done) override {
      notes_.ended_.push_back(name_ + " " + std::to_string(applied_) + " " +
                              std::to_string(skipped_) + (done ? " done" : " failed"));
    }

   private:
    StepNotes& notes_;
    std::string name_;
    int applied_ = 0;
    int skipped_ = 0;
  };

  std::vector<std::string> ended_;
};

std::vector<std::string> Objects(int version, int count) {
  std::vector<std::string> lines;
  for (int n = 1; n <= count; ++n) {
    lines.insert(lines.end(), {"[Object]", " ObjectName=Feld " + std::to_string(n),
                               " LinkID=" + std::to_string(n),
                               " Height=" + std::to_string(n % 7 == 0 ? 100 * version : 100)});
  }
  return lines;
}

// What a run leaves behind for whoever asks.
struct Outcome {
  std::map<std::string, std::string> files;
  LoggedItems failed;
  LoggedItems correct;
  std::vector<std::string> entries;
  std::vector<std::string> words;  // all that was said, without the steps shown on the way
  std::vector<std::string> steps;
};

class WorkAheadRunTest : public testing::Test {
 protected:
  // Runs both passes in a new world, with so many threads to work ahead, or none that works ahead.
  static Outcome Run(std::optional<int> threads) {
    const TemporaryFolder folder;
    FillFolder(folder);
    Workers workers(threads.value_or(0));
    ResultLog log;
    RecordingUser user;
    user.AnswerAlways(Answer::kYes);
    StepNotes steps;
    {
      BXConvertLLMgr manager(log, {.files = SystemFiles(),
                                   .user = user,
                                   .notices = &user,
                                   .steps = &steps,
                                   .workers = threads ? &workers : nullptr});
      manager.CreateDiffFiles(folder / "v3", folder / "v4", folder / "diff");
      manager.CreateDiffFiles(folder / "v4", folder / "v5", folder / "diff");
      manager.ConvertReports(folder / "diff", folder / "R", folder / "Bak");
      manager.ConvertReport(folder / "Einzeln.lst", folder / "diff/3_4Beleg1", folder / "Bak");
    }
    std::vector<std::string> words;
    for (const std::string& event : user.events()) {
      if (!event.starts_with("step ")) words.push_back(Without(event, folder.path()));
    }
    Outcome outcome{FilesBelow(folder.path()), ItemsOf(log.dictErrors), ItemsOf(log.dictCorrect),
                    Entries(log.errors),       std::move(words),        steps.ended()};
    for (auto& [text, messages] : outcome.failed) {
      text = Without(text, folder.path());
      for (std::string& message : messages) message = Without(message, folder.path());
    }
    for (std::string& entry : outcome.entries) entry = Without(entry, folder.path());
    return outcome;
  }

 private:
  static std::string Without(std::string text, const std::string& folder) {
    for (std::size_t at; (at = text.find(folder)) != std::string::npos;)
      text.erase(at, folder.size());
    return text;
  }

  static void Put(const TemporaryFolder& folder, const std::string& path, std::string_view text) {
    fs::create_directories(LibraryPath(folder / path).parent_path());
    PutFile(folder / path, text);
  }

  static void FillFolder(const TemporaryFolder& folder) {
    constexpr int kReports = 14;
    for (int n = 1; n <= kReports; ++n) {
      const std::string name = std::to_string(n) + ".lst";
      const std::string reference = "Beleg" + std::to_string(n);
      for (int version = 3; version <= 5; ++version) {
        Put(folder, "v" + std::to_string(version) + "/" + name,
            ReportText(version, reference, Objects(version, 3 * n * n)));
      }
      Put(folder, "R/" + name, ReportText(3 + n % 3, reference, Objects(3 + n % 3, 2 * n * n)));
    }
    Put(folder, "Einzeln.lst", SmallReport(3, "Beleg1"));
    fs::create_directories(LibraryPath(folder / "diff"));
    PutOddities(folder);
  }

  // Whatever makes a run ask, warn, fail or leave out.
  static void PutOddities(const TemporaryFolder& folder) {
    Put(folder, "v3/12a.lst", "kein Bericht");
    Put(folder, "v3/12b.lst", SmallReport(3, "ohne Gegenstück"));
    Put(folder, "v3/12c.lst", SmallReport(3, "Offen") + "{\r\n{\r\n");
    Put(folder, "v4/12c.lst", SmallReport(4, "Offen") + "{\r\n{\r\n");
    Put(folder, "v3/12d.lst", SmallReport(3, "beleg1"));
    Put(folder, "v4/12d.lst", SmallReport(4, "beleg1"));
    Put(folder, "R/11a.lst", "kein Bericht");
    Put(folder, "R/11b.lst", SmallReport(3, "fremd"));
    Put(folder, "R/11c.lst", SmallReport(3, "Offen") + "}\r\n");
    Put(folder, "R/11d.lst", SmallReport(3, "Kaputt"));
    Put(folder, "diff/3_4Kaputt", "N(\r\n");
    Put(folder, "R/11e.lst", SmallReport(3, "Beleg5"));
    Put(folder, "Bak/11e.lst", "eine ältere Fassung");
    Put(folder, "R/11f.lst", SmallReport(3, "Beleg6"));
    Put(folder, "Bak/11f.lst/Ordner", "statt einer Sicherung");
    Put(folder, "R/11h.lst", SmallReport(3, "Beleg8"));
    std::error_code no_links;
    for (const char* const name : {"R/11i.lst", "R/11j.lst"}) {
      fs::create_hard_link(LibraryPath(folder / "R/11h.lst"), LibraryPath(folder / name), no_links);
    }
    Put(folder, "R/11g.lst", SmallReport(3, "Beleg7"));
    fs::permissions(LibraryPath(folder / "R/11g.lst"), fs::perms::owner_read);
  }
};

TEST_F(WorkAheadRunTest, ComesToTheSameAsDoingOneThingAfterTheOther) {
  const Outcome alone = Run(std::nullopt);
  EXPECT_GT(alone.correct.size(), 40u);
  EXPECT_GT(alone.failed.size(), 3u);
  EXPECT_GT(alone.steps.size(), 15u);
  for (const int threads : {0, 1, 3}) {
    SCOPED_TRACE(std::to_string(threads) + " threads");
    const Outcome ahead = Run(threads);
    EXPECT_EQ(ahead.files, alone.files);
    EXPECT_EQ(ahead.failed, alone.failed);
    EXPECT_EQ(ahead.correct, alone.correct);
    EXPECT_EQ(ahead.entries, alone.entries);
    EXPECT_EQ(ahead.words, alone.words);
    EXPECT_EQ(ahead.steps, alone.steps);
  }
}

// Once reports are being converted, a difference file is there no more.
class VanishingDifference : public FailingFiles {
 public:
  explicit VanishingDifference(std::string path)
      : FailingFiles(SystemFiles()), path_(std::move(path)) {}

  bool FileExists(const std::string& path) override {
    return path != path_ && FailingFiles::FileExists(path);
  }

 private:
  const std::string path_;
};

// The place of the new report must be free for the step that is done instead.
TEST_F(RealFilesTest, WhatWasPreparedForAnotherStepIsNotInTheWay) {
  Put("v3/1.lst", SmallReport(3));
  Put("v4/1.lst", SmallReport(4));
  PutFolder("diff");
  EXPECT_TRUE(CreateDiffFiles("v3", "v4"));
  const std::string difference = Get("diff/3_4Rechnung");
  Put("diff/3_5Rechnung", difference);
  Put("R/1.lst", SmallReport(3));
  Put("R/2.lst", SmallReport(3));

  VanishingDifference files(In("diff/3_4Rechnung"));
  Workers workers(0);
  BXConvertLLMgr manager(log_, {.files = files, .user = user_, .workers = &workers});
  manager.ConvertReports(In("diff"), In("R"), In("Bak"));
  for (const char* const report : {"R/1.lst", "R/2.lst"}) EXPECT_EQ(Get(report), SmallReport(4));
  EXPECT_EQ(ItemsOf(log_.dictErrors).size(), 2u) << "the missing file, once for each report";
  EXPECT_EQ(FilesBelow(In("R")).size(), 2u) << "nothing is left beside the reports";
}

}  // namespace
}  // namespace tessary
