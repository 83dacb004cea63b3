#include "windows/views/client.h"

#include "platform/windows/wide_text.h"
#include "ui/win32/window_controls.h"
#include "windows/views/window_reader.h"

namespace tessary::win32 {
namespace {

using com::Bstr;

Heard* hearing = nullptr;  // one client at a time

// Every position is sent after the next one, so every other one stays.
void HearPosition(int position) {
  static bool too_far = false;
  too_far = !too_far;
  if (too_far) return;
  hearing->bar.push_back(position);
  hearing->pointers.push_back(GetCursor());
}

LRESULT CALLBACK Hear(int code, WPARAM wparam, LPARAM lparam) {
  const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lparam);
  if (code == HC_ACTION && sent.message == WM_SETTEXT) {
    const std::string text = Utf8FromWide(reinterpret_cast<const wchar_t*>(sent.lParam));
    const int id = GetDlgCtrlID(sent.hwnd);
    if (id == kLblProcess) hearing->steps.push_back(text);
    if (id == kLblCaptionBold) hearing->titles.push_back(text);
    if (!GetParent(sent.hwnd) || GetWindow(sent.hwnd, GW_OWNER)) {
      hearing->captions.push_back(text);
      hearing->pointer_at[text] = GetCursor();
    }
  }
  if (code == HC_ACTION && sent.message == WM_SYSCOLORCHANGE) {
    hearing->colours.push_back(GetDlgCtrlID(sent.hwnd));
  }
  if (code == HC_ACTION && sent.message == PBM_SETPOS) HearPosition(static_cast<int>(sent.wParam));
  return CallNextHookEx(nullptr, code, wparam, lparam);
}

GUITHREADINFO StateOf(DWORD thread) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(thread, &info);
  return info;
}

HWND OpenClientWindow() {
  const HWND window =
      CreateWindowExW(0, L"STATIC", L"Aufrufendes Programm", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300,
                      200, 900, 700, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(window);
  SetActiveWindow(window);
  return window;
}

}  // namespace

Client::Client(Work work) : thread_([this, work = std::move(work)] { Run(work); }) {
  WaitForSingleObject(started_, kPatience);
}

const Heard& Client::Join() {
  if (thread_.joinable()) thread_.join();
  if (started_) CloseHandle(started_);
  started_ = nullptr;
  return heard_;
}

HWND Client::Active() const { return StateOf(thread_id_).hwndActive; }
HWND Client::Focus() const { return StateOf(thread_id_).hwndFocus; }

void Client::Run(const Work& work) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    com::Component component;
    manager_ = component.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
    window_ = OpenClientWindow();
    thread_id_ = GetCurrentThreadId();
    hearing = &heard_;
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, Hear, nullptr, thread_id_);
    SetEvent(started_);
    work(*this);
    UnhookWindowsHookEx(hook);
    DestroyWindow(window_);
    manager_ = com::ComPtr<IBXConvertLLMgr>();
  }
  CoUninitialize();
}

bool Client::ConvertReport(const std::string& report, const std::string& difference_file,
                           const std::string& backup_folder) {
  VARIANT_BOOL result = VARIANT_FALSE;
  manager_->ConvertReport(Bstr(std::string_view(report)).get(),
                          Bstr(std::string_view(difference_file)).get(),
                          Bstr(std::string_view(backup_folder)).get(), &result);
  return result == VARIANT_TRUE;
}

bool Client::ConvertReports(const std::string& difference_folder,
                            const std::string& report_folder) {
  VARIANT_BOOL result = VARIANT_FALSE;
  VARIANT nothing{};
  manager_->ConvertReports(Bstr(std::string_view(difference_folder)).get(),
                           Bstr(std::string_view(report_folder)).get(), nullptr, nothing, &result);
  return result == VARIANT_TRUE;
}

bool Client::CreateDiffFiles(const std::string& old_folder, const std::string& new_folder,
                             const std::string& difference_folder) {
  VARIANT_BOOL result = VARIANT_FALSE;
  manager_->CreateDiffFiles(Bstr(std::string_view(old_folder)).get(),
                            Bstr(std::string_view(new_folder)).get(),
                            Bstr(std::string_view(difference_folder)).get(), &result);
  return result == VARIANT_TRUE;
}

void Client::ShowErrorProtocol() { manager_->ShowErrorProtocol(); }

}  // namespace tessary::win32
