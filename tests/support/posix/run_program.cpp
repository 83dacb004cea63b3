#include "support/run_program.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "support/temporary_folder.h"

namespace tessary {
namespace {

constexpr int kCannotRun = 127;

[[noreturn]] void BecomeProgram(const ProgramRun& run) {
  std::vector<char*> arguments = {const_cast<char*>(run.program.c_str())};
  for (const std::string& argument : run.arguments) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  for (const std::string& variable : run.environment) putenv(const_cast<char*>(variable.c_str()));
  if (run.folder.empty() || chdir(run.folder.c_str()) == 0) {
    execv(run.program.c_str(), arguments.data());
  }
  _exit(kCannotRun);
}

void Redirect(int to, const std::string& path, int flags) {
  const int fd = open(path.c_str(), flags | O_CLOEXEC, 0600);
  if (fd < 0 || dup2(fd, to) < 0) _exit(kCannotRun);
}

int WaitFor(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Until the last one who has the terminal is gone, which ends with an error on this system.
std::string ReadAll(int fd) {
  std::string text;
  char buffer[4096];
  for (ssize_t count; (count = read(fd, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

ProgramResult RunProgramInto(const ProgramRun& run, const std::string& path) {
  const TemporaryFolder folder;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start a process");
  if (child == 0) {
    Redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
    Redirect(STDOUT_FILENO, path, O_WRONLY | O_CREAT | O_TRUNC);
    Redirect(STDERR_FILENO, folder / "err", O_WRONLY | O_CREAT | O_TRUNC);
    BecomeProgram(run);
  }
  ProgramResult result;
  result.exit_code = WaitFor(child);
  result.err = GetFile(folder / "err");
  return result;
}

ProgramResult RunProgram(const ProgramRun& run) {
  const TemporaryFolder folder;
  ProgramResult result = RunProgramInto(run, folder / "out");
  result.out = GetFile(folder / "out");
  return result;
}

ProgramResult RunOnTerminal(const ProgramRun& run, std::string_view typed) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child < 0) throw std::runtime_error("cannot open a terminal");
  if (child == 0) BecomeProgram(run);
  if (write(terminal, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size())) {
    throw std::runtime_error("cannot type on the terminal");
  }
  ProgramResult result;
  result.out = ReadAll(terminal);
  result.exit_code = WaitFor(child);
  close(terminal);
  return result;
}

}  // namespace tessary
