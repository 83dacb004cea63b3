#pragma once

#include <array>
#include <optional>

#include "ui/protocol_window_texts.h"
#include "ui/win32/dialog.h"
#include "ui/win32/fonts.h"
#include "ui/win32/protocol_tree_view.h"

namespace tessary::win32 {

// The error-protocol window: a title, the protocol as a tree, and how to repair failed reports.
// Its five panes lie one below the other and share the window's width; the tree takes what height
// the others leave.
class ProtocolWindow final : public Dialog {
 public:
  // `tree` and `guide` must outlive the window.
  ProtocolWindow(HINSTANCE module, HWND owner, const ProtocolTree& tree, const RepairGuide& guide);
  ~ProtocolWindow() override;

  // Returns when the window has been closed. Meanwhile its owner and the other windows that the
  // thread shows are disabled. A request to end the program closes it, too, and is left for the
  // caller's own loop.
  void ShowModal();

 private:
  static constexpr std::size_t kPanes = 5;
  using Heights = std::array<int, kPanes>;

  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam) override;
  void AddControls(HINSTANCE module);
  void AddSteps(HWND pane);
  void SetResolution(int resolution);
  void SetFirstSize();
  void LimitSize(MINMAXINFO& limits) const;
  void FollowResolution(int resolution, const RECT& place);
  void RunLoop();
  void Close();

  // How high the panes are in a window of this width; the tree's pane as low as it may get.
  Heights HeightsFor(int width) const;
  void Arrange();
  void ArrangeTitle(int width, int height);
  void ArrangeTree(int width, int height);
  void ArrangeIntroduction(int width);
  void ArrangeSteps(int width);
  void ArrangeButton(int width);
  // Calls place(control, top, height) for the texts and paths of the steps; their total height.
  template <class PlaceLine>
  int WalkSteps(int width, PlaceLine&& place) const;

  int FromScale(int value) const;
  SIZE ButtonSize() const;
  int NumberWidth() const;
  HWND Item(std::size_t pane, int id) const;

  HWND owner_;
  const RepairGuide& guide_;
  ProtocolTreeView tree_;
  int resolution_ = USER_DEFAULT_SCREEN_DPI;
  bool closed_ = false;
  Font title_font_;
  Font normal_font_;
  Font step_font_;
  Icon icon_;
  std::array<std::optional<Pane>, kPanes> panes_;
};

}  // namespace tessary::win32
