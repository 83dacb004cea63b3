#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace tessary {

// An empty file beside a target that will take the target's place, or disappear when the object is
// destroyed before that. It is locked as long as the object lives, so that another run can tell it
// from the left-over of a run that died.
class TemporaryFile {
 public:
  // Creates the file that belongs to `target` with permissions `mode`. Nothing, and a value of
  // errno in `error`, when the folder does not take new files. Raises Failure 70 when another run
  // is about to replace the same target.
  static std::unique_ptr<TemporaryFile> TryCreate(const std::string& target, mode_t mode,
                                                  int& error);

  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int fd() const { return fd_.get(); }

  // Gives the file the target's name, in place of what had it. Raises Failure.
  void MoveTo(const std::string& target);
  // The same only as long as nothing else has that name; Failure 58.
  void MoveToFreeName(const std::string& target);

 private:
  TemporaryFile(FileDescriptor fd, std::string path);

  FileDescriptor fd_;
  std::string path_;  // Empty once the file has moved.
};

// Removes the temporary files in `folder` that belong to no living run; never fails.
void RemoveDeadTemporaryFiles(const std::string& folder);

}  // namespace tessary
