#include "support/run_program.h"

#include <stdexcept>

#include "platform/windows/file_handle.h"
#include "platform/windows/native_path.h"
#include "platform/windows/wide_text.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

// By the rules that programs take their command line apart by.
std::wstring Quoted(const std::string& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t unit : WideFromUtf8(argument)) {
    if (unit == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    quoted.push_back(unit);
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring CommandLineOf(const ProgramRun& run) {
  std::wstring line = Quoted(run.program);
  for (const std::string& argument : run.arguments) line.append(L" ").append(Quoted(argument));
  return line;
}

// The variables that are set for the program, in this process as long as the object lives.
class Environment {
 public:
  explicit Environment(const std::vector<std::string>& variables) {
    for (const std::string& variable : variables) {
      const std::size_t equals = variable.find('=');
      names_.push_back(WideFromUtf8(variable.substr(0, equals)));
      SetEnvironmentVariableW(names_.back().c_str(),
                              WideFromUtf8(variable.substr(equals + 1)).c_str());
    }
  }
  ~Environment() {
    for (const std::wstring& name : names_) SetEnvironmentVariableW(name.c_str(), nullptr);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  std::vector<std::wstring> names_;
};

FileHandle OpenInherited(const std::string& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  FileHandle handle(CreateFileW(WideFromUtf8(path).c_str(), access,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!handle.is_open()) throw std::runtime_error("cannot open " + path);
  return handle;
}

int RunWith(const ProgramRun& run, STARTUPINFOW& startup) {
  const Environment environment(run.environment);
  std::wstring line = CommandLineOf(run);
  const std::wstring folder = WideFromUtf8(run.folder);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      folder.empty() ? nullptr : folder.c_str(), &startup, &process))
    throw std::runtime_error("cannot start " + run.program);
  CloseHandle(process.hThread);
  const FileHandle program(process.hProcess);
  WaitForSingleObject(program.get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(program.get(), &code);
  return static_cast<int>(code);
}

}  // namespace

ProgramResult RunProgramInto(const ProgramRun& run, const std::string& path) {
  const TemporaryFolder folder;
  ProgramResult result;
  {
    const FileHandle input = OpenInherited("NUL", GENERIC_READ, OPEN_EXISTING);
    const FileHandle output = OpenInherited(path, GENERIC_WRITE, CREATE_ALWAYS);
    const FileHandle error = OpenInherited(folder / "err", GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = output.get();
    startup.hStdError = error.get();
    result.exit_code = RunWith(run, startup);
  }
  result.err = GetFile(folder / "err");
  return result;
}

ProgramResult RunProgram(const ProgramRun& run) {
  const TemporaryFolder folder;
  ProgramResult result = RunProgramInto(run, folder / "out");
  result.out = GetFile(folder / "out");
  return result;
}

}  // namespace tessary
