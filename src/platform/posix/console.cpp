#include "platform/console.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::size_t kDefaultWidth = 80;

int DescriptorOf(ConsoleStream stream) {
  switch (stream) {
    case ConsoleStream::kInput:
      return STDIN_FILENO;
    case ConsoleStream::kOutput:
      return STDOUT_FILENO;
    case ConsoleStream::kError:
      return STDERR_FILENO;
  }
  return STDERR_FILENO;
}

// Gives a closed standard stream a descriptor on which its use fails as before.
void OccupyStandardStreams() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) != -1) continue;
    if (open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) return;
  }
}

void WaitUntilWritable(int fd) {
  pollfd waiting{fd, POLLOUT, 0};
  poll(&waiting, 1, -1);
}

class PosixConsole final : public Console {
 public:
  PosixConsole() {
    OccupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
  }

  bool IsTerminal(ConsoleStream stream) const override { return isatty(DescriptorOf(stream)) != 0; }

  std::size_t Width(ConsoleStream stream) const override {
    winsize size{};
    const bool known = ioctl(DescriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kDefaultWidth;
  }

  bool ShowsUnicode() const override {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
      const std::string locale = Environment(name);
      if (locale.empty()) continue;
      return FindIgnoreCase(locale, "UTF-8") != std::string::npos ||
             FindIgnoreCase(locale, "UTF8") != std::string::npos;
    }
    return false;
  }

  bool TakesColours(ConsoleStream stream) const override {
    const std::string terminal = Environment("TERM");
    return IsTerminal(stream) && !terminal.empty() && terminal != "dumb";
  }

  std::string Environment(const char* name) const override {
    const char* value = std::getenv(name);
    return value ? value : std::string();
  }

  WriteOutcome Write(ConsoleStream stream, std::string_view text) override {
    const int fd = DescriptorOf(stream);
    while (!text.empty()) {
      const ssize_t written = write(fd, text.data(), text.size());
      if (written >= 0) {
        text.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno == EAGAIN) {
        WaitUntilWritable(fd);
      } else if (errno != EINTR) {
        return errno == EPIPE ? WriteOutcome::kClosed : WriteOutcome::kFailed;
      }
    }
    return WriteOutcome::kWritten;
  }

  // Takes byte by byte, so that nothing behind the line is lost to whoever reads next.
  std::optional<std::string> ReadLine() override {
    std::string line;
    char byte = 0;
    while (true) {
      const ssize_t count = read(STDIN_FILENO, &byte, 1);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return line.empty() ? std::nullopt : std::optional(line);
      if (byte == '\n') return line;
      line.push_back(byte);
    }
  }
};

}  // namespace

Console& SystemConsole() {
  static PosixConsole console;
  return console;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return std::vector<std::string>(argv + std::min(argc, 1), argv + argc);
}

}  // namespace tessary
