#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

// System calls with their interruptions and partial results dealt with. Errors raise Failure
// except where a function says otherwise.

namespace tessary {

struct OpenedFile {
  FileDescriptor fd;
  struct stat status;
};

// Calls open; the result is not open, and errno set, when that fails. Never waits for the other
// end of a pipe and never takes a terminal as its own.
FileDescriptor TryOpen(const std::string& path, int flags, mode_t mode = 0);

// Opens an existing regular file with `access` (O_RDONLY or O_WRONLY); 75 for anything else.
OpenedFile OpenRegularFile(const std::string& path, int access);

std::size_t ReadSome(int fd, char* buffer, std::size_t size);
// Writes as many of the bytes as the system takes at once, at least one, and returns their number.
std::size_t WriteSome(int fd, std::string_view bytes);
void WriteAll(int fd, std::string_view bytes);

// Waits until the file is on the disk.
void Flush(int fd);

// Waits until the names in `folder` are on the disk, as far as the folder can be opened for that.
void FlushFolder(const std::string& folder);
// The same where a failure changes nothing any more.
void TryFlushFolder(const std::string& folder);

// Renames unless `to` exists; errno is set when the result is false.
bool RenameToFreeName(const char* from, const char* to);

// Locks the file or folder for this process; false when another one holds the lock. File systems
// without locks count as lockable.
bool TryLock(int fd);

// The folder that holds `path`, in a form that the system takes.
std::string FolderHolding(const std::string& path);

}  // namespace tessary
