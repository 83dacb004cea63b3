#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/file_system.h"
#include "platform/message_loop.h"

namespace tessary {

// How long an operation waits for a folder that another run works in.
struct FolderWait {
  int attempts = 50;
  std::chrono::milliseconds pause{200};  // between two attempts
};

// Keeps other runs away from `folder`, after waiting for the one that works there; null when that
// takes too long. `loop`, which may be null, has its turns meanwhile.
std::unique_ptr<FolderLock> WaitForFolder(FileSystem& files, const std::string& folder,
                                          const FolderWait& wait, MessageLoop* loop);

// What the user is told when it takes too long.
std::string FolderInUseText(const std::string& folder);

}  // namespace tessary
