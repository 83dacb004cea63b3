#pragma once

#include "ui/win32/handles.h"

namespace tessary::win32 {

// A window of the system's dialog class, whose messages a derived class handles. It goes with the
// object, or before it when its owner goes.
class Dialog {
 public:
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

  // Null when the system could not make the window or it has gone.
  HWND window() const { return window_; }

 protected:
  Dialog() = default;
  // The destructor of a derived class calls Destroy as long as it can handle messages. A window
  // that is left, because a derived constructor has thrown, goes without handling any more.
  virtual ~Dialog();

  // Makes the window, invisible, as a child of `parent` or owned by it, as the style says.
  void Create(HINSTANCE module, HWND parent, DWORD style, DWORD extended_style,
              const wchar_t* caption);
  void Destroy();

  // What a dialog procedure answers.
  virtual INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam) = 0;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  HWND window_ = nullptr;
};

// A part of a window that holds controls and takes the size that it is given. What its controls
// say goes on to the window. It has no text, which screen readers would read.
class Pane final : public Dialog {
 public:
  // `background` is a colour of the system, such as COLOR_WINDOW, whose text colour goes with it.
  Pane(HINSTANCE module, HWND parent, int id, int background, int text_colour);
  ~Pane() override { Destroy(); }

 private:
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

  int background_;
  int text_colour_;
};

// A text that is broken where it does not fit into a line.
HWND AddLabel(HWND parent, int id, const wchar_t* text);
HWND AddControl(HWND parent, const wchar_t* window_class, int id, const wchar_t* text, DWORD style,
                DWORD extended_style = 0);

void Place(HWND control, int x, int y, int width, int height);
void SetFont(HWND control, HFONT font);

}  // namespace tessary::win32
