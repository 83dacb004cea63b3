// The page is plain structure: headings, lists, and <details> for reports with messages, which
// work without any script. A policy in its head forbids scripts and requests altogether, so even a
// mistake in quoting a name could not run anything.

#include "ui/html/protocol_page.h"

#include <algorithm>
#include <set>

#include "ui/html/html_text.h"
#include "ui/html/page_style.h"
#include "ui/message_guide.h"

namespace tessary {

constinit const std::string_view kHtmlPageBeginning =
    "<!DOCTYPE html>\n"
    "<html lang=\"de\">\n"
    "<head>\n"
    "<meta charset=\"utf-8\">\n"
    "<meta name=\"generator\" content=\"Tessary\">\n";

namespace {

constexpr std::string_view kHead =
    "<meta http-equiv=\"Content-Security-Policy\" "
    "content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";

constexpr std::string_view kIcons = R"svg(<svg width="0" height="0" hidden aria-hidden="true">
<symbol id="correct" viewBox="0 0 18 18"><circle cx="9" cy="9" r="7.5"/><path d="M5.6 9.3l2.3 2.3 4.5-5"/></symbol>
<symbol id="error" viewBox="0 0 18 18"><circle cx="9" cy="9" r="7.5"/><path d="M6.3 6.3l5.4 5.4M11.7 6.3l-5.4 5.4"/></symbol>
<symbol id="warning" viewBox="0 0 18 18"><path d="M9 2.2l7.2 13H1.8z"/><path d="M9 7v3.6M9 12.9v.1"/></symbol>
</svg>
)svg";

std::string_view ClassOf(PageTone tone) {
  switch (tone) {
    case PageTone::kCorrect:
      return "correct";
    case PageTone::kWarning:
      return "warning";
    case PageTone::kError:
      return "error";
    default:
      return "neutral";
  }
}

struct Mark {
  PageTone tone;
  std::string_view word;
};

Mark MarkOf(ProtocolImage image) {
  switch (image) {
    case ProtocolImage::kCorrect:
      return {PageTone::kCorrect, "Erfolg"};
    case ProtocolImage::kError:
      return {PageTone::kError, "Fehler"};
    default:
      return {PageTone::kWarning, "Hinweis"};
  }
}

std::string_view WordOf(PageTone tone) { return tone == PageTone::kCorrect ? "Erfolg" : "Hinweis"; }

// A page in the making.
class PageWriter {
 public:
  explicit PageWriter(const ProtocolPage& page) : page_(page) {}

  std::string Write() {
    WriteHead();
    html_.append("<body>\n").append(kIcons);
    WriteHeader();
    html_.append("<main>\n");
    WriteSummary();
    WriteTree();
    WriteRepair();
    WriteDetails("aenderungen", "Änderungen", page_.changes);
    WriteDetails("nachpruefung", "Nicht nachgebildet", page_.unreproduced);
    WriteNotes();
    WriteExplanations();
    WriteFacts();
    html_.append("</main>\n<footer><p>Erstellt von Tessary</p></footer>\n</body>\n</html>\n");
    return std::move(html_);
  }

 private:
  void WriteHead() {
    html_.append(kHtmlPageBeginning).append(kHead);
    html_.append("<title>").append(HtmlText(page_.title)).append(" – Protokoll</title>\n");
    html_.append("<style>").append(kPageStyle).append("</style>\n</head>\n");
  }

  void WriteHeader() {
    html_.append("<header>\n<h1>").append(HtmlText(page_.title));
    html_.append("</h1>\n<p>List &amp; Label · Protokoll</p>\n</header>\n");
  }

  void BeginSection(std::string_view id, std::string_view heading) {
    html_.append("<section aria-labelledby=\"").append(id).append("\">\n<h2 id=\"").append(id);
    html_.append("\">").append(heading).append("</h2>\n");
  }

  void EndSection() { html_.append("</section>\n"); }

  // An icon and beside it a text that may come from anywhere. The word is for those who do not
  // see the icon.
  void WriteMarked(const Mark& mark, std::string_view text, std::string_view element) {
    const std::string_view tone = ClassOf(mark.tone);
    html_.append("<").append(element).append(" class=\"mark ").append(tone);
    html_.append("\"><svg class=\"icon\" role=\"img\" aria-label=\"").append(mark.word);
    html_.append("\"><use href=\"#").append(tone).append("\"/></svg><bdi>");
    html_.append(HtmlText(text)).append("</bdi></").append(element).append(">");
  }

  // A command or path. Its words are kept whole where a line has room for them, since a break
  // after a hyphen would tear options apart.
  void WriteCode(std::string_view text) {
    html_.append("<code><bdi>");
    while (!text.empty()) {
      const std::size_t blank = std::min(text.find(' '), text.size());
      if (blank > 0)
        html_.append("<span>").append(HtmlText(text.substr(0, blank))).append("</span>");
      const std::size_t word = std::min(text.find_first_not_of(' ', blank), text.size());
      html_.append(word - blank, ' ');
      text.remove_prefix(word);
    }
    html_.append("</bdi></code>");
  }

  void WriteSummary() {
    html_.append("<section aria-label=\"Ergebnis\">\n<p class=\"outcome ");
    html_.append(ClassOf(page_.tone)).append("\">").append(HtmlText(page_.outcome));
    html_.append("</p>\n<dl class=\"counts\">\n");
    for (const PageCount& count : page_.counts) {
      html_.append("<div class=\"").append(ClassOf(count.tone)).append("\"><dt>");
      html_.append(HtmlText(count.label)).append("</dt><dd>");
      html_.append(std::to_string(count.count)).append("</dd></div>\n");
    }
    html_.append("</dl>\n");
    EndSection();
  }

  void WriteTree() {
    BeginSection("protokoll", "Protokoll");
    if (page_.tree.top_level().empty()) {
      html_.append("<p>Kein Bericht wurde bearbeitet.</p>\n");
    } else {
      html_.append("<ul class=\"tree box\">\n");
      for (const std::size_t index : page_.tree.top_level()) WriteNode(page_.tree.nodes()[index]);
      html_.append("</ul>\n");
    }
    EndSection();
  }

  void WriteNode(const ProtocolNode& node) {
    html_.append("<li>");
    if (node.children.empty()) {
      WriteMarked(MarkOf(node.image), node.text, "div");
      if (node.image == ProtocolImage::kWarning) WriteHelp(node.text);
    } else {
      html_.append("<details open><summary>");
      WriteMarked(MarkOf(node.image), node.text, "span");
      html_.append("</summary>\n");
      html_.append("<ul>\n");
      for (const std::size_t index : node.children) WriteNode(page_.tree.nodes()[index]);
      html_.append("</ul></details>");
    }
    html_.append("</li>\n");
  }

  // Leads from a message to what can be done about it.
  void WriteHelp(std::string_view message) {
    const MessageGuide* guide = FindMessageGuide(message);
    if (!guide) return;
    explained_.insert(guide);
    html_.append(" <a class=\"why\" href=\"#").append(AnchorOf(*guide));
    html_.append("\">Was tun?</a>");
  }

  void WriteExplanations() {
    if (explained_.empty()) return;
    BeginSection("erklaerungen", "Erklärungen");
    html_.append("<dl class=\"guides box\">\n");
    for (const MessageGuide* guide : explained_) {
      html_.append("<dt id=\"").append(AnchorOf(*guide)).append("\">");
      html_.append(HtmlText(guide->text)).append("</dt><dd><p>Ursache: ");
      html_.append(HtmlText(guide->cause)).append("</p><p>Abhilfe: ");
      html_.append(HtmlText(guide->remedy)).append("</p></dd>\n");
    }
    html_.append("</dl>\n");
    EndSection();
  }

  void WriteRepair() {
    if (!page_.repair) return;
    BeginSection("korrektur", "Fehlerhafte Berichte korrigieren");
    html_.append("<div class=\"repair box\">\n<p>").append(HtmlText(page_.repair->introduction));
    html_.append("</p>\n<ol class=\"steps\">\n");
    for (const RepairStep& step : page_.repair->steps) {
      html_.append("<li>").append(HtmlText(step.text));
      if (!step.value.empty()) {
        html_.append(" ");
        WriteCode(step.value);
      }
      html_.append("</li>\n");
    }
    html_.append("</ol>\n</div>\n");
    EndSection();
  }

  void WriteDetails(std::string_view id, std::string_view heading,
                    const std::vector<PageDetails>& groups) {
    if (groups.empty()) return;
    BeginSection(id, heading);
    html_.append("<ul class=\"tree box\">\n");
    for (const PageDetails& group : groups) {
      html_.append("<li><details><summary><span class=\"mark\"><span></span><bdi>");
      html_.append(HtmlText(group.heading)).append("</bdi></span></summary>\n<ul>\n");
      for (const PageDetail& detail : group.details) WriteDetail(detail);
      html_.append("</ul></details></li>\n");
    }
    html_.append("</ul>\n");
    EndSection();
  }

  void WriteDetail(const PageDetail& detail) {
    const std::string_view tone = ClassOf(detail.tone);
    html_.append("<li class=\"mark ").append(tone).append("\"><svg class=\"icon\" role=\"img\" ");
    html_.append("aria-label=\"").append(WordOf(detail.tone)).append("\"><use href=\"#");
    html_.append(tone).append("\"/></svg><div><bdi>").append(HtmlText(detail.text));
    html_.append("</bdi>");
    for (const std::string* more : {&detail.place, &detail.note}) {
      if (more->empty()) continue;
      html_.append("<div class=\"more\"><bdi>").append(HtmlText(*more)).append("</bdi></div>");
    }
    html_.append("</div></li>\n");
  }

  void WriteNotes() {
    if (page_.warnings.empty() && page_.files.empty()) return;
    BeginSection("hinweise", "Hinweise");
    html_.append("<ul class=\"notes box\">\n");
    for (const std::string& warning : page_.warnings) {
      html_.append("<li>");
      WriteMarked({PageTone::kWarning, "Warnung"}, warning, "div");
      WriteHelp(warning);
      html_.append("</li>\n");
    }
    for (const PageNames& files : page_.files) WriteNames(files);
    html_.append("</ul>\n");
    EndSection();
  }

  void WriteNames(const PageNames& files) {
    html_.append("<li>").append(HtmlText(files.label)).append(":\n<ul class=\"names\">");
    for (const std::string& name : files.names) {
      html_.append("<li><bdi>").append(HtmlText(name)).append("</bdi></li>");
    }
    html_.append("</ul></li>\n");
  }

  void WriteFacts() {
    BeginSection("aufruf", "Aufruf");
    html_.append("<dl class=\"facts box\">\n");
    for (const PageFact& fact : page_.facts) {
      html_.append("<dt>").append(HtmlText(fact.label)).append("</dt><dd>");
      WriteCode(fact.value);
      html_.append("</dd>\n");
    }
    html_.append("</dl>\n");
    EndSection();
  }

  const ProtocolPage& page_;
  std::string html_;
  std::set<const MessageGuide*> explained_;  // in the order of the table
};

}  // namespace

std::string HtmlPage(const ProtocolPage& page) { return PageWriter(page).Write(); }

}  // namespace tessary
