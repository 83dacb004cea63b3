#include "platform/console.h"

#include <gtest/gtest.h>

#include "platform/windows/file_handle.h"
#include "platform/windows/wide_text.h"

namespace tessary {
namespace {

// Puts another handle in a standard stream's place as long as it lives.
class StandardHandle {
 public:
  StandardHandle(DWORD stream, HANDLE handle) : stream_(stream), before_(GetStdHandle(stream)) {
    SetStdHandle(stream, handle);
  }
  ~StandardHandle() { SetStdHandle(stream_, before_); }
  StandardHandle(const StandardHandle&) = delete;
  StandardHandle& operator=(const StandardHandle&) = delete;

 private:
  DWORD stream_;
  HANDLE before_;
};

struct Pipe {
  FileHandle reading;
  FileHandle writing;

  Pipe() {
    HANDLE ends[2];
    if (CreatePipe(&ends[0], &ends[1], nullptr, 0)) {
      reading = FileHandle(ends[0]);
      writing = FileHandle(ends[1]);
    }
  }
};

TEST(WindowsConsoleTest, RedirectedOutputGetsTheBytes) {
  Pipe pipe;
  const StandardHandle output(STD_OUTPUT_HANDLE, pipe.writing.get());
  Console& console = SystemConsole();
  EXPECT_FALSE(console.IsTerminal(ConsoleStream::kOutput));
  EXPECT_EQ(console.Width(ConsoleStream::kOutput), 80u);
  EXPECT_EQ(console.Write(ConsoleStream::kOutput, "Größe Ω\n\xFF"), WriteOutcome::kWritten);
  char bytes[32];
  DWORD count = 0;
  ASSERT_TRUE(ReadFile(pipe.reading.get(), bytes, sizeof bytes, &count, nullptr));
  EXPECT_EQ(std::string(bytes, count), "Größe Ω\n\xFF");
}

TEST(WindowsConsoleTest, AClosedPipeIsNobodysFault) {
  Pipe pipe;
  const StandardHandle output(STD_OUTPUT_HANDLE, pipe.writing.get());
  pipe.reading.Close();
  EXPECT_EQ(SystemConsole().Write(ConsoleStream::kOutput, "x"), WriteOutcome::kClosed);
}

TEST(WindowsConsoleTest, AMissingStreamLosesWhatIsWritten) {
  const StandardHandle output(STD_OUTPUT_HANDLE, nullptr);
  EXPECT_FALSE(SystemConsole().IsTerminal(ConsoleStream::kOutput));
  EXPECT_EQ(SystemConsole().Write(ConsoleStream::kOutput, "x"), WriteOutcome::kFailed);
}

TEST(WindowsConsoleTest, RedirectedInputIsReadByLines) {
  Pipe pipe;
  const std::string text = "Größe\r\n\nlast\x1A";
  DWORD count = 0;
  ASSERT_TRUE(
      WriteFile(pipe.writing.get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr));
  pipe.writing.Close();
  const StandardHandle input(STD_INPUT_HANDLE, pipe.reading.get());
  Console& console = SystemConsole();
  EXPECT_EQ(console.ReadLine(), "Größe");
  EXPECT_EQ(console.ReadLine(), "");
  EXPECT_EQ(console.ReadLine(), "last\x1A");
  EXPECT_EQ(console.ReadLine(), std::nullopt);
}

TEST(WindowsConsoleTest, EnvironmentVariablesAreUtf8) {
  SetEnvironmentVariableW(L"TESSARY_TEST", L"Gr\u00F6\u00DFe \u03A9");
  EXPECT_EQ(SystemConsole().Environment("TESSARY_TEST"), "Größe Ω");
  const std::wstring long_value(5000, L'x');
  SetEnvironmentVariableW(L"TESSARY_TEST", long_value.c_str());
  EXPECT_EQ(SystemConsole().Environment("TESSARY_TEST").size(), long_value.size());
  SetEnvironmentVariableW(L"TESSARY_TEST", nullptr);
  EXPECT_EQ(SystemConsole().Environment("TESSARY_TEST"), "");
}

// The screen of a console of its own.
FileHandle OpenScreen() {
  FreeConsole();
  AllocConsole();
  return FileHandle(CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                              CONSOLE_TEXTMODE_BUFFER, nullptr));
}

std::string ShownOn(const FileHandle& screen, SHORT row, DWORD columns) {
  std::wstring shown(columns, L'\0');
  DWORD count = 0;
  ReadConsoleOutputCharacterW(screen.get(), shown.data(), columns, COORD{0, row}, &count);
  return Utf8FromWide(std::wstring_view(shown).substr(0, count));
}

TEST(WindowsConsoleTest, ARealConsoleShowsEveryCharacter) {
  const FileHandle screen = OpenScreen();
  if (!screen.is_open()) GTEST_SKIP() << "NOT TESTED: no console can be opened here";
  const StandardHandle output(STD_OUTPUT_HANDLE, screen.get());
  Console& console = SystemConsole();
  EXPECT_TRUE(console.IsTerminal(ConsoleStream::kOutput));
  EXPECT_GT(console.Width(ConsoleStream::kOutput), 0u);
  EXPECT_EQ(console.Write(ConsoleStream::kOutput, "Größe\nΩ\xFF"), WriteOutcome::kWritten);
  EXPECT_EQ(ShownOn(screen, 0, 5), "Größe");
  EXPECT_EQ(ShownOn(screen, 1, 2), "Ω\uFFFD");
}

}  // namespace
}  // namespace tessary
