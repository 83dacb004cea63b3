#pragma once

#include "ui/protocol_tree.h"
#include "ui/win32/handles.h"

namespace tessary::win32 {

// The tree of the error-protocol window: one item per node of the protocol, whose number is the
// item's lParam. What does not fit into the tree's width is shown as a tip.
class ProtocolTreeView {
 public:
  // `tree` must outlive the view.
  explicit ProtocolTreeView(const ProtocolTree& tree) : tree_(tree) {}

  // Makes the control as a child of `parent`; CommonControls and MonitorScaling are the caller's.
  void Create(HWND parent);
  HWND window() const { return window_; }
  void SetResolution(HFONT font, int resolution);
  // The height in which so many rows can be seen.
  int HeightOf(int rows) const;

  // Answers a notification of the control.
  LRESULT Notify(const NMHDR& notification);

 private:
  void Fill();
  HTREEITEM Insert(const ProtocolNode& node, std::size_t index, HTREEITEM parent);
  bool FitsInto(HTREEITEM item, const std::wstring& text) const;
  void GiveTip(NMTVGETINFOTIPW& tip) const;
  void CopySelection() const;

  const ProtocolTree& tree_;
  HWND window_ = nullptr;
  ImageList images_;
};

}  // namespace tessary::win32
