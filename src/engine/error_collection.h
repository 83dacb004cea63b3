#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/ref.h"
#include "platform/failure.h"

namespace tessary {

// Numbers of the component's own failures.
inline constexpr std::int32_t kFolderEmpty = static_cast<std::int32_t>(0x80041388);
inline constexpr std::int32_t kDoesNotExist = static_cast<std::int32_t>(0x80041389);
inline constexpr std::int32_t kWrongKindOfFile = static_cast<std::int32_t>(0x8004138A);
inline constexpr std::int32_t kNoBackupFolder = static_cast<std::int32_t>(0x8004138B);
inline constexpr std::int32_t kMissingElementsUnchecked = static_cast<std::int32_t>(0x80040FA0);

struct ErrorEntry {
  static constexpr std::int32_t kFailure = 4;
  static constexpr std::int32_t kNotRestored = 1;

  std::int32_t kind;
  std::int32_t number;
  std::string source;
  std::string message;
};

// The entries that an operation in progress has collected, in the order in which they were added.
class ErrorCollection : public RefCounted {
 public:
  void Reset() {
    if (!entries_.empty()) entries_.clear();
  }
  void Add(ErrorEntry entry) { entries_.push_back(std::move(entry)); }
  void AppendFrom(const ErrorCollection& other);

  bool empty() const { return entries_.empty(); }
  const std::vector<ErrorEntry>& entries() const { return entries_; }

 private:
  std::vector<ErrorEntry> entries_;
};

// The error collection that all procedures of one thread report to. A batch replaces the object,
// so whoever reports must ask for it each time.
struct SharedErrors {
  Ref<ErrorCollection> objErrors = MakeRef<ErrorCollection>();
};

}  // namespace tessary
