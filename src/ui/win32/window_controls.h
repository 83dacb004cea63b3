#pragma once

#include "platform/windows/system_headers.h"

// The numbers of the controls of both windows, for those that look at them from outside.

namespace tessary::win32 {

enum ProgressControl : int {
  kFrame1 = 100,
  kLblCaptionBold,
  kLblCaptionNormal,
  kFrame2,
  kLblProcess,
  kProgressBar1,
};

// The step numbers stand in a row from kLabel11 on, the texts from kStepText on and the paths,
// except that of the step without one, from kStepPath on; the panes A to E from kFirstPane on.
enum ProtocolControl : int {
  kCmdClose = IDOK,
  kPicture1 = 200,
  kLabel3,
  kLabel1,
  kTreeView1,
  kLabel2,
  kLabel11,
  kStepText = kLabel11 + 5,
  kStepPath = kStepText + 5,
  kLine1 = kStepPath + 5,
  kFirstPane,
};

}  // namespace tessary::win32
