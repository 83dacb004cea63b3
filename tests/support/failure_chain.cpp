#include "support/failure_chain.h"

#include <gtest/gtest.h>

namespace tessary {
namespace {

// A folder that is missing has a number of its own.
bool Tells(std::int32_t number, std::int32_t failure) {
  return number == failure || (failure == kFileNotFound && number == kPathNotFound);
}

bool IsOwnNumber(std::int32_t number) {
  return number == kFolderEmpty || number == kDoesNotExist || number == kWrongKindOfFile ||
         number == kNoBackupFolder;
}

void ExpectItem(const ResultDictionary::Item& item) {
  const bool names_a_report = item.text.ends_with(" fehlgeschlagen.");
  EXPECT_TRUE(names_a_report || item.text.ends_with(" existiert nicht.")) << item.text;
  EXPECT_FALSE(item.messages.empty()) << item.text;
  for (const std::string& message : item.messages)
    EXPECT_TRUE(!message.empty() || !names_a_report) << item.text;
}

void ExpectEntry(const ErrorEntry& entry, std::int32_t number) {
  EXPECT_TRUE(entry.kind == ErrorEntry::kFailure || entry.kind == ErrorEntry::kNotRestored);
  EXPECT_TRUE(Tells(entry.number, number) || entry.number == kPermissionDenied ||
              entry.number == kDeviceError || IsOwnNumber(entry.number))
      << entry.number << " " << entry.message;
  EXPECT_TRUE(entry.source.starts_with("BXConvertLLMgr Prozedur: ")) << entry.source;
  EXPECT_FALSE(entry.message.empty());
}

}  // namespace

void ExpectFailureChain(const ResultLog& log, std::int32_t number) {
  for (const ResultDictionary::Item& item : log.dictErrors.items()) ExpectItem(item);
  for (const ErrorEntry& entry : log.errors.objErrors->entries()) ExpectEntry(entry, number);
}

}  // namespace tessary
