#pragma once

#include <utility>

// The second needs the first.
// clang-format off
#include "platform/windows/system_headers.h"
#include <commctrl.h>
// clang-format on

// Owners of what the system lends the windows. Every kind is counted, so that a test can tell
// whether all of it was given back.

namespace tessary::win32 {

enum class HandleKind { kWindow, kFont, kIcon, kImageList, kActivationContext };

// How many of a kind are in use in this process.
long LiveHandles(HandleKind kind);
void CountHandle(HandleKind kind, long difference);

// `Kind` says what is owned: the type Handle, the constant kKind, and Free.
template <class Kind>
class Owned {
 public:
  using Handle = typename Kind::Handle;

  Owned() = default;
  // Takes a handle over; a null one owns nothing.
  explicit Owned(Handle handle) : handle_(handle) {
    if (handle_) CountHandle(Kind::kKind, 1);
  }
  Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Owned() {
    if (!handle_) return;
    Kind::Free(handle_);
    CountHandle(Kind::kKind, -1);
  }

  Handle get() const { return handle_; }

 private:
  Handle handle_ = nullptr;
};

struct FontKind {
  using Handle = HFONT;
  static constexpr HandleKind kKind = HandleKind::kFont;
  static void Free(HFONT font) { DeleteObject(font); }
};
using Font = Owned<FontKind>;

struct IconKind {
  using Handle = HICON;
  static constexpr HandleKind kKind = HandleKind::kIcon;
  static void Free(HICON icon) { DestroyIcon(icon); }
};
using Icon = Owned<IconKind>;

struct ImageListKind {
  using Handle = HIMAGELIST;
  static constexpr HandleKind kKind = HandleKind::kImageList;
  static void Free(HIMAGELIST images) { ImageList_Destroy(images); }
};
using ImageList = Owned<ImageListKind>;

}  // namespace tessary::win32
