// Every argument of every operation with every kind of nonsense: a German error, nothing changed.

#include <gmock/gmock.h>

#include "support/real_files_test_base.h"

namespace tessary {
namespace {

constexpr const char* kNoFile[] = {
    "fehlt.lst", "R/fehlt.lst", "fehlt/A.lst", "R",   "R/",      "R/A.lst/",   "R/A.lst/x",
    "R/*.lst",   "R/A.ls?",     "R/A.lst:x",   "NUL", "R/NUL",   "R/COM1.lst", "R/..",
    "R/../..",   "R/A.lst\n",   "R/\xFF.lst",  "R//", "~A.lst~", "R/A.lst ~",
};
constexpr const char* kNoFolder[] = {
    "fehlt", "R/A.lst", "R/A.lst/", "fehlt/R", "*", "R?", "R:x", "NUL", "R/\xFF", "R\n",
};

class BadArgumentsTest : public RealFilesTest {
 protected:
  BadArgumentsTest() {
    Put("alt/A.lst", SmallReport(3));
    Put("neu/A.lst", SmallReport(4));
    PutFolder("diff");
    EXPECT_TRUE(CreateDiffFiles("alt", "neu"));
    Put("R/A.lst", SmallReport(3));
    PutFolder("Ziel");
    before_ = FilesBelow(folder_.path());
  }

  // Paths of files that are none, or of folders.
  std::vector<std::string> NoFiles() const { return WithExtremes(kNoFile); }
  std::vector<std::string> NoFolders() const { return WithExtremes(kNoFolder); }

  // Runs an operation that has to fail: told in the log or by a question, without any change.
  template <typename Operation>
  void ExpectRefused(const std::string& argument, Operation operation) {
    SCOPED_TRACE(argument.substr(0, 100));
    ResultLog log;
    RecordingUser user;
    user.AnswerAlways(Answer::kNo);
    BXConvertLLMgr manager(log, {SystemFiles(), user, nullptr, &user});
    EXPECT_FALSE(operation(manager));
    EXPECT_TRUE(log.dictErrors.Count() > 0 || !user.Questions().empty()) << "nobody is told";
    EXPECT_EQ(user.open_windows(), 0);
    EXPECT_EQ(FilesBelow(folder_.path()), before_);
  }

 private:
  template <std::size_t n>
  std::vector<std::string> WithExtremes(const char* const (&names)[n]) const {
    std::vector<std::string> paths = {"", " ", std::string("a\0b", 3), std::string(100'000, 'x'),
                                      In("R/" + std::string(5000, 'x'))};
    for (const char* name : names) paths.push_back(In(name));
    return paths;
  }

  std::map<std::string, std::string> before_;
};

TEST_F(BadArgumentsTest, OfOneComparison) {
  for (const std::string& path : NoFiles()) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFile(path, In("neu/A.lst"), In("Ziel"));
    });
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFile(In("alt/A.lst"), path, In("Ziel"));
    });
  }
  for (const std::string& path : NoFolders()) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFile(In("alt/A.lst"), In("neu/A.lst"), path);
    });
  }
}

TEST_F(BadArgumentsTest, OfAFoldersComparison) {
  for (const std::string& path : NoFolders()) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFiles(path, In("neu"), In("Ziel"));
    });
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFiles(In("alt"), path, In("Ziel"));
    });
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.CreateDiffFiles(In("alt"), In("neu"), path);
    });
  }
}

TEST_F(BadArgumentsTest, OfOneConversion) {
  for (const std::string& path : NoFiles()) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.ConvertReport(path, In("diff/3_4Rechnung"), In("Ziel"));
    });
  }
}

TEST_F(BadArgumentsTest, OfAFoldersConversion) {
  for (const std::string& path : NoFolders()) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.ConvertReports(In("diff"), path, In("Ziel"));
    });
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.ConvertReports(path, In("R"), In("Ziel"));
    });
  }
}

// The report is saved before the difference file is looked at; it stays as it is.
TEST_F(BadArgumentsTest, AsDifferenceFileLeaveTheReportAlone) {
  for (const std::string& path : NoFiles()) {
    SCOPED_TRACE(path.substr(0, 100));
    user_.Clear();
    EXPECT_FALSE(manager_.ConvertReport(In("R/A.lst"), path, In("Ziel")));
    EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
    EXPECT_EQ(Get("Ziel/A.lst"), SmallReport(3));
    EXPECT_EQ(SystemFiles().ListFiles(In("Ziel")), std::vector<std::string>{"A.lst"});
  }
}

TEST_F(BadArgumentsTest, AsBackupFolderAreAskedAbout) {
  for (const std::string& path : {In("R/A.lst"), In("fehlt/Sicherung"), std::string("a\0b", 3),
                                  std::string(100'000, 'x'), In("R"), In("R/"), In("R/.")}) {
    ExpectRefused(path, [&](BXConvertLLMgr& manager) {
      return manager.ConvertReport(In("R/A.lst"), In("diff/3_4Rechnung"), path);
    });
  }
}

}  // namespace
}  // namespace tessary
