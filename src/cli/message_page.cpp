#include "cli/message_page.h"

#include "ui/message_guide.h"

namespace tessary {
namespace {

constexpr std::string_view kIntroduction =
    "# Meldungen\n"
    "\n"
    "Alle Meldungen von Tessary mit Ursache und Abhilfe. „…“ steht für Namen, Zahlen und weitere "
    "Meldungen.\n"
    "Unter einem fehlgeschlagenen Bericht nennt die oberste Meldung den Schritt, die unterste die "
    "Ursache.\n"
    "Dasselbe zeigt `tessary explain \"MELDUNG\"`, auch mit einer Nummer; ohne Angabe gibt "
    "`tessary explain` diese\n"
    "Seite aus.\n";

void AppendGuide(const MessageGuide& guide, std::string& page) {
  page.append("\n### ").append(guide.text).append("\n\n");
  if (guide.number != 0) page.append("- Nummer: ").append(NumberText(guide.number)).append("\n");
  page.append("- Ursache: ").append(guide.cause).append("\n");
  page.append("- Abhilfe: ").append(guide.remedy).append("\n");
}

}  // namespace

std::string MessagePage() {
  std::string page(kIntroduction);
  for (int group = 0; group < kMessageGroups; ++group) {
    page.append("\n## ").append(GroupTitle(static_cast<MessageGroup>(group))).append("\n");
    for (const MessageGuide& guide : AllMessageGuides()) {
      if (static_cast<int>(guide.group) == group) AppendGuide(guide, page);
    }
  }
  return page;
}

}  // namespace tessary
