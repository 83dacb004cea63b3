#include "windows/views/window_reader.h"

#include <cwchar>

#include "platform/windows/wide_text.h"

namespace tessary::win32 {
namespace {

BOOL CALLBACK AddOpenWindow(HWND window, LPARAM windows) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId() && IsWindowVisible(window)) {
    reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  }
  return TRUE;
}

BOOL CALLBACK AddChild(HWND window, LPARAM windows) {
  reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

std::vector<HWND> ControlsBelow(HWND window) {
  std::vector<HWND> controls;
  EnumChildWindows(window, AddChild, reinterpret_cast<LPARAM>(&controls));
  return controls;
}

std::wstring WideTextOf(HWND window) {
  std::wstring text(4096, L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

bool IsOfClass(HWND window, const wchar_t* name) {
  wchar_t own[64] = {};
  GetClassNameW(window, own, 64);
  return _wcsicmp(own, name) == 0;
}

HWND WaitForOpenWindow(const std::function<bool(HWND)>& wanted) {
  HWND found = nullptr;
  WaitUntil([&] {
    for (const HWND window : OpenWindows()) {
      if (wanted(window)) found = window;
    }
    return found != nullptr;
  });
  return found;
}

HTREEITEM Next(HWND tree, WPARAM relation, HTREEITEM item) {
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

std::string LineOf(HWND tree, HTREEITEM node) {
  wchar_t text[2048] = {};
  TVITEMW item{};
  item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  item.hItem = node;
  item.pszText = text;
  item.cchTextMax = 2048;
  SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  const char sign = item.iImage == item.iSelectedImage ? "+-!"[item.iImage] : '?';
  return sign + Utf8FromWide(text) + "\n";
}

void AddNodes(HWND tree, HTREEITEM first, std::size_t depth, std::string& lines) {
  for (HTREEITEM node = first; node; node = Next(tree, TVGN_NEXT, node)) {
    lines.append(2 * depth, ' ').append(LineOf(tree, node));
    AddNodes(tree, Next(tree, TVGN_CHILD, node), depth + 1, lines);
  }
}

HFONT FontOf(HWND control) {
  return reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
}

LOGFONTW DescriptionOf(HFONT font) {
  LOGFONTW description{};
  GetObjectW(font, sizeof description, &description);
  return description;
}

bool FitsIntoItself(HWND label) {
  const std::wstring text = WideTextOf(label);
  const HDC device = GetDC(label);
  const HGDIOBJ before = SelectObject(device, FontOf(label));
  RECT needed{0, 0, ClientSizeOf(label).cx, 0};
  DrawTextW(device, text.c_str(), -1, &needed,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
  SelectObject(device, before);
  ReleaseDC(label, device);
  const SIZE own = ClientSizeOf(label);
  return needed.right <= own.cx && needed.bottom <= own.cy;
}

bool LiesInsideParent(HWND control) {
  const HWND parent = GetParent(control);
  RECT place = PlaceOf(control);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
  const SIZE room = ClientSizeOf(parent);
  return place.left >= 0 && place.top >= 0 && place.right <= room.cx && place.bottom <= room.cy;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start > kPatience) return false;
    Sleep(10);
  }
  return true;
}

std::vector<HWND> OpenWindows() {
  std::vector<HWND> windows;
  EnumWindows(AddOpenWindow, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

HWND WaitForWindow(const std::wstring& caption) {
  return WaitForOpenWindow([&](HWND window) { return WideTextOf(window) == caption; });
}

HWND WaitForQuestion() {
  return WaitForOpenWindow([](HWND window) {
    return IsOfClass(window, L"#32770") && GetDlgItem(window, IDYES) != nullptr;
  });
}

bool WaitUntilGone(HWND window) {
  return WaitUntil([window] { return !IsWindow(window); });
}

HWND ControlOf(HWND window, int id) {
  for (const HWND control : ControlsBelow(window)) {
    if (GetDlgCtrlID(control) == id) return control;
  }
  return nullptr;
}

std::string TextOf(HWND window) { return Utf8FromWide(WideTextOf(window)); }

RECT PlaceOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

SIZE ClientSizeOf(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

std::string NodesOf(HWND tree) {
  std::string lines;
  AddNodes(tree, Next(tree, TVGN_ROOT, nullptr), 0, lines);
  return lines;
}

std::vector<std::string> ClippedTexts(HWND window) {
  std::vector<std::string> clipped;
  for (const HWND control : ControlsBelow(window)) {
    const bool label = IsOfClass(control, L"Static") && !WideTextOf(control).empty();
    const bool fits = !label || FitsIntoItself(control);
    if (!fits || !LiesInsideParent(control)) clipped.push_back(TextOf(control));
  }
  return clipped;
}

int FontHeightOf(HWND control) { return -DescriptionOf(FontOf(control)).lfHeight; }

std::string FontNameOf(HWND control) {
  const LOGFONTW description = DescriptionOf(FontOf(control));
  return Utf8FromWide(description.lfFaceName) + (description.lfWeight >= FW_BOLD ? " bold" : "");
}

int SystemResolution() {
  const HDC device = GetDC(nullptr);
  const int resolution = GetDeviceCaps(device, LOGPIXELSY);
  ReleaseDC(nullptr, device);
  return resolution;
}

}  // namespace tessary::win32
