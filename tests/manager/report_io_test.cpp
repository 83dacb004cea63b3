#include "manager/report_io.h"

#include <gmock/gmock.h>

#include "levels/level_factory.h"
#include "platform/path.h"
#include "platform/text.h"
#include "support/failure_number.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReportIoTest : public ManagerTest {
 protected:
  ReportIoTest() { memory_.PutFolder(Folder("b")); }

  // The number of the failure, or 0.
  std::int32_t Read() {
    return FailureNumber([&] { lines_ = ReadReport(files_, context_, path_, &read_); });
  }
  std::int32_t Write() {
    return FailureNumber([&] { WriteReport(files_, path_, {context_, lines_}, &damaged_); });
  }

  // What a file comes to when it is read and written.
  std::string Passed(std::string contents) {
    memory_.Put(path_, std::move(contents));
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(Write(), 0);
    return memory_.Get(path_);
  }

  const std::string path_ = Path("b", "Bericht.lst");
  Ref<EngineContext> context_ = NewEngineContext(log_.errors, &loop_);
  Ref<ElementTable> lines_;
  ReadStatistics read_;
  bool damaged_ = false;
};

TEST_F(ReportIoTest, ReadingGivesTheLoopATurnPerLine) {
  memory_.Put(path_, "[A]\r\n\r\n X=1\r\n");
  ASSERT_EQ(Read(), 0);
  EXPECT_GE(loop_.turns(), 3);
  EXPECT_EQ(read_.lines, 3);
}

TEST_F(ReportIoTest, LinesAreReadWhateverTheirEnds) {
  const std::string written = "[A]\r\n X=1\r\n Y=2\r\n";
  const struct {
    const char* what;
    const char* contents;
  } rows[] = {
      {"as written", "[A]\r\n X=1\r\n Y=2\r\n"},
      {"line feeds", "[A]\n X=1\n Y=2\n"},
      {"mixed", "[A]\r\n X=1\n Y=2\r\n"},
      {"no last line end", "[A]\r\n X=1\r\n Y=2"},
      {"blank lines anywhere", "\r\n\n[A]\r\n   \r\n X=1\r\n\r\n\r\n Y=2\r\n\r\n  "},
      {"tabs and indentation", "\t[A]\r\n\t\tX=1\r\n      Y=\t2\r\n"},
      {"blank after tabs", "[A]\r\n\t \t\r\n X=1\r\n Y=2\r\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(Passed(row.contents), written) << row.what;
}

TEST_F(ReportIoTest, ALoneCarriageReturnIsAnOrdinaryCharacter) {
  EXPECT_EQ(Passed("[A]\r\n X=1\r2\r\r\n Y=3\r"), "[A]\r\n X=1\r2\r\r\n Y=3\r\r\n");
}

TEST_F(ReportIoTest, EveryByteOfTheCodePageGoesThrough) {
  std::string contents = "[A]\r\n";
  for (int byte = 0x21; byte < 0x100; ++byte) {
    contents += " B" + std::to_string(byte) + "=" + static_cast<char>(byte) + "x\r\n";
  }
  ASSERT_NE(contents.find('\x81'), std::string::npos);
  EXPECT_EQ(Passed(contents), contents);
}

TEST_F(ReportIoTest, AFileWithoutLinesHasNoTree) {
  for (const char* contents : {"", "\r\n", "  \r\n \n", "\n\n\n", "{\r\n}\r\n", "}\r\n{\r\n"}) {
    memory_.Put(path_, contents);
    ASSERT_EQ(Read(), 0);
    EXPECT_TRUE(IsArrayEmpty(lines_));
    EXPECT_EQ(Write(), 0);
    EXPECT_EQ(memory_.Get(path_), "");
  }
}

TEST_F(ReportIoTest, StatisticsTellOfDroppedLinesAndTheLastLevel) {
  const struct {
    const char* contents;
    std::int64_t lines;
    std::int64_t dropped;
    std::int32_t level;
  } rows[] = {
      {"[A]\n", 1, 0, 0},
      {"[A]\nX=1\n", 2, 0, 1},
      {"[A]\nX=1\n{\nY=2\n}\n", 5, 0, 1},
      {"[A]\nX=1\n{\nY=2\n", 4, 0, 2},
      {"[A]\n}\nX=1\n[B]\n{\n", 5, 2, 0},
      {"", 0, 0, 0},
  };
  for (const auto& row : rows) {
    memory_.Put(path_, row.contents);
    ASSERT_EQ(Read(), 0);
    EXPECT_EQ(read_.lines, row.lines) << row.contents;
    EXPECT_EQ(read_.lines_dropped, row.dropped) << row.contents;
    EXPECT_EQ(read_.last_level, row.level) << row.contents;
  }
}

TEST_F(ReportIoTest, OpeningForReadingFails) {
  EXPECT_EQ(Read(), kFileNotFound);
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kFileNotFound, "ReadFile",
                                                  "Fehler beim Öffnen der Datei Bericht.lst")));
  memory_.Put(path_, "[A]\r\n");
  files_.FailCall(FileCall::kOpenForReading, 2, kPermissionDenied);
  EXPECT_EQ(Read(), kPermissionDenied);
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kPermissionDenied, "ReadFile",
                                                  "Fehler beim Öffnen der Datei Bericht.lst")))
      << "earlier entries are gone";
}

TEST_F(ReportIoTest, AFolderInPlaceOfTheFileCannotBeOpened) {
  memory_.PutFolder(path_);
  EXPECT_EQ(Read(), kPathFileAccess);
  EXPECT_EQ(Write(), kPathFileAccess);
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kPathFileAccess, "WriteFile",
                                                  "Fehler beim Öffnen der Datei Bericht.lst")));
}

TEST_F(ReportIoTest, ReadingFails) {
  memory_.Put(path_, "[A]\r\n");
  files_.FailCall(FileCall::kRead, 1, kDeviceError);
  EXPECT_EQ(Read(), kDeviceError);
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kDeviceError, "ReadFile",
                                                  "Fehler beim Lesen aus der Datei Bericht.lst")));
}

TEST_F(ReportIoTest, ALineThatHangsBelowNothingFails) {
  memory_.Put(path_, "{\r\n{\r\nX=1\r\n");
  EXPECT_EQ(Read(), kObjectNotSet);
  EXPECT_THAT(Entries(), ElementsAre(EntryText(kObjectNotSet, "BXReportFile Prozedur: AddLine"),
                                     ManagerEntry(kObjectNotSet, "ReadFile",
                                                  "Fehler beim Verarbeiten einer Zeile.")));
}

TEST_F(ReportIoTest, FilesWithAByteOrderMarkAreRefused) {
  for (const char* mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
    memory_.Put(path_, std::string(mark) + "[A]\r\n");
    EXPECT_EQ(Read(), kInvalidCall);
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kInvalidCall, "ReadFile",
                                                    "Fehler beim Verarbeiten einer Zeile.")));
  }
  const std::string part_of_a_mark = "\xEF\xBB[A]=\r\n";
  memory_.Put(path_, part_of_a_mark);
  EXPECT_EQ(Read(), kObjectNotSet) << "read as a line, here one without a section above it";
}

TEST_F(ReportIoTest, WritingEndsAtTheFirstEmptyLine) {
  const Ref<Level> level = context_->CreateLevel(0);
  const auto add = [&](std::string_view name) {
    AddArguments arguments;
    arguments.strName = name;
    arguments.bxltLineType = bxltSection;
    level->Add(arguments);
  };
  add("[A]");
  add("");
  add("[C]");
  lines_ = level->ElementArray();
  ASSERT_EQ(Write(), 0);
  EXPECT_EQ(memory_.Get(path_), "[A]\r\n");
}

TEST_F(ReportIoTest, ATreeWithoutLinesEmptiesTheFile) {
  memory_.Put(path_, "[A]\r\n");
  ASSERT_EQ(Write(), 0);
  EXPECT_EQ(memory_.Get(path_), "");
}

TEST_F(ReportIoTest, WritingIsDoneInLargePieces) {
  std::string contents = "[A]\r\n";
  while (contents.size() < 700'000) contents += " Name=value that takes up some space\r\n";
  EXPECT_EQ(Passed(contents), contents);
  EXPECT_EQ(files_.CountCalls(FileCall::kWrite), 3);
}

struct WriteFailure {
  const char* what;
  FileCall call;
  std::int32_t number;
  const char* message;
};

TEST_F(ReportIoTest, FailuresOfWritingLeaveTheFileAlone) {
  const WriteFailure rows[] = {
      {"open", FileCall::kOpenForReplacing, kPermissionDenied, "Fehler beim Öffnen der Datei "},
      {"write", FileCall::kWrite, kDiskFull, "Fehler beim Schreiben in Datei "},
      {"commit", FileCall::kCommit, kDeviceError, "Fehler beim Schreiben in Datei "},
  };
  memory_.Put(path_, "[A]\r\n");
  ASSERT_EQ(Read(), 0);
  memory_.Put(path_, "[B]\r\n");
  for (const WriteFailure& row : rows) {
    files_.Reset();
    files_.FailCall(row.call, 1, row.number);
    damaged_ = false;
    EXPECT_EQ(Write(), row.number) << row.what;
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(row.number, "WriteFile",
                                                    row.message + std::string("Bericht.lst"))));
    EXPECT_FALSE(damaged_) << row.what;
    EXPECT_EQ(memory_.files().size(), 1u) << row.what;
    EXPECT_EQ(memory_.Get(path_), "[B]\r\n") << row.what;
  }
}

TEST_F(ReportIoTest, OnlyAHalfWrittenFileIsDamaged) {
  const std::string whole = "[A]\r\n X=1\r\n";
  memory_.Put(path_, whole);
  ASSERT_EQ(Read(), 0);
  for (const FileCall call : {FileCall::kWrite, FileCall::kCommit}) {
    files_.Reset();
    files_.FailCall(call, 1, kDiskFull, Damage::kHalfWritten);
    damaged_ = false;
    EXPECT_EQ(Write(), kDiskFull);
    EXPECT_EQ(damaged_, call == FileCall::kCommit);
    EXPECT_EQ(memory_.Get(path_), damaged_ ? "[A]\r\n" : whole);
  }
}

TEST_F(ReportIoTest, WhoDoesNotAskIsNotTold) {
  memory_.Put(path_, "[A]\r\n");
  lines_ = ReadReport(files_, context_, path_, nullptr);
  files_.FailCall(FileCall::kCommit, 1, kDiskFull, Damage::kHalfWritten);
  EXPECT_EQ(FailureNumber([&] {
              WriteReport(files_, path_, {context_, lines_}, nullptr);
            }),
            kDiskFull);
}

TEST_F(ReportIoTest, AFailureWhileALineIsFetchedLeavesTheFileAlone) {
  memory_.Put(path_, "[A]\r\n X=1\r\n");
  ASSERT_EQ(Read(), 0);
  loop_.FailAt(2, kOverflow);
  EXPECT_EQ(Write(), kOverflow);
  EXPECT_FALSE(damaged_);
  EXPECT_EQ(memory_.Get(path_), "[A]\r\n X=1\r\n");
}

TEST_F(ReportIoTest, ACharacterThatTheCodePageLacksIsAWriteError) {
  const Ref<Level> level = context_->CreateLevel(0);
  AddArguments arguments;
  arguments.strName = "[\u0416]";
  arguments.bxltLineType = bxltSection;
  level->Add(arguments);
  lines_ = level->ElementArray();
  EXPECT_EQ(Write(), kInvalidCall);
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kInvalidCall, "WriteFile",
                                                  "Fehler beim Schreiben in Datei Bericht.lst")));
  EXPECT_THAT(memory_.files(), IsEmpty());
}

}  // namespace
}  // namespace tessary
