#include <gmock/gmock.h>

#include <string_view>

#include "windows/views/unattended.h"
#include "windows/views/window_reader.h"

int main(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--unattended") return tessary::win32::RunUnattended();
  if (first == "--resolution") return tessary::win32::SystemResolution();
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
