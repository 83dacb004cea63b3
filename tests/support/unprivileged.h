#pragma once

#include <string>

namespace tessary {

// How a test about permissions, which privileged users do not feel, has to go on.
enum class UnprivilegedRun {
  kHere,     // The user has no privileges: run the test.
  kDone,     // The test has run, and passed or failed, in a process without privileges.
  kMissing,  // There is no way to run it.
};

// Runs the current test once more in a process without privileges if this one has some.
UnprivilegedRun RunUnprivileged();

}  // namespace tessary

// The first line of a test about permissions.
#define TESSARY_RUN_UNPRIVILEGED()                                        \
  switch (::tessary::RunUnprivileged()) {                                 \
    case ::tessary::UnprivilegedRun::kDone:                               \
      return;                                                             \
    case ::tessary::UnprivilegedRun::kMissing:                            \
      GTEST_SKIP() << "NOT TESTED: setpriv is needed to drop privileges"; \
    case ::tessary::UnprivilegedRun::kHere:                               \
      break;                                                              \
  }                                                                       \
  static_assert(true, "takes a semicolon")
