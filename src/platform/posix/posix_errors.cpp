#include "platform/posix/posix_errors.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/failure.h"
#include "platform/path.h"

namespace tessary {

std::int32_t RunTimeErrorOf(int error) {
  switch (error) {
    case ENOENT:
      return kFileNotFound;
    case ENOTDIR:
      return kPathNotFound;
    case EEXIST:
      return kFileExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case EIO:
      return kDeviceError;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case ENAMETOOLONG:
    case EINVAL:
    case ELOOP:
    case EILSEQ:
      return kBadFileName;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
      return kPermissionDenied;
    case ENOMEM:
      return kOutOfMemory;
    default:
      return kPathFileAccess;
  }
}

void FailWith(int error) { throw Failure(RunTimeErrorOf(error)); }

void FailOpening(const std::string& path, int error) {
  if (error != ENOENT) FailWith(error);
  const std::string parent = ParentFolderOf(path);
  struct stat status;
  const bool has_folder = parent.empty() || stat(parent.c_str(), &status) == 0;
  throw Failure(has_folder ? kFileNotFound : kPathNotFound);
}

void CheckPath(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) throw Failure(kBadFileName);
}

}  // namespace tessary
