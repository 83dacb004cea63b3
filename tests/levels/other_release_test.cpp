// A file whose other release has been read is read as if there were none.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "engine/element_table.h"
#include "levels/section_reader.h"
#include "report/line_syntax.h"
#include "report/report_file.h"
#include "support/engine_trees.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Reads a file; what it was told of another release becomes what it tells of itself.
Ref<ElementTable> Read(const TestEngine& engine, std::string text, FileSections& sections,
                       std::int64_t& lines) {
  BXReportFile store(engine.context);
  lines = store.AddLines(engine.context->pool()->Adopt(std::move(text)), &sections);
  return store.ReportFile();
}

std::vector<std::string> Alone(const FileSections& sections) {
  std::vector<std::string> texts;
  for (const auto& section : sections.sections) {
    if (section.stands_alone) texts.emplace_back(section.text);
  }
  return texts;
}

TEST(FileSections, EndWithTheNextHeader) {
  const TestEngine engine;
  FileSections sections;
  std::int64_t lines = 0;
  const auto tree =
      Read(engine, "[A]\n X=1\n\n[@Lines]\n{\n}\n\t[B]\r\n[C]\nY=1\n", sections, lines);
  EXPECT_EQ(sections.elements, tree);
  ASSERT_EQ(sections.sections.size(), 3u);
  EXPECT_EQ(sections.sections[0].text, "[A]\n X=1\n\n[@Lines]\n{\n}\n\t[B]\r\n");
  EXPECT_THAT(Alone(sections), ElementsAre(sections.sections[0].text, "\t[B]\r\n[C]\n"));
}

TEST(FileSections, StandAloneWhereNoOtherSectionHasASay) {
  struct Row {
    const char* what;
    const char* text;
    std::vector<std::string> alone;
  };
  const Row rows[] = {
      {"its own key", "[Object]\nLinkID=1\n[B]\n", {"[Object]\nLinkID=1\n[B]\n"}},
      {"another's key", "[Object]\n[A]\nLinkID=1\n[B]\n", {}},
      {"another's key far away", "[Object]\n[C]\n[A]\nLinkID=1\n[B]\n", {"[C]\n[A]\n"}},
      {"the key of nobody", "[A]\nLinkID=1\n[B]\n", {}},
      {"a key that does not count", "[A]\nLayerID=1\n[B]\n", {"[A]\nLayerID=1\n[B]\n"}},
      {"the key of a layer above", "[Layer]\n[Object]\nVisible=1\nLayerID=1\n[B]\n", {}},
      {"a header that the file ends in", "[A]\n[B]", {}},
  };
  for (const Row& row : rows) {
    const TestEngine engine;
    FileSections sections;
    std::int64_t lines = 0;
    Read(engine, row.text, sections, lines);
    EXPECT_EQ(Alone(sections), row.alone) << row.what;
  }
}

TEST(FileSections, AreNoneOfADamagedFile) {
  const TestEngine engine;
  FileSections sections;
  std::int64_t lines = 0;
  Read(engine, "[A]\nX=1\n[B]\n}\n}\n", sections, lines);
  EXPECT_FALSE(sections.elements);
  EXPECT_THAT(sections.sections, IsEmpty());
}

TEST(OtherRelease, MakesNoDifference) {
  struct Row {
    const char* what;
    const char* other;
    const char* text;
  };
  const Row rows[] = {
      {"the same", "[A]\nX=1\n[B]\nX=2\n[C]\n", "[A]\nX=1\n[B]\nX=2\n[C]\n"},
      {"empty", "", "[A]\nX=1\n"},
      {"nothing left", "[A]\nX=1\n", ""},
      {"another value", "[A]\nX=1\n[B]\nX=2\n[C]\n[D]\n", "[A]\nX=1\n[B]\nX=3\n[C]\n[D]\n"},
      {"another case", "[A]\nX=1\n[B]\n", "[a]\nX=1\n[b]\n"},
      {"inserted", "[A]\nX=1\n[C]\nX=2\n[D]\n", "[A]\nX=1\n[B]\nX=3\n[C]\nX=2\n[D]\n"},
      {"many inserted", "[A]\n[G]\n[H]\n", "[A]\n[B]\n[C]\n[D]\n[E]\n[F]\n[G]\n[H]\n"},
      {"deleted", "[A]\nX=1\n[B]\nX=3\n[C]\nX=2\n[D]\n", "[A]\nX=1\n[C]\nX=2\n[D]\n"},
      {"moved", "[A]\n[B]\nX=1\n[C]\n[D]\n", "[C]\n[D]\n[B]\nX=1\n[A]\n"},
      {"of one name", "[A]\nX=1\n[A]\nX=2\n[A]\nX=3\n", "[A]\nX=1\n[A]\nX=1\n[A]\nX=2\n[A]\n"},
      {"a property more", "[A]\nX=1\n[B]\n[C]\n", "[A]\nX=1\nY=1\n[B]\n[C]\n"},
      {"a block more", "[A]\nX=1\n[B]\n[C]\n", "[A]\nX=1\n{\nZ=1\n}\n[B]\n[C]\n"},
      {"the last one is longer", "[A]\n[B]\nX=1\n", "[A]\n[B]\nX=1\nY=2\n"},
      {"the last one is none", "[A]\n[B]\nX=1\n", "[A]\n[B]\nX=1\n[C]\n"},
      {"a header that goes on", "[A]\n[B]", "[A]\n[B]=1\n"},
      {"a header that goes on as lines", "[A]\nX=1\n[@Lines]",
       "[A]\nX=1\n[@Lines]\n{\nY=1\n}\n[C]\n"},
      {"its own key", "[Object]\nLinkID=1\n[Object]\nLinkID=2\n[B]\n",
       "[Object]\nLinkID=2\n[Object]\nLinkID=2\n[B]\n"},
      {"an empty key", "[Object]\nLinkID=\n[Object]\nLinkID=\n[B]\n",
       "[Object]\nLinkID=\n[Object]\nLinkID=\n[B]\n"},
      {"key and type",
       "[Object]\nObjectName=a\nLinkID=1\n[Layer]\nVisible=1\nLayerID=5\n[Object]\nLinkID=2\n[X]\n",
       "[Object]\nObjectName=a\nLinkID=1\n[Layer]\nVisible=1\nLayerID=5\n[Object]\nLinkID=2\n[X]"
       "\n"},
      {"a key from further down is gone", "[Object]\nY=1\n[A]\nLinkID=7\n[B]\n",
       "[Object]\nY=1\n[A]\nX=1\n[B]\n"},
      {"a key from further down has come", "[Object]\nY=1\n[A]\nX=1\n[B]\n",
       "[Object]\nY=1\n[A]\nLinkID=7\n[B]\n"},
      {"a key for nobody finds somebody", "[A]\nLinkID=1\n[B]\n[C]\n",
       "[Object]\n[A]\nLinkID=1\n[B]\n[C]\n"},
      {"blocks", "[A]\n[@Lines]\n{\n[L]\n{\nX=1\n}\n}\n[B]\n[C]\n",
       "[A]\n[@Lines]\n{\n[L]\n{\nX=1\n}\n}\n[B]\nY=1\n[C]\n"},
      {"damaged", "[A]\nX=1\n[B]\nX=2\n[C]\n", "[A]\nX=1\n[B]\nX=2\n[C]\n}\n}\nX=1\n"},
      {"a difference file", "[A]\nX=1\n[B]\n[C]\n", "[A]\nX=1\n[B]\n[C]\nD();[D]\n"},
  };
  for (const Row& row : rows) {
    const TestEngine alone;
    FileSections none;
    std::int64_t lines = 0;
    const std::string expected = Dump(Read(alone, row.text, none, lines));

    const TestEngine engine;
    FileSections sections;
    std::int64_t other_lines = 0;
    std::int64_t lines_after_other = 0;
    const auto other = Read(engine, row.other, sections, other_lines);
    const auto tree = Read(engine, row.text, sections, lines_after_other);
    EXPECT_EQ(lines_after_other, lines) << row.what;
    EXPECT_EQ(Dump(tree), expected) << row.what;

    FileSections only;
    EXPECT_EQ(Dump(other), Dump(Read(alone, row.other, only, other_lines))) << row.what;
    EXPECT_EQ(Alone(sections), sections.elements == other ? Alone(only) : Alone(none)) << row.what;
  }
}

}  // namespace
}  // namespace tessary
