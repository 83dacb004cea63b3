#pragma once

#include <memory>
#include <string>

#include "platform/file_system.h"
#include "platform/windows/windows_io.h"

namespace tessary {

// A replacement that can also take over attributes of a file whose copy it becomes.
class WindowsReplacement : public FileReplacement {
 public:
  // Gives the file, where it is new, the attributes of `source`, and has Commit give it the time of
  // its last change; all as far as the system lets it. To be called before Write.
  virtual void CopyStatus(const OpenedFile& source) = 0;
};

// What SystemFiles().OpenForReplacing does.
std::unique_ptr<WindowsReplacement> OpenReplacement(const std::string& path);

// The same for a file that is not there yet. Failure 58, also from Commit, when it is.
std::unique_ptr<WindowsReplacement> OpenNewFile(const std::string& path);

// What SystemFiles().CheckReplacing does.
void CheckReplacement(const std::string& path);

// Raises Failure unless the folder of this native path takes new files and folders.
void CheckNewFile(const std::wstring& path);

}  // namespace tessary
