#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>

#include "platform/file_system.h"

namespace tessary {

// A replacement that can also take over attributes of a file whose copy it becomes.
class PosixReplacement : public FileReplacement {
 public:
  // Gives the file, where it is new, owner and permissions from `status`, and has Commit give it
  // the time of its last change; all as far as the system lets it. To be called before Write.
  virtual void CopyStatus(const struct stat& status) = 0;
};

// What SystemFiles().OpenForReplacing does.
std::unique_ptr<PosixReplacement> OpenReplacement(const std::string& path);

// The same for a file that is not there yet. Failure 58, also from Commit, when it is.
std::unique_ptr<PosixReplacement> OpenNewFile(const std::string& path);

// Waits until an existing file and its name are on the disk.
void FlushFile(const std::string& path);

// What SystemFiles().CheckReplacing does.
void CheckReplacement(const std::string& path);

// True when the user may create files and folders in `folder`; errno is set when not.
bool TakesNewFiles(const std::string& folder);

}  // namespace tessary
