#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tessary {

// Numbers of the classic automation run time that the component's failures carry.
enum RunTimeError : std::int32_t {
  kInvalidCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kOutOfStack = 28,
  kInternalError = 51,
  kBadFileName = 52,
  kFileNotFound = 53,
  kDeviceError = 57,
  kFileExists = 58,
  kDiskFull = 61,
  kTooManyFiles = 67,
  kPermissionDenied = 70,
  kPathFileAccess = 75,
  kPathNotFound = 76,
  kObjectNotSet = 91,
  kCannotCreateObject = 429,
};

// The German text that belongs to a run-time error number; a generic text for a number that has
// none.
const char* RunTimeErrorText(std::int32_t number);

// The one exception of the component: a run-time failure, or a failed check, on its way to the
// public operation that ends the error chain.
class Failure : public std::exception {
 public:
  // A run-time error with the text that belongs to its number.
  explicit Failure(std::int32_t number) : Failure(number, RunTimeErrorText(number)) {}
  Failure(std::int32_t number, std::string description)
      : number_(number), description_(std::move(description)) {}

  std::int32_t number() const { return number_; }
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
};

}  // namespace tessary
