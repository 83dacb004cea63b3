// One pass over the text: a line of the list's own level becomes an element, the lines up to the
// next one are its contents. Of these only the properties are looked at that may hold the key or
// the type of the element.

#include "levels/section_reader.h"

#include <string>

#include "engine/diff_text.h"
#include "engine/section_text.h"
#include "levels/level_base.h"
#include "levels/owner_fields.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

class SectionReader {
 public:
  SectionReader(LevelBase& list, std::int32_t level) : list_(list), level_(level) {}

  // Takes one line that is a section or a property.
  void Take(const LineWalker& line) {
    if (line.level() == level_) {
      EndContents(line.begin());
      list_.AddAsRead(WithoutTabs(line.line(), storage_), line.type());
      contents_ = line.end();
      previous_ = {};
    } else {
      has_contents_ = true;
      if (OwnerLevelOf(line.level()) == level_) TakePropertyOfOwner(line);
    }
  }

  // Ends the contents of the last element before `end`.
  void EndContents(const char* end) {
    if (has_contents_) {
      list_.ChildOfLast().SetUnread({contents_, static_cast<std::size_t>(end - contents_)});
    }
    has_contents_ = false;
  }

 private:
  void TakePropertyOfOwner(const LineWalker& line) {
    const std::string_view previous = std::exchange(previous_, line.line());
    if (line.type() != bxltProperty || !MayBeOwnerProperty(line.level(), line.line().front())) {
      return;
    }
    const std::string_view text = WithoutTabs(line.line(), storage_);
    const OwnerProperty* found = FindOwnerProperty(line.level(), NameOfProperty(text));
    if (!found) return;
    std::string storage;
    if (!SetsOwnerBehind(*found, NameOfProperty(WithoutTabs(previous, storage)))) return;
    const Ref<ElementTable> elements = list_.ElementArray();
    TextPool& pool = elements->pool();
    owner_fields_.Set(elements, pool.Intern(found->owner), found->field,
                      pool.Intern(SplitProperty(text).strValue));
  }

  LevelBase& list_;
  const std::int32_t level_;
  OwnerFields owner_fields_;
  const char* contents_ = nullptr;
  bool has_contents_ = false;
  std::string_view previous_;  // the line before among those that may be such properties
  std::string storage_;
};

}  // namespace

std::int32_t ReadSection(LevelBase& list, std::string_view text, const EngineContext* context,
                         std::int64_t& line_count) {
  const std::int32_t level = list.ClassNumber();
  LineWalker line(text, level == 0 ? 0 : level - 1);
  NestingCheck nesting(level);
  SectionReader reader(list, level);
  while (line.Next()) {
    ++line_count;
    if (context) context->Yield();
    if (!nesting.Takes(line)) return -1;
    if (line.type() == bxltUnknown) continue;
    if (MayHaveStatus(line.line())) return -1;
    reader.Take(line);
  }
  reader.EndContents(text.data() + text.size());
  return line.level();
}

}  // namespace tessary
