#include "ui/win32/clipboard.h"

#include <algorithm>

namespace tessary::win32 {
namespace {

HGLOBAL CopyOf(const std::wstring& text) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  auto* target = memory ? static_cast<wchar_t*>(GlobalLock(memory)) : nullptr;
  if (!target) return memory;
  std::copy_n(text.c_str(), text.size() + 1, target);
  GlobalUnlock(memory);
  return memory;
}

}  // namespace

void PutOnClipboard(HWND window, const std::wstring& text) {
  if (!OpenClipboard(window)) return;
  EmptyClipboard();
  const HGLOBAL memory = CopyOf(text);
  // What the clipboard has taken belongs to it.
  if (memory && !SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
  CloseClipboard();
}

}  // namespace tessary::win32
