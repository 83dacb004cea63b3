#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "windows/component.h"
#include "windows/report_folders.h"

// A program with a window of its own that uses the component, in a thread of its own.

namespace tessary::win32 {

// What the windows were sent while the client's operations ran, in order.
struct Heard {
  std::vector<std::string> titles;  // of the progress window, the bold line
  std::vector<std::string> steps;
  std::vector<int> bar;                       // positions that stayed
  std::vector<HCURSOR> pointers;              // what the pointer was when the bar moved
  std::vector<std::string> captions;          // of all windows
  std::map<std::string, HCURSOR> pointer_at;  // what it was when a window got this caption
  std::vector<int> colours;  // the numbers of the controls that heard of new colours
};

class Client {
 public:
  // What the thread does; it has an apartment, a visible, active window, and a manager.
  using Work = std::function<void(Client&)>;

  explicit Client(Work work);
  ~Client() { Join(); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Waits for the end of the work; what was heard may be looked at from then on.
  const Heard& Join();
  HWND window() const { return window_; }
  DWORD thread_id() const { return thread_id_; }
  // The windows of the client's thread that are active and have the focus.
  HWND Active() const;
  HWND Focus() const;

  // For the work.
  bool ConvertReport(const std::string& report, const std::string& difference_file,
                     const std::string& backup_folder);
  bool ConvertReports(const std::string& difference_folder, const std::string& report_folder);
  bool CreateDiffFiles(const std::string& old_folder, const std::string& new_folder,
                       const std::string& difference_folder);
  void ShowErrorProtocol();

 private:
  void Run(const Work& work);

  Heard heard_;
  HWND window_ = nullptr;
  DWORD thread_id_ = 0;
  HANDLE started_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  com::ComPtr<IBXConvertLLMgr> manager_;
  std::thread thread_;
};

}  // namespace tessary::win32
