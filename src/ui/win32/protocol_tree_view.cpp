#include "ui/win32/protocol_tree_view.h"

#include <algorithm>
#include <vector>

#include "platform/windows/wide_text.h"
#include "ui/protocol_window_texts.h"
#include "ui/win32/clipboard.h"
#include "ui/win32/dialog.h"
#include "ui/win32/fonts.h"
#include "ui/win32/icons.h"
#include "ui/win32/scaling.h"
#include "ui/win32/window_controls.h"

namespace tessary::win32 {

void ProtocolTreeView::Create(HWND parent) {
  constexpr DWORD kStyle = WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                           TVS_SHOWSELALWAYS | TVS_INFOTIP;
  window_ = AddControl(parent, WC_TREEVIEWW, kTreeView1,
                       WideFromUtf8(protocol_window::kSubtitle).c_str(), kStyle, WS_EX_CLIENTEDGE);
  Fill();
}

void ProtocolTreeView::Fill() {
  std::vector<HTREEITEM> items;
  SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
  for (const ProtocolNode& node : tree_.nodes()) {
    const bool top = node.parent == ProtocolNode::kTopLevel;
    items.push_back(Insert(node, items.size(), top ? TVI_ROOT : items[node.parent]));
  }
  SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
}

HTREEITEM ProtocolTreeView::Insert(const ProtocolNode& node, std::size_t index, HTREEITEM parent) {
  std::wstring text = WideFromUtf8(node.text);
  TVINSERTSTRUCTW insert{};
  insert.hParent = parent;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  insert.item.pszText = text.data();
  insert.item.lParam = static_cast<LPARAM>(index);
  insert.item.iImage = static_cast<int>(node.image);
  insert.item.iSelectedImage = insert.item.iImage;
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(window_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

void ProtocolTreeView::SetResolution(HFONT font, int resolution) {
  constexpr int kImageSize = 16;
  constexpr int kItemGap = 4;
  constexpr int kTipWidth = 480;
  constexpr LPARAM kTipMilliseconds = 30000;
  const int image_size = Scaled(kImageSize, resolution);
  ImageList images = MakeProtocolImages(image_size);
  TreeView_SetImageList(window_, images.get(), TVSIL_NORMAL);
  images_ = std::move(images);
  SetFont(window_, font);
  TreeView_SetItemHeight(window_,
                         std::max(image_size, LineHeight(font)) + Scaled(kItemGap, resolution));
  const HWND tips = TreeView_GetToolTips(window_);
  SendMessageW(tips, TTM_SETMAXTIPWIDTH, 0, Scaled(kTipWidth, resolution));
  SendMessageW(tips, TTM_SETDELAYTIME, TTDT_AUTOPOP, kTipMilliseconds);
}

int ProtocolTreeView::HeightOf(int rows) const {
  return rows * TreeView_GetItemHeight(window_) + 2 * GetSystemMetrics(SM_CYEDGE);
}

LRESULT ProtocolTreeView::Notify(const NMHDR& notification) {
  if (notification.code == TVN_GETINFOTIPW) {
    GiveTip(*reinterpret_cast<NMTVGETINFOTIPW*>(const_cast<NMHDR*>(&notification)));
  } else if (notification.code == TVN_KEYDOWN) {
    const auto& key = reinterpret_cast<const NMTVKEYDOWN&>(notification);
    if (key.wVKey == 'C' && GetKeyState(VK_CONTROL) < 0) {
      CopySelection();
      return TRUE;  // the letter searches for nothing
    }
  }
  return 0;
}

// The control draws no more than 260 characters.
bool ProtocolTreeView::FitsInto(HTREEITEM item, const std::wstring& text) const {
  RECT place{};
  RECT room{};
  GetClientRect(window_, &room);
  return text.size() < MAX_PATH && TreeView_GetItemRect(window_, item, &place, TRUE) &&
         place.left >= room.left && place.right <= room.right;
}

void ProtocolTreeView::GiveTip(NMTVGETINFOTIPW& tip) const {
  const std::wstring text = WideFromUtf8(tree_.nodes()[static_cast<std::size_t>(tip.lParam)].text);
  if (FitsInto(tip.hItem, text)) return;
  lstrcpynW(tip.pszText, text.c_str(), tip.cchTextMax);
}

void ProtocolTreeView::CopySelection() const {
  TVITEMW item{};
  item.mask = TVIF_PARAM;
  item.hItem = TreeView_GetSelection(window_);
  if (!item.hItem) return;
  SendMessageW(window_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  PutOnClipboard(window_,
                 WideFromUtf8(tree_.TextWithChildren(static_cast<std::size_t>(item.lParam))));
}

}  // namespace tessary::win32
