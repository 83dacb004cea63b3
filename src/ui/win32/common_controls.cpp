#include "ui/win32/common_controls.h"

#include "ui/win32/handles.h"

namespace tessary::win32 {
namespace {

HANDLE ContextOf(HINSTANCE module) {
  // The number under which a library's manifest for what it uses itself is kept.
  constexpr WORD kManifest = 2;
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  context.hModule = module;
  context.lpResourceName = MAKEINTRESOURCEW(kManifest);
  return CreateActCtxW(&context);
}

}  // namespace

CommonControls::CommonControls(HINSTANCE module) : context_(ContextOf(module)) {
  if (context_ != INVALID_HANDLE_VALUE) {
    CountHandle(HandleKind::kActivationContext, 1);
    active_ = ActivateActCtx(context_, &cookie_);
  }
  INITCOMMONCONTROLSEX classes{};
  classes.dwSize = sizeof classes;
  classes.dwICC = ICC_PROGRESS_CLASS | ICC_TREEVIEW_CLASSES | ICC_STANDARD_CLASSES;
  InitCommonControlsEx(&classes);
}

CommonControls::~CommonControls() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ == INVALID_HANDLE_VALUE) return;
  ReleaseActCtx(context_);
  CountHandle(HandleKind::kActivationContext, -1);
}

}  // namespace tessary::win32
