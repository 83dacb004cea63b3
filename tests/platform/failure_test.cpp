#include "platform/failure.h"

#include <gtest/gtest.h>

#include <string>

namespace tessary {
namespace {

TEST(FailureTest, NumbersHaveTheirText) {
  const struct {
    std::int32_t number;
    std::string text;
  } rows[] = {
      {kInvalidCall, "Ungültiger Prozeduraufruf oder ungültiges Argument"},
      {kOverflow, "Überlauf"},
      {kSubscriptOutOfRange, "Index außerhalb des gültigen Bereichs"},
      {kTypeMismatch, "Typen unverträglich"},
      {kBadFileName, "Dateiname oder -nummer falsch"},
      {kFileNotFound, "Datei nicht gefunden"},
      {kPermissionDenied, "Zugriff verweigert"},
      {kPathFileAccess, "Fehler beim Zugriff auf Pfad/Datei"},
      {kPathNotFound, "Pfad nicht gefunden"},
      {kObjectNotSet, "Objektvariable oder With-Blockvariable nicht festgelegt"},
      {4711, "Anwendungs- oder objektdefinierter Fehler"},
  };
  for (const auto& row : rows) {
    const Failure failure(row.number);
    EXPECT_EQ(failure.number(), row.number);
    EXPECT_EQ(failure.description(), row.text);
    EXPECT_STREQ(failure.what(), row.text.c_str());
  }
}

TEST(FailureTest, EveryNamedNumberHasATextOfItsOwn) {
  const std::string generic = RunTimeErrorText(0);
  for (const std::int32_t number :
       {kInvalidCall, kOverflow, kOutOfMemory, kSubscriptOutOfRange, kTypeMismatch, kInternalError,
        kBadFileName, kFileNotFound, kDeviceError, kFileExists, kDiskFull, kTooManyFiles,
        kPermissionDenied, kPathFileAccess, kPathNotFound, kObjectNotSet, kCannotCreateObject})
    EXPECT_NE(RunTimeErrorText(number), generic) << number;
}

TEST(FailureTest, AnOwnDescriptionReplacesTheText) {
  EXPECT_EQ(Failure(kInvalidCall, "Eigener Text").description(), "Eigener Text");
}

}  // namespace
}  // namespace tessary
