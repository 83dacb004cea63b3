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

}  // namespace tessary
