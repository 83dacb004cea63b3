#include "platform/failure.h"

namespace tessary {

const char* RunTimeErrorText(std::int32_t number) {
  switch (number) {
    case kInvalidCall:
      return "Ungültiger Prozeduraufruf oder ungültiges Argument";
    case kOverflow:
      return "Überlauf";
    case kOutOfMemory:
      return "Nicht genügend Speicher";
    case kSubscriptOutOfRange:
      return "Index außerhalb des gültigen Bereichs";
    case kTypeMismatch:
      return "Typen unverträglich";
    case kOutOfStack:
      return "Nicht genügend Stapelspeicher";
    case kInternalError:
      return "Interner Fehler";
    case kBadFileName:
      return "Dateiname oder -nummer falsch";
    case kFileNotFound:
      return "Datei nicht gefunden";
    case kDeviceError:
      return "Geräte-E/A-Fehler";
    case kFileExists:
      return "Datei existiert bereits";
    case kDiskFull:
      return "Datenträger voll";
    case kTooManyFiles:
      return "Zu viele Dateien";
    case kPermissionDenied:
      return "Zugriff verweigert";
    case kPathFileAccess:
      return "Fehler beim Zugriff auf Pfad/Datei";
    case kPathNotFound:
      return "Pfad nicht gefunden";
    case kObjectNotSet:
      return "Objektvariable oder With-Blockvariable nicht festgelegt";
    case kCannotCreateObject:
      return "Objekterstellung durch ActiveX-Komponente nicht möglich";
    default:
      return "Anwendungs- oder objektdefinierter Fehler";
  }
}

}  // namespace tessary
