#include "platform/posix/posix_errors.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "platform/failure.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

// Most of these cannot be brought about on a test machine.
TEST(PosixErrorsTest, EveryErrorHasItsNumber) {
  const struct {
    int error;
    std::int32_t number;
  } rows[] = {
      {ENOENT, kFileNotFound},      {ENOTDIR, kPathNotFound},     {EISDIR, kPathFileAccess},
      {EEXIST, kFileExists},        {ENOSPC, kDiskFull},          {EDQUOT, kDiskFull},
      {EFBIG, kDiskFull},           {EIO, kDeviceError},          {EMFILE, kTooManyFiles},
      {ENFILE, kTooManyFiles},      {ENAMETOOLONG, kBadFileName}, {EINVAL, kBadFileName},
      {ELOOP, kBadFileName},        {EILSEQ, kBadFileName},       {EACCES, kPermissionDenied},
      {EPERM, kPermissionDenied},   {EROFS, kPermissionDenied},   {ETXTBSY, kPermissionDenied},
      {EBUSY, kPermissionDenied},   {ENOMEM, kOutOfMemory},       {ENXIO, kPathFileAccess},
      {ENOTEMPTY, kPathFileAccess},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(RunTimeErrorOf(row.error), row.number) << row.error;
    EXPECT_EQ(FailureNumber([&] { FailWith(row.error); }), row.number) << row.error;
  }
}

}  // namespace
}  // namespace tessary
