#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/html/html_text.h"
#include "ui/html/protocol_page.h"

namespace tessary {
namespace {

struct TextPair {
  std::string text;
  std::string expected;
};

TEST(HtmlText, IsNeverMarkup) {
  const TextPair rows[] = {
      {"", ""},
      {"Rechnung Österreich.lst", "Rechnung Österreich.lst"},
      {"<script>alert(1)</script>", "&lt;script&gt;alert(1)&lt;/script&gt;"},
      {"a & b", "a &amp; b"},
      {"&lt;", "&amp;lt;"},
      {"\" onload='x'", "&quot; onload=&#39;x&#39;"},
      {"a\r\nb\tc", "a\uFFFD\uFFFDb\uFFFDc"},
      {std::string("a\0b", 3), "a\uFFFDb"},
      {"\x1b[2J\x7F\u0085", "\uFFFD[2J\uFFFD\uFFFD"},
      {"Rechnung \xD6.lst", "Rechnung \uFFFD.lst"},
      {"\xC0\xBCscript>", "\uFFFD\uFFFDscript&gt;"},
  };
  for (const auto& row : rows) EXPECT_EQ(HtmlText(row.text), row.expected);
}

ProtocolPage ExamplePage() {
  ResultDictionary errors;
  ResultDictionary correct;
  correct.Add("Bericht A", {""});
  correct.Add("Bericht C", {""});
  errors.Add("Bericht B", {"Zweite Meldung", "Erste Meldung"});
  errors.Add("bericht c", {"Beides"});
  return {.title = "Titel",
          .outcome = "Zwei Fehler.",
          .tone = PageTone::kError,
          .facts = {{"Befehl", "tessary --x"}},
          .counts = {{2, "konvertiert", PageTone::kCorrect}, {0, "fehl", PageTone::kNeutral}},
          .tree = {errors, correct},
          .warnings = {"Achtung <b>"},
          .files = {{"Übergangen", {"Liesmich.txt", "a<b"}}},
          .repair = RepairGuide{"Einleitung", {{"Schritt:", "/ein Ordner"}, {"Ohne Wert.", ""}}}};
}

// Whether the texts stand in the page one behind the other.
testing::AssertionResult HasInOrder(const std::string& page,
                                    const std::vector<std::string>& texts) {
  std::size_t pos = 0;
  for (const std::string& text : texts) {
    pos = page.find(text, pos);
    if (pos == std::string::npos) return testing::AssertionFailure() << text << " in\n" << page;
    pos += text.size();
  }
  return testing::AssertionSuccess();
}

std::size_t CountOf(const std::string& page, std::string_view text) {
  std::size_t count = 0;
  for (auto pos = page.find(text); pos != std::string::npos; pos = page.find(text, pos + 1)) {
    ++count;
  }
  return count;
}

TEST(HtmlPage, ShowsTheTreeInItsOrder) {
  const std::string page = HtmlPage(ExamplePage());
  EXPECT_TRUE(HasInOrder(
      page,
      {"aria-label=\"Erfolg\"", "<bdi>Bericht A</bdi></div></li>", "<details open><summary>",
       "aria-label=\"Erfolg\"", "<bdi>Bericht C</bdi>", "</summary>",
       "<li><div class=\"mark warning\">", "aria-label=\"Hinweis\"", "<bdi>Beides</bdi>",
       "</details>", "<details open><summary>", "aria-label=\"Fehler\"", "<bdi>Bericht B</bdi>",
       "<bdi>Zweite Meldung</bdi>", "<bdi>Erste Meldung</bdi>", "</details>"}));
  EXPECT_EQ(CountOf(page, "<bdi>Bericht C</bdi>"), 1u);
  EXPECT_EQ(CountOf(page, "bericht c"), 0u) << "a report that both succeeded and failed";
}

// The name of a failed report can equal the key of another one's message, below which it hangs
// then.
TEST(HtmlPage, ShowsMessagesBelowAMessage) {
  ResultDictionary errors;
  errors.Add("A", {"x"});
  errors.Add("A\\x", {"y"});
  ProtocolPage page = ExamplePage();
  page.tree = {errors, ResultDictionary()};
  EXPECT_TRUE(HasInOrder(HtmlPage(page), {"<details open><summary>", "<bdi>A</bdi>", "</summary>",
                                          "<details open><summary>", "<bdi>x</bdi>", "</summary>",
                                          "<bdi>y</bdi>", "</details>", "</details>"}));
}

TEST(HtmlPage, HasEveryPart) {
  EXPECT_TRUE(HasInOrder(HtmlPage(ExamplePage()),
                         {"<title>Titel – Protokoll</title>",
                          "<header>",
                          "<h1>Titel</h1>",
                          "<main>",
                          "<p class=\"outcome error\">Zwei Fehler.</p>",
                          "<div class=\"correct\"><dt>konvertiert</dt><dd>2</dd></div>",
                          "<div class=\"neutral\"><dt>fehl</dt><dd>0</dd></div>",
                          "<h2 id=\"protokoll\">",
                          "<h2 id=\"korrektur\">",
                          "Einleitung",
                          "<li>Schritt: <code><bdi>",
                          "<span>/ein</span> <span>Ordner</span>",
                          "<li>Ohne Wert.</li>",
                          "<h2 id=\"hinweise\">",
                          "Achtung &lt;b&gt;",
                          "Übergangen:",
                          "<bdi>Liesmich.txt</bdi>",
                          "<bdi>a&lt;b</bdi>",
                          "<h2 id=\"aufruf\">",
                          "<dt>Befehl</dt>",
                          "<span>tessary</span> <span>--x</span>",
                          "</main>",
                          "<footer>"}));
}

TEST(HtmlPage, LeavesOutPartsWithoutContents) {
  ProtocolPage empty = ExamplePage();
  empty.tree = {ResultDictionary(), ResultDictionary()};
  empty.warnings.clear();
  empty.files.clear();
  empty.repair.reset();
  const std::string page = HtmlPage(empty);
  EXPECT_NE(page.find("<p>Kein Bericht wurde bearbeitet.</p>"), std::string::npos);
  EXPECT_EQ(page.find("<ul class=\"tree"), std::string::npos);
  EXPECT_EQ(page.find("id=\"korrektur\""), std::string::npos);
  EXPECT_EQ(page.find("id=\"hinweise\""), std::string::npos);
}

TEST(HtmlPage, NeedsNothingElse) {
  const std::string page = HtmlPage(ExamplePage());
  EXPECT_TRUE(page.starts_with(kHtmlPageBeginning));
  EXPECT_NE(page.find("content=\"default-src 'none'; style-src 'unsafe-inline'\""),
            std::string::npos);
  for (const char* reference : {"<script", "<link", "<img", "<a ", "url(", "@import", "http:"}) {
    EXPECT_EQ(page.find(reference), std::string::npos) << reference;
  }
}

TEST(HtmlPage, QuotesEveryTextThatComesFromOutside) {
  const std::string evil = "<i a=\"'&>";
  ResultDictionary errors;
  ResultDictionary correct;
  correct.Add("1" + evil, {""});
  errors.Add("2" + evil, {"3" + evil});
  const ProtocolPage page{.title = evil,
                          .outcome = evil,
                          .tone = PageTone::kNeutral,
                          .facts = {{evil, evil}},
                          .counts = {{1, evil, PageTone::kNeutral}},
                          .tree = {errors, correct},
                          .warnings = {evil},
                          .files = {{evil, {evil}}},
                          .repair = RepairGuide{evil, {{evil, evil}}}};
  const std::string html = HtmlPage(page);
  EXPECT_EQ(html.find("<i"), std::string::npos);
  EXPECT_EQ(CountOf(html, "&lt;i"), 15u);
}

TEST(HtmlPage, KeepsBlanksOfACommand) {
  ProtocolPage page = ExamplePage();
  page.facts = {{"Befehl", "a  'b   c' "}, {"Ordner", ""}};
  const std::string html = HtmlPage(page);
  EXPECT_NE(html.find("<span>a</span>  <span>&#39;b</span>   <span>c&#39;</span> </bdi>"),
            std::string::npos);
  EXPECT_NE(html.find("<dt>Ordner</dt><dd><code><bdi></bdi></code></dd>"), std::string::npos);
}

}  // namespace
}  // namespace tessary
