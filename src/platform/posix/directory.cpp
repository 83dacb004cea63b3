#include "platform/posix/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "platform/failure.h"
#include "platform/posix/posix_errors.h"

namespace tessary {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};

bool IsRegular(DIR* directory, const dirent& entry) {
  if (entry.d_type == DT_REG) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status;
  return fstatat(dirfd(directory), entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

std::vector<std::string> RegularFileNames(const std::string& folder) {
  CheckPath(folder);
  const std::unique_ptr<DIR, DirectoryCloser> directory(opendir(folder.c_str()));
  if (!directory) {
    if (errno == ENOENT) throw Failure(kPathNotFound);
    FailWith(errno);
  }
  std::vector<std::string> names;
  while (true) {
    errno = 0;
    const dirent* const entry = readdir(directory.get());
    if (entry == nullptr) break;
    if (IsRegular(directory.get(), *entry)) names.emplace_back(entry->d_name);
  }
  if (errno != 0) FailWith(errno);
  return names;
}

}  // namespace tessary
