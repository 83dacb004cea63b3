#include "ui/message_guide.h"

#include <array>
#include <cstdio>

#include "engine/error_collection.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

using enum MessageGroup;

constexpr std::string_view kGap = "…";
constexpr std::string_view kSeeBelow = "Der Grund steht in den Meldungen darunter.";
constexpr std::string_view kReadBelow =
    "Die Meldungen darunter lesen; die unterste nennt die Ursache.";
constexpr std::string_view kInsideCause =
    "Ein Schritt im Inneren ist gescheitert; die Meldung nennt nur, an welcher Stelle.";
constexpr std::string_view kInsideRemedy =
    "Die unterste Meldung des Berichts lesen. Hilft sie nicht weiter, den Bericht, die "
    "Differenz-Datei und das Protokoll an den Hersteller geben.";
constexpr std::string_view kSpeakToVendor =
    "Mit dem Bericht, der Differenz-Datei und dem Protokoll an den Hersteller wenden.";

constexpr std::string_view kCheckOrder =
    "Die Ordner und ihre Reihenfolge im Aufruf prüfen: erst die Differenz-Dateien, dann die "
    "Berichte.";
constexpr std::string_view kKeepOneStep = "Ist eine andere gemeint, nur diese im Ordner lassen.";

constexpr auto kGuides = std::to_array<MessageGuide>({
    // What stands over the messages of a report.
    {kReports, "Der Bericht … wurde erfolgreich … konvertiert.",
     "Ein Schritt ist gelungen; der Bericht ist geschrieben.", "Es ist nichts zu tun."},
    {kReports, "Die Differenz-Datei … für den Bericht … wurde erfolgreich erstellt.",
     "Der Vergleich ist gelungen. Fehlt der Name der Datei, so gab es keinen Unterschied und es "
     "ist "
     "keine Datei entstanden.",
     "Es ist nichts zu tun."},
    {kReports, "Konvertierung des Berichts … fehlgeschlagen.",
     "Der Bericht ist, wie er vor diesem Schritt war. Der Grund steht in den Meldungen darunter.",
     kReadBelow},
    {kReports, "Konvertierung ist für alle Berichte in … fehlgeschlagen.",
     "Der Lauf hat abgebrochen. Der Grund steht in den Meldungen darunter.", kReadBelow},
    {kReports, "Vergleich mit dem Bericht … fehlgeschlagen.", kSeeBelow, kReadBelow},
    {kReports, "Versionsabgleich des 'alten' Berichtes … mit dem 'neuen' Bericht … fehlgeschlagen.",
     "Die beiden Berichte passen nicht zusammen. Der Grund steht in den Meldungen darunter.",
     kReadBelow},
    {kReports, "Versionsabgleich des Berichtes … fehlgeschlagen.", kSeeBelow, kReadBelow},
    {kReports, "Erstellen der Differrenzdateien in … ist für alle Berichte fehlgeschlagen.",
     "Der Lauf hat abgebrochen. Der Grund steht in den Meldungen darunter.", kReadBelow},

    // Files, folders and reports that do not fit.
    {kChecks, "Fehlende Pfadangabe für den Bericht der alten Version.",
     "Der Pfad des alten Berichts ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für den Bericht der neuen Version.",
     "Der Pfad des neuen Berichts ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für das Berichtsverzeichnis der alten Versionen.",
     "Der Pfad des Ordners mit den alten Berichten ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für das Berichtsverzeichnis der neuen Versionen.",
     "Der Pfad des Ordners mit den neuen Berichten ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für den zu konvertierenden Bericht.",
     "Der Pfad des Berichts ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für den Differenz-Bericht.",
     "Der Pfad der Differenz-Datei ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für das Berichtsverzeichnis.",
     "Der Pfad des Ordners mit den Berichten ist leer.", "Den Pfad angeben."},
    {kChecks, "Fehlende Pfadangabe für das Differenz-Berichtsverzeichnis.",
     "Der Pfad des Ordners mit den Differenz-Dateien ist leer.", "Den Pfad angeben."},
    {kChecks, "Die Datei … existiert nicht.",
     "Unter diesem Pfad gibt es keine Datei. Beim Vergleichen zweier Ordner fehlt dem alten "
     "Bericht "
     "der gleichnamige neue.",
     "Den Pfad und die Schreibweise prüfen. Wurde ein Bericht umbenannt oder abgeschafft, ist "
     "nichts zu tun.",
     kDoesNotExist},
    {kChecks, "Die Differenz-Datei … existiert nicht.",
     "Unter diesem Pfad gibt es keine Differenz-Datei.", "Den Pfad und die Schreibweise prüfen.",
     kDoesNotExist},
    {kChecks, "Der Ordner … existiert nicht.", "Unter diesem Pfad gibt es keinen Ordner.",
     "Den Pfad prüfen, auch die Reihenfolge der Ordner im Aufruf."},
    {kChecks, "Das Verzeichnis … existiert nicht.",
     "Der Ordner ist während des Laufs verschwunden.",
     "Prüfen, ob ein anderes Programm ihn verschiebt oder das Netzlaufwerk getrennt wurde; dann "
     "erneut starten.",
     kFolderEmpty},
    {kChecks, "Der Ordner … ist leer.",
     "Der Ordner enthält keine Datei, keinen Bericht oder keine Differenz-Datei.",
     "Die Ordner und ihre Reihenfolge im Aufruf prüfen; Differenz-Dateien heißen wie 3_4Rechnung.",
     kFolderEmpty},
    {kChecks, "Die Datei … ist keine List & Label Berichtsdatei.",
     "In [UserSection] fehlt eine Version ab 1 oder der Referenzbeleg, die Namenserweiterung fehlt "
     "oder enthält ein „~“, oder die Datei lässt sich nicht öffnen.",
     "Mit tessary info ansehen, was der Datei fehlt; eine Sicherungskopie umbenennen.",
     kWrongKindOfFile},
    {kChecks, "Die Dateien … und … sind Berichte unterschiedlicher Referenz.",
     "Der alte und der neue Bericht gehören zu verschiedenen Belegen.",
     "Die richtigen beiden Dateien vergleichen oder den Referenzbeleg berichtigen.",
     kWrongKindOfFile},
    {kChecks,
     "Die Version … des alten Berichts … ist größer oder gleich der Version … des neuen Berichts …",
     "Alter und neuer Bericht sind vertauscht, oder die Version wurde nicht erhöht.",
     "Die Reihenfolge im Aufruf prüfen oder die Version des neuen Berichts erhöhen. Ist der "
     "Bericht unverändert, ist nichts zu tun.",
     kWrongKindOfFile},
    {kChecks, "Die Differenz-Datei … entspricht keiner List & Label Differenz-Berichtsdatei.",
     "Der Name nennt nicht zwei aufsteigende Versionen und eine Referenz wie 3_4Rechnung.",
     "Differenz-Dateien nicht umbenennen; die richtige Datei angeben.", kWrongKindOfFile},
    {kChecks, "Im Ordner … werden gerade Berichte von einem anderen Vorgang konvertiert.",
     "Ein anderer Lauf arbeitet in demselben Ordner.",
     "Warten, bis er fertig ist, und erneut starten.", kPermissionDenied},

    // Reading, writing, backups.
    {kFiles, "Fehler beim Öffnen der Datei …",
     "Die Datei ist schreibgeschützt, ein anderes Programm hat sie geöffnet, oder die Rechte "
     "fehlen.",
     "Schreibschutz aufheben, Programme schließen, Rechte prüfen; dann erneut starten."},
    {kFiles, "Fehler beim Lesen aus der Datei …",
     "Der Datenträger oder das Netz hat beim Lesen einen Fehler gemeldet.",
     "Verbindung und Datenträger prüfen; notfalls die Datei aus einer Sicherung zurückholen."},
    {kFiles, "Fehler beim Lesen der Datei …",
     "Der Bericht oder die Differenz-Datei konnte nicht gelesen werden; darunter steht, warum.",
     kReadBelow},
    {kFiles, "Fehler beim Schreiben in die Datei …",
     "Der konvertierte Bericht konnte nicht geschrieben werden; darunter steht, warum. Der Bericht "
     "ist, wie er war.",
     "Platz auf dem Datenträger schaffen, Schreibschutz und Rechte prüfen; dann erneut starten."},
    {kFiles, "Fehler beim Schreiben in Datei …",
     "Beim Schreiben ging etwas schief, meist ist der Datenträger voll. Auch ein Zeichen, das die "
     "Zeichentabelle Windows-1252 nicht kennt, lässt sich nicht schreiben.",
     "Platz schaffen, Verbindung prüfen; dann erneut starten."},
    {kFiles, "Fehler beim Schreiben der Differenz-Datei …",
     "Der Ordner für die Differenz-Dateien fehlt oder ist nicht beschreibbar, oder der "
     "Referenzbeleg enthält Zeichen, die kein Dateiname haben kann.",
     "Den Ordner anlegen, Rechte prüfen, den Referenzbeleg berichtigen."},
    {kFiles, "Fehler beim Vergleich der Dateien … und …",
     "Der Vergleich ist gescheitert; darunter steht, warum.", kReadBelow},
    {kFiles, "Fehler beim Konvertierungsvorgang der Datei …",
     "Das Anwenden der Differenz-Datei ist gescheitert; der Bericht ist, wie er war.", kReadBelow},
    {kFiles, "Fehler beim Konvertieren des Berichtes …",
     "Zwischen Sicherung und Konvertierung ist etwas gescheitert; der Lauf hat abgebrochen.",
     kReadBelow},
    {kFiles, "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis …",
     "Der Ordner mit den Differenz-Dateien ist leer oder kann nicht gelesen werden.", kReadBelow},
    {kFiles, "Fehler beim Aufbereiten der Dateien im Berichts-Verzeichnis …",
     "Der Ordner mit den Berichten ist leer oder kann nicht gelesen werden.", kReadBelow},
    {kFiles, "Fehler beim Vorbereiten des Versionsabgleich für die Dateien … und …",
     "Der Lauf über die beiden Ordner ist gescheitert.", kReadBelow},
    {kFiles,
     "Die Datei … wurde möglicherweise beschädigt und konnte nicht wiederhergestellt werden. Bitte "
     "versuchen Sie die Datei manuell wiederherzustellen.",
     "Beim Schreiben an Ort und Stelle ging etwas schief, und auch die Sicherung ließ sich nicht "
     "zurückholen.",
     "Die Ursache beseitigen und den Bericht mit tessary restore oder von Hand aus der Sicherung "
     "zurückholen."},

    // Steps inside the work.
    {kInside, "Fehler beim Verarbeiten einer Zeile.",
     "Eine Zeile der Datei konnte nicht übernommen werden. Am häufigsten ist die Datei in einem "
     "neueren Format (UTF-8 oder UTF-16 mit Bytefolge-Marke).",
     "Den Bericht im Designer im bisherigen Format speichern oder aus einer Sicherung "
     "zurückholen."},
    {kInside, "Fehler beim Auswerten einer Zeile.",
     "Die Blöcke des Berichts stehen so, dass eine Zeile zu nichts gehört.",
     "Die geschweiften Klammern des Berichts prüfen; notfalls aus einer Sicherung zurückholen."},
    {kInside, "Fehler beim Ermitteln einer Zeile.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Ermitteln der ersten Zeile.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Ermitteln der nächsten Zeile.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Hinzufügen eines Elementes.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Vergleichen der Elemente.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Überprüfen fehlender Elemente.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Überprüfen komplett fehlender Elemente.", kInsideCause, kInsideRemedy},
    {kInside, "Die Überprüfung auf fehlende Elemente wurde nicht korrekt durchgeführt.",
     "Ein Element der neuen Version hat beim Vergleich kein Gegenstück gefunden, meist weil Zeilen "
     "oder Spalten einer Tabelle gleiche Schlüssel haben. Es steht nicht in der Differenz-Datei.",
     "Mit tessary diff --verify ansehen, was nicht nachgebildet wird.", kMissingElementsUnchecked},
    {kInside, "Fehler beim Vorbereiten der Konvertierung.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Verarbeiten eines Elementes.", kInsideCause, kInsideRemedy},
    {kInside, "Fehler beim Vorbereiten des Schreibvorganges.", kInsideCause, kInsideRemedy},

    // What a check finds before a run.
    {kForesight, "Zur Referenz … gibt es keine Differenz-Datei.",
     "Der Bericht ist ein eigener des Kunden, seine Referenz ist falsch geschrieben, oder es fehlt "
     "eine Differenz-Datei.",
     "Einen eigenen Bericht mit --omit auslassen; sonst den Referenzbeleg und den Ordner mit den "
     "Differenz-Dateien prüfen."},
    {kForesight, "Von Version … führt keine Differenz-Datei weiter…",
     "In der Kette fehlt eine Differenz-Datei. Der Bericht bliebe auf dieser Version stehen.",
     "Die fehlende Differenz-Datei beim Hersteller anfordern."},
    {kForesight,
     "Die Datei … ist in einem neueren Format (mit einer Bytefolge-Marke, BOM), das nicht gelesen "
     "wird.",
     "Die Datei beginnt mit einer Marke für UTF-8 oder UTF-16; gelesen wird nur Windows-1252.",
     "Einen Bericht im Designer im bisherigen Format speichern, eine Differenz-Datei beim "
     "Hersteller anfordern."},
    {kForesight, "Die Datei … kann nicht gelesen werden: …",
     "Die Rechte fehlen, ein anderes Programm hat die Datei geöffnet, oder der Datenträger meldet "
     "einen Fehler.",
     "Die genannte Ursache beseitigen und erneut prüfen."},
    {kForesight, "Die Differenz-Datei … ist leer.",
     "Die Datei enthält keinen Unterschied, auch nicht die neue Version; meist wurde sie nicht "
     "ganz "
     "kopiert. Die Konvertierung ließe den Bericht, wie er ist.",
     "Die Differenz-Datei noch einmal beschaffen."},
    {kForesight, "Der Ordner … enthält keine Differenz-Dateien.",
     "Keine Datei des Ordners heißt wie 3_4Rechnung.", kCheckOrder},
    {kForesight, "Der Ordner … enthält keine Berichte.",
     "Keine Datei des Ordners hat eine Namenserweiterung und in [UserSection] Version und "
     "Referenzbeleg.",
     kCheckOrder},
    {kForesight,
     "Von Version … der Referenz … führen mehrere Differenz-Dateien weiter; angewendet wird …",
     "Mehrere Differenz-Dateien gehen von derselben Version aus. Angewendet wird die, die dem "
     "Namen nach die erste ist.",
     kKeepOneStep},
    {kForesight,
     "Die Differenz-Datei … wird nicht angewendet: Eine andere führt von ihrer alten Version "
     "weiter.",
     "Mehrere Differenz-Dateien gehen von derselben Version aus.", kKeepOneStep},
    {kForesight,
     "Gleiche Version … und Referenz …: …; beim Vergleich ergäben sie dieselbe Differenz-Datei.",
     "Mehrere Berichte gehören zum selben Beleg. Konvertiert wird jeder für sich.",
     "Beim Kunden ist nichts zu tun; der Hersteller gibt jedem Bericht einen eigenen "
     "Referenzbeleg."},
    {kForesight, "Die Differenz-Datei … passt zu nichts: Es gibt keinen Bericht der Referenz ….",
     "Keiner der Berichte hat diese Referenz.",
     "Es ist nichts zu tun, wenn dieser Bericht nicht benutzt wird; sonst den Referenzbeleg "
     "prüfen."},
    {kForesight, "Die Differenz-Datei … passt zu nichts: Kein Bericht kommt auf ihre alte Version.",
     "Einige Berichte dieser Referenz sind schon weiter, oder eine Differenz-Datei davor fehlt.",
     "Ist eine Lücke gemeldet, die fehlende Differenz-Datei anfordern; sonst ist nichts zu tun."},
    {kForesight,
     "Die Differenz-Datei … wird nicht mehr gebraucht: Die Berichte der Referenz … sind schon so "
     "weit.",
     "Alle Berichte dieser Referenz haben die neue Version der Differenz-Datei oder eine spätere, "
     "wie nach jeder Konvertierung.",
     "Es ist nichts zu tun."},
    {kForesight, "Im Differenz-Ordner ist … dem Namen nach keine Differenz-Datei.",
     "Der Name gleicht nicht 3_4Rechnung; die Datei wird übergangen.",
     "Es ist nichts zu tun, außer wenn eine Differenz-Datei umbenannt wurde."},
    {kForesight, "… ist kein Bericht: …",
     "Der Datei fehlt, was dahinter genannt ist; sie wird übergangen.",
     "Es ist nichts zu tun, wenn sie keiner sein soll; sonst den Namen oder Version und "
     "Referenzbeleg in [UserSection] berichtigen."},

    // Questions and what deserves attention.
    {kWarnings,
     "Das BackUp-Verzeichnis … konnte nicht erstellt werden. Die Berichte werden ohne Sicherung "
     "überschrieben.…",
     "Der Sicherungsordner fehlt und lässt sich nicht anlegen: Der Ordner darüber fehlt, oder die "
     "Rechte reichen nicht.",
     "Mit Nein antworten, den Ordner anlegen oder mit --backup einen anderen nennen.",
     kNoBackupFolder},
    {kWarnings, "Der Bericht … konnte nicht gesichert werden.…",
     "Die Kopie ist gescheitert: Datenträger voll, Rechte fehlen, oder der Sicherungsordner ist "
     "der "
     "Berichtsordner selbst.",
     "Mit Nein antworten, die Ursache beseitigen und erneut starten."},
    {kWarnings,
     "Im Sicherungsverzeichnis … lag bereits eine andere Fassung von …; sie bleibt dort als … "
     "erhalten.",
     "Ein früherer Lauf hat diesen Bericht in einem anderen Stand gesichert.",
     "Es ist nichts zu tun; kein Stand geht verloren."},
    {kWarnings, "Der Bericht … wurde nicht konvertiert, weil …",
     "Der Bericht ließ sich nicht sichern, und die Antwort war Nein.",
     "Die Ursache beseitigen und erneut starten."},
    {kWarnings, "Die Berichte in … wurden nicht konvertiert, weil …",
     "Der Sicherungsordner ließ sich nicht anlegen, und die Antwort war Nein.",
     "Die Ursache beseitigen und erneut starten."},
    {kWarnings,
     "Die Berichte … und … ergeben dieselbe Differenz-Datei …; die spätere ersetzt die frühere.",
     "Zwei Berichte des Ordners haben dieselbe Referenz und dieselben Versionen.",
     "Einem der beiden einen eigenen Referenzbeleg geben."},
    {kWarnings, "Im Sicherungsverzeichnis … gibt es keine Sicherung von ….",
     "Zu diesem Namen gibt es keine Kopie.",
     "Den Namen und den Ordner prüfen; der Sicherungsordner zeigt, welche Kopien es gibt."},
    {kWarnings, "Im Sicherungsverzeichnis … gibt es keine Sicherungen.",
     "Der Ordner enthält keine Kopien von Berichten.",
     "Den Ordner und die Reihenfolge im Aufruf prüfen: erst die Sicherungen, dann die Berichte."},
    {kWarnings, "Sicherungsordner und Berichtsordner können nicht beide … sein.",
     "Beim Zurückholen ist derselbe Ordner zweimal genannt. Es ist nichts geschehen.",
     "Erst den Ordner mit den Sicherungen nennen, dann den mit den Berichten."},
    {kWarnings, "… konnte nicht zurückgeholt werden: …",
     "Der Bericht ist schreibgeschützt oder geöffnet, oder die Rechte fehlen; er ist, wie er war.",
     "Die genannte Ursache beseitigen und erneut zurückholen."},
    {kWarnings, "Die Differenz zu … konnte nicht nachgeprüft werden: …",
     "Beim Nachprüfen ist etwas gescheitert; die Differenz-Datei selbst ist geschrieben.",
     "Die genannte Ursache beseitigen und erneut vergleichen."},
    {kWarnings, "Die Differenz-Datei wurde durch die des Berichts … ersetzt",
     "Zwei Berichte des Ordners haben dieselbe Referenz und dieselben Versionen; nachgeprüft ist "
     "nur die spätere Differenz-Datei.",
     "Einem der beiden einen eigenen Referenzbeleg geben."},
    {kWarnings, "Die Datei … hat … außerhalb der Ebenen 0 bis 9; sie … nicht übernommen.",
     "Es gibt zu viele schließende Klammern oder zu tief geschachtelte Blöcke. Diese Zeilen fehlen "
     "nach dem Schreiben.",
     "Die geschweiften Klammern des Berichts prüfen; das Original liegt in der Sicherung."},
    {kWarnings, "Die Datei … endet auf Ebene …; ihre Blöcke sind nicht ausgeglichen.",
     "Es fehlt eine öffnende oder schließende Klammer.",
     "Die geschweiften Klammern des Berichts prüfen."},
    {kWarnings, "Zu --omit … gibt es keine Datei im Berichtsordner.",
     "Der Name bei --omit passt zu keiner Datei.", "Die Schreibweise prüfen."},
    {kWarnings, "Die Datei … wird nicht überschrieben, weil …",
     "An der Stelle, an die das Protokoll soll, liegt eine Datei anderer Art.",
     "Einen anderen Namen angeben oder die Datei wegräumen."},
    {kWarnings, "Die Protokollseite … konnte nicht geschrieben werden: …",
     "Der Ordner fehlt, die Rechte reichen nicht, oder der Datenträger ist voll.",
     "Einen anderen Ort angeben oder Platz schaffen."},
    {kWarnings, "Das Änderungsprotokoll … konnte nicht geschrieben werden: …",
     "Der Ordner fehlt, die Rechte reichen nicht, oder der Datenträger ist voll.",
     "Einen anderen Ort angeben oder Platz schaffen."},
    {kWarnings, "Protokollseite und Änderungsprotokoll können nicht beide … sein.",
     "Bei --html und --journal steht dieselbe Datei. Es ist nichts geschehen.",
     "Zwei verschiedene Namen angeben."},

    // Descriptions of run-time errors.
    {kNumbers, "Ungültiger Prozeduraufruf oder ungültiges Argument",
     "Eine Datei ist nicht in dem Format, das gelesen wird.",
     "Den Bericht im bisherigen Format speichern.", kInvalidCall},
    {kNumbers, "Der Text enthält das Byte …, das zu keinem Zeichen gehört.",
     "Ein Text ist nicht in gültigem UTF-8 und lässt sich nicht in die Datei schreiben.",
     kSpeakToVendor, kInvalidCall},
    {kNumbers, "Das Zeichen … fehlt in der Codepage Windows-1252.",
     "Das Zeichen lässt sich nicht in die Datei schreiben.",
     "Das Zeichen im Bericht durch ein anderes ersetzen.", kInvalidCall},
    {kNumbers, "Überlauf", "Eine Zahl, etwa die Nummer einer Tabellenzeile, ist zu groß.",
     "Die Nummern (LineID) im Bericht prüfen.", kOverflow},
    {kNumbers, "Nicht genügend Speicher", "Der Arbeitsspeicher reicht nicht.",
     "Andere Programme schließen; die 64-Bit-Fassung benutzen.", kOutOfMemory},
    {kNumbers, "Index außerhalb des gültigen Bereichs", kInsideCause, kSpeakToVendor,
     kSubscriptOutOfRange},
    {kNumbers, "Typen unverträglich",
     "Eine Zahl wurde erwartet und keine gefunden, etwa als PosNr in der Differenz-Datei.",
     kSpeakToVendor, kTypeMismatch},
    {kNumbers, "Nicht genügend Stapelspeicher",
     "Ein Programm hat Ebenen tiefer verschachtelt, als Berichte es sind.", kSpeakToVendor,
     kOutOfStack},
    {kNumbers, "Interner Fehler", "Ein Fehler im Programm.", kSpeakToVendor, kInternalError},
    {kNumbers, "Dateiname oder -nummer falsch", "Der Pfad ist leer oder kein gültiger Name.",
     "Den Pfad prüfen, auch den Referenzbeleg, aus dem ein Dateiname wird.", kBadFileName},
    {kNumbers, "Datei nicht gefunden", "Die Datei gibt es nicht oder nicht mehr.",
     "Den Pfad prüfen.", kFileNotFound},
    {kNumbers, "Geräte-E/A-Fehler", "Der Datenträger oder das Netz meldet einen Fehler.",
     "Verbindung und Datenträger prüfen.", kDeviceError},
    {kNumbers, "Datei existiert bereits", "Der Name ist schon vergeben.",
     "Die vorhandene Datei wegräumen.", kFileExists},
    {kNumbers, "Datenträger voll", "Es ist kein Platz mehr da.",
     "Platz schaffen und erneut starten.", kDiskFull},
    {kNumbers, "Zu viele Dateien", "Das System lässt keine weitere offene Datei zu.",
     "Andere Programme schließen.", kTooManyFiles},
    {kNumbers, "Zugriff verweigert",
     "Die Datei ist schreibgeschützt oder geöffnet, oder die Rechte fehlen.",
     "Schreibschutz aufheben, Programme schließen, Rechte prüfen.", kPermissionDenied},
    {kNumbers, "Fehler beim Zugriff auf Pfad/Datei",
     "Wo eine Datei erwartet wird, ist ein Ordner oder Gerät, oder der Zugriff ist nicht erlaubt.",
     "Den Pfad und die Rechte prüfen.", kPathFileAccess},
    {kNumbers, "Pfad nicht gefunden", "Der Ordner, in dem die Datei liegen soll, fehlt.",
     "Den Pfad prüfen oder den Ordner anlegen.", kPathNotFound},
    {kNumbers, "Objektvariable oder With-Blockvariable nicht festgelegt", kInsideCause,
     kSpeakToVendor, kObjectNotSet},
    {kNumbers, "Objekterstellung durch ActiveX-Komponente nicht möglich",
     "Eine Klasse der Komponente lässt sich nicht anlegen.", "Die Komponente neu registrieren.",
     kCannotCreateObject},
    {kNumbers, "Anwendungs- oder objektdefinierter Fehler", "Ein Fehler ohne eigene Beschreibung.",
     kSpeakToVendor},
});

// Numbers of run-time errors as automation clients see them begin with this.
constexpr std::uint32_t kAutomationFacility = 0x800A0000;

// The characters that a text has of its own when it fits the pattern; nothing when it does not.
struct Fit {
  bool fits;
  std::size_t own;
};

Fit FitOf(std::string_view pattern, std::string_view text) {
  Fit fit{true, 0};
  bool first = true;
  while (true) {
    const auto gap = pattern.find(kGap);
    const std::string_view piece = pattern.substr(0, gap);
    const bool last = gap == std::string_view::npos;
    std::size_t at = text.find(piece);
    if (first) at = text.starts_with(piece) ? 0 : std::string_view::npos;
    if (last) {
      at = text.ends_with(piece) ? text.size() - piece.size() : std::string_view::npos;
      if (first && text != piece) at = std::string_view::npos;
    }
    if (at == std::string_view::npos) return {false, 0};
    fit.own += piece.size();
    if (last) return fit;
    text.remove_prefix(at + piece.size());
    pattern.remove_prefix(gap + kGap.size());
    first = false;
  }
}

}  // namespace

std::span<const MessageGuide> AllMessageGuides() { return kGuides; }

std::string_view GroupTitle(MessageGroup group) {
  switch (group) {
    case kReports:
      return "Ergebnis eines Berichts";
    case kChecks:
      return "Was nicht zusammenpasst";
    case kFiles:
      return "Dateien und Ordner";
    case kInside:
      return "Schritte im Inneren";
    case kForesight:
      return "Was vor einem Lauf auffällt";
    case kWarnings:
      return "Fragen und Hinweise";
    default:
      return "Laufzeitfehler";
  }
}

const MessageGuide* FindMessageGuide(std::string_view message) {
  const std::string folded = FoldCase(TrimBlanks(message));
  const MessageGuide* best = nullptr;
  std::size_t most = 0;
  for (const MessageGuide& guide : kGuides) {
    const Fit fit = FitOf(FoldCase(guide.text), folded);
    if (!fit.fits || (best && fit.own <= most)) continue;
    best = &guide;
    most = fit.own;
  }
  return best;
}

std::vector<const MessageGuide*> SearchMessageGuides(std::string_view part) {
  const std::string folded = FoldCase(TrimBlanks(part));
  std::vector<const MessageGuide*> found;
  for (const MessageGuide& guide : kGuides) {
    if (!folded.empty() && FoldCase(guide.text).find(folded) != std::string::npos) {
      found.push_back(&guide);
    }
  }
  return found;
}

std::vector<const MessageGuide*> MessageGuidesOf(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  if ((bits & 0xFFFF0000) == kAutomationFacility) number = static_cast<std::int32_t>(bits & 0xFFFF);
  std::vector<const MessageGuide*> found;
  for (const MessageGuide& guide : kGuides) {
    if (number != 0 && guide.number == number) found.push_back(&guide);
  }
  return found;
}

std::string AnchorOf(const MessageGuide& guide) {
  return "meldung-" + std::to_string(&guide - kGuides.data() + 1);
}

std::string NumberText(std::int32_t number) {
  if (number >= 0) return std::to_string(number);
  char hex[16];
  std::snprintf(hex, sizeof hex, "0x%08X", static_cast<unsigned>(number));
  return std::to_string(number) + " (" + hex + ")";
}

}  // namespace tessary
