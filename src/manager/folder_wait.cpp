#include "manager/folder_wait.h"

#include <thread>

namespace tessary {

std::unique_ptr<FolderLock> WaitForFolder(FileSystem& files, const std::string& folder,
                                          const FolderWait& wait, MessageLoop* loop) {
  for (int attempt = 1; attempt <= wait.attempts; ++attempt) {
    if (attempt > 1) std::this_thread::sleep_for(wait.pause);
    if (auto lock = files.TryLockFolder(folder)) return lock;
    if (loop) loop->Yield();
  }
  return nullptr;
}

std::string FolderInUseText(const std::string& folder) {
  return "Im Ordner " + folder + " werden gerade Berichte von einem anderen Vorgang konvertiert.";
}

}  // namespace tessary
