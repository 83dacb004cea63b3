// Closes every error protocol on the desktop until it is ended, at the latest after ten minutes.
// For programs of the system that cannot be told to do it themselves.

#include "windows/protocol_closer.h"

int main() {
  constexpr DWORD kLongest = 600'000;
  const tessary::win32::ProtocolCloser closer(0);
  Sleep(kLongest);
}
