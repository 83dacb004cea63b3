#include "ui/win32/dialog.h"

#include "ui/win32/scaling.h"

namespace tessary::win32 {
namespace {

// A dialog without controls: they are added one by one.
struct alignas(DWORD) Template {
  DLGTEMPLATE header{};
  WORD menu = 0;
  WORD window_class = 0;
  WORD caption = 0;
};

}  // namespace

Dialog::~Dialog() {
  if (!window_) return;
  SetWindowLongPtrW(window_, DWLP_USER, 0);
  DestroyWindow(window_);
  CountHandle(HandleKind::kWindow, -1);
}

void Dialog::Create(HINSTANCE module, HWND parent, DWORD style, DWORD extended_style,
                    const wchar_t* caption) {
  Template form;
  form.header.style = style;
  form.header.dwExtendedStyle = extended_style;
  CreateDialogIndirectParamW(module, &form.header, parent, Procedure,
                             reinterpret_cast<LPARAM>(this));
  if (!window_) return;
  KeepFromAutomaticScaling(window_);
  SetWindowTextW(window_, caption);
}

void Dialog::Destroy() {
  if (window_) DestroyWindow(window_);
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    auto* created = reinterpret_cast<Dialog*>(lparam);
    SetWindowLongPtrW(window, DWLP_USER, lparam);
    created->window_ = window;
    CountHandle(HandleKind::kWindow, 1);
    return FALSE;  // the focus stays where it is
  }
  auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!dialog) return FALSE;
  if (message == WM_NCDESTROY) {
    dialog->window_ = nullptr;
    SetWindowLongPtrW(window, DWLP_USER, 0);
    CountHandle(HandleKind::kWindow, -1);
    return FALSE;
  }
  try {
    return dialog->Handle(message, wparam, lparam);
  } catch (...) {
    return FALSE;  // no exception may pass through the system
  }
}

Pane::Pane(HINSTANCE module, HWND parent, int id, int background, int text_colour)
    : background_(background), text_colour_(text_colour) {
  Create(module, parent, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | DS_CONTROL, WS_EX_CONTROLPARENT,
         L"");
  if (window()) SetWindowLongPtrW(window(), GWLP_ID, id);
}

INT_PTR Pane::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC: {
      const auto device = reinterpret_cast<HDC>(wparam);
      SetBkColor(device, GetSysColor(background_));
      SetTextColor(device, GetSysColor(text_colour_));
      return reinterpret_cast<INT_PTR>(GetSysColorBrush(background_));
    }
    case WM_COMMAND:
      SendMessageW(GetParent(window()), message, wparam, lparam);
      return TRUE;
    case WM_NOTIFY:
      SetWindowLongPtrW(window(), DWLP_MSGRESULT,
                        SendMessageW(GetParent(window()), message, wparam, lparam));
      return TRUE;
    default:
      return FALSE;
  }
}

HWND AddLabel(HWND parent, int id, const wchar_t* text) {
  return AddControl(parent, L"STATIC", id, text, SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL);
}

HWND AddControl(HWND parent, const wchar_t* window_class, int id, const wchar_t* text, DWORD style,
                DWORD extended_style) {
  const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(parent, GWLP_HINSTANCE));
  return CreateWindowExW(extended_style, window_class, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0,
                         0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance,
                         nullptr);
}

void Place(HWND control, int x, int y, int width, int height) {
  SetWindowPos(control, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void SetFont(HWND control, HFONT font) {
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

}  // namespace tessary::win32
