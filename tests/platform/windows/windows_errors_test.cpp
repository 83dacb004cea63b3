#include "platform/windows/windows_errors.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

// Most of these cannot be brought about on a test machine.
TEST(WindowsErrorsTest, EveryErrorHasItsNumber) {
  const struct {
    DWORD error;
    std::int32_t number;
  } rows[] = {
      {ERROR_FILE_NOT_FOUND, kFileNotFound},
      {ERROR_PATH_NOT_FOUND, kPathNotFound},
      {ERROR_INVALID_DRIVE, kPathNotFound},
      {ERROR_BAD_NETPATH, kPathNotFound},
      {ERROR_BAD_NET_NAME, kPathNotFound},
      {ERROR_DIRECTORY, kPathNotFound},
      {ERROR_FILE_EXISTS, kFileExists},
      {ERROR_ALREADY_EXISTS, kFileExists},
      {ERROR_DISK_FULL, kDiskFull},
      {ERROR_HANDLE_DISK_FULL, kDiskFull},
      {1295, kDiskFull},
      {ERROR_FILE_TOO_LARGE, kDiskFull},
      {ERROR_NOT_READY, kDeviceError},
      {ERROR_CRC, kDeviceError},
      {ERROR_SEEK, kDeviceError},
      {ERROR_SECTOR_NOT_FOUND, kDeviceError},
      {ERROR_WRITE_FAULT, kDeviceError},
      {ERROR_READ_FAULT, kDeviceError},
      {ERROR_GEN_FAILURE, kDeviceError},
      {ERROR_IO_DEVICE, kDeviceError},
      {ERROR_UNEXP_NET_ERR, kDeviceError},
      {ERROR_NETNAME_DELETED, kDeviceError},
      {ERROR_TOO_MANY_OPEN_FILES, kTooManyFiles},
      {ERROR_INVALID_NAME, kBadFileName},
      {ERROR_BAD_PATHNAME, kBadFileName},
      {ERROR_FILENAME_EXCED_RANGE, kBadFileName},
      {ERROR_CANT_RESOLVE_FILENAME, kBadFileName},
      {ERROR_ACCESS_DENIED, kPermissionDenied},
      {ERROR_WRITE_PROTECT, kPermissionDenied},
      {ERROR_SHARING_VIOLATION, kPermissionDenied},
      {ERROR_LOCK_VIOLATION, kPermissionDenied},
      {ERROR_NETWORK_ACCESS_DENIED, kPermissionDenied},
      {ERROR_DELETE_PENDING, kPermissionDenied},
      {ERROR_USER_MAPPED_FILE, kPermissionDenied},
      {ERROR_PRIVILEGE_NOT_HELD, kPermissionDenied},
      {ERROR_UNABLE_TO_REMOVE_REPLACED, kPermissionDenied},
      {ERROR_NOT_ENOUGH_MEMORY, kOutOfMemory},
      {ERROR_OUTOFMEMORY, kOutOfMemory},
      {ERROR_NO_SYSTEM_RESOURCES, kOutOfMemory},
      {ERROR_COMMITMENT_LIMIT, kOutOfMemory},
      {ERROR_INVALID_HANDLE, kPathFileAccess},
      {ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, kPathFileAccess},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(RunTimeErrorOf(row.error), row.number) << row.error;
    EXPECT_EQ(FailureNumber([&] { FailWith(row.error); }), row.number) << row.error;
    SetLastError(row.error);
    EXPECT_EQ(FailureNumber([] { FailWithLastError(); }), row.number) << row.error;
  }
}

}  // namespace
}  // namespace tessary
