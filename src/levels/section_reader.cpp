// One pass over the text: a line of the list's own level becomes an element, the lines up to the
// next one are its contents. Of these only the properties are looked at that may hold the key or
// the type of the element.
//
// Where another release has been read, each section is compared with the one behind the section
// that both releases had last. If their texts are the same up to and including the next header, the
// element is taken over.

#include "levels/section_reader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "engine/diff_text.h"
#include "engine/engine_context.h"
#include "engine/section_text.h"
#include "levels/level_base.h"
#include "levels/owner_fields.h"
#include "levels/report_format.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

std::string_view Between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

// What lines begin with that have a meaning for the list of a level although they stand below it:
// sections and braces, those that may have a status, the properties of its elements and the one
// that such a property has to follow.
constexpr FirstLetters StopsOf(int list_level) {
  FirstLetters stops{};
  const auto add = [&](char letter) { stops[static_cast<unsigned char>(letter)] = true; };
  for (const char letter : std::string_view("\r\n[{}DNU")) add(letter);
  for (const OwnerProperty& property : kOwnerProperties) {
    if (property.owner_level != list_level) continue;
    const char capital = property.name.front();
    add(capital);
    add(LowerAscii(capital));
    if (DependsOnPrevious(property)) add(kBeforeLayerID.front());
  }
  return stops;
}

constexpr auto kStops = [] {
  std::array<FirstLetters, kLevelCount> stops{};
  for (int level = 0; level < kLevelCount; ++level) {
    stops[static_cast<std::size_t>(level)] = StopsOf(level);
  }
  return stops;
}();

class SectionReader {
 public:
  // `other`: of another release, or null; `collects`: whether sections are to be taken, which
  // needs level 0.
  SectionReader(LevelBase& list, std::string_view text, std::int32_t level,
                const FileSections* other = nullptr, bool collects = false)
      : list_(list),
        text_(text),
        level_(level),
        stops_(kStops[static_cast<std::size_t>(level)]),
        other_(other),
        collects_(collects) {}

  // Takes one line that is a section or a property. The section before a topmost line must have
  // been ended.
  void Take(const LineWalker& line) {
    if (line.level() == level_) {
      list_.AddAsRead(WithoutTabs(line.line(), storage_), line.type());
      BeginSection(line);
      is_read_ = true;
    } else {
      has_contents_ = true;
      if (MaySetOwner(line.level())) TakePropertyOfOwner(line);
    }
  }

  // Takes the whole section that begins with this line; false where it has to be read line by line.
  bool TakeOver(LineWalker& line) {
    const FileSections::Section* known = NextOfOther();
    const char* const text_end = text_.data() + text_.size();
    if (!known || !Between(line.begin(), text_end).starts_with(known->text)) return false;
    const Element& element = other_->elements->Row(next_of_other_++);
    list_.AddAsRead(element.key.Identity());
    BeginSection(line);
    has_contents_ = !element.unread().empty();
    const auto size = (known + 1)->text.data() - known->text.data();
    line.GoOn(line.begin() + size, level_, known->lines - 1);
    return true;
  }

  // Goes past properties below the one taken last that this reader has no use for.
  void SkipContents(LineWalker& line) {
    if (line.SkipLines(stops_) && MaySetOwner(line.level())) previous_ = {};
  }

  // Ends the last section before `end`.
  void EndSection(const char* end) {
    if (has_contents_) SetContentsOfLast(Between(contents_, end));
    has_contents_ = false;
    if (is_read_ && other_) FollowOther();
    is_read_ = false;
  }

  std::vector<FileSections::Section> TakeSections() {
    if (!sections_.empty()) sections_.back().stands_alone = false;
    return std::move(sections_);
  }

 private:
  void BeginSection(const LineWalker& line) {
    ++count_;
    if (count_ == kSome || count_ == kMany) ReserveForRest(line);
    contents_ = line.end();
    last_type_ = line.type();
    previous_ = {};
    if (!collects_) return;
    if (!sections_.empty()) {
      FileSections::Section& before = sections_.back();
      before.text = Between(before.text.data(), line.end());
      before.lines = line.count() - first_line_;
      if (!before.text.ends_with('\n')) before.stands_alone = false;  // the header might go on
    }
    first_line_ = line.count();
    sections_.push_back({Between(line.begin(), line.end()), 0, true});
  }

  // A list would be moved as often as it grows, and what it leaves behind is of little use. How
  // many elements there will be is a guess, so not much is staked on it, the less the earlier.
  void ReserveForRest(const LineWalker& line) {
    const auto read = static_cast<std::size_t>(line.end() - text_.data());
    const std::size_t guess = count_ + (text_.size() - read) / (read / count_) * 17 / 16;
    const std::size_t most = count_ == kSome ? kMany : text_.size() / kFewestBytes;
    const std::size_t size = std::min(guess, most);
    list_.ElementArray()->Reserve(size);
    if (collects_) sections_.reserve(size);
  }

  // Lines below a property, which can have a value, are read at once; hardly any report has them.
  void SetContentsOfLast(std::string_view lines) {
    ElementTable& elements = *list_.ElementArray();
    if (last_type_ == bxltSection) {
      elements.SetUnread(elements.rows(), lines);
    } else {
      list_.LastElement()->ReadLines(lines);
    }
  }

  // True where properties of this level may set what the list's elements have.
  bool MaySetOwner(std::int32_t level) const { return OwnerLevelOf(level) == level_; }

  const FileSections::Section* NextOfOther() const {
    const auto place = static_cast<std::size_t>(next_of_other_) - 1;
    if (!other_ || place >= other_->sections.size()) return nullptr;
    const FileSections::Section& section = other_->sections[place];
    return section.stands_alone ? &section : nullptr;
  }

  void FollowOther() {
    const Ref<ElementTable> elements = list_.ElementArray();
    const ElementKey& last = elements->Row(elements->rows()).key;
    other_->elements->Contains(last.Identity(), next_of_other_);
  }

  void TakePropertyOfOwner(const LineWalker& line) {
    const std::string_view previous = std::exchange(previous_, line.line());
    if (line.type() != bxltProperty || !MayBeOwnerProperty(line.level(), line.line().front())) {
      return;
    }
    const std::string_view text = WithoutTabs(line.line(), storage_);
    const OwnerProperty* found = FindOwnerProperty(line.level(), NameOfProperty(text));
    if (!found) return;
    std::string storage;
    if (DependsOnPrevious(*found) &&
        !SetsOwnerBehind(*found, NameOfProperty(WithoutTabs(previous, storage)))) {
      return;
    }
    const Ref<ElementTable> elements = list_.ElementArray();
    TextPool& pool = elements->pool();
    const Symbol value = pool.Intern(ValueOfProperty(text));
    const std::int32_t row =
        owner_fields_.Set(elements, OwnerOf(*found, pool), found->field, value);
    if (collects_ && row != elements->rows()) NoteReach(row);
  }

  Symbol OwnerOf(const OwnerProperty& property, TextPool& pool) {
    Symbol& owner = owners_[static_cast<std::size_t>(&property - kOwnerProperties)];
    if (owner == Symbol::kEmpty) owner = pool.Intern(property.owner);
    return owner;
  }

  // The last section has a property that belongs to the one of row `row`, 0 for none.
  void NoteReach(std::int32_t row) {
    sections_.back().stands_alone = false;
    if (row != 0) sections_[static_cast<std::size_t>(row) - 1].stands_alone = false;
  }

  static constexpr std::size_t kSome = 128;
  static constexpr std::size_t kMany = 4096;
  static constexpr std::size_t kFewestBytes = 16;

  LevelBase& list_;
  const std::string_view text_;
  const std::int32_t level_;
  const FirstLetters& stops_;
  const FileSections* other_;
  const bool collects_;
  std::int32_t next_of_other_ = 1;
  std::size_t count_ = 0;  // of elements
  OwnerFields owner_fields_;
  std::array<Symbol, std::size(kOwnerProperties)> owners_{};  // as far as there were properties
  std::vector<FileSections::Section> sections_;
  std::int64_t first_line_ = 0;  // of the last one
  bool is_read_ = false;         // the last one, line by line
  BXLineType last_type_ = bxltUnknown;
  const char* contents_ = nullptr;
  bool has_contents_ = false;
  std::string_view previous_;  // the line before among those that may be such properties
  std::string storage_;
};

// False when the text is not well nested or has lines with a status.
bool ReadLines(LineWalker& line, std::int32_t level, SectionReader& reader,
               const EngineContext* context) {
  NestingCheck nesting(level);
  while (line.Next()) {
    if (context) context->Yield();
    if (!nesting.Takes(line)) return false;
    if (line.type() == bxltUnknown) continue;
    if (line.level() == level) {
      reader.EndSection(line.begin());
      if (reader.TakeOver(line)) continue;
    }
    if (MayHaveStatus(line.line())) return false;
    reader.Take(line);
    if (line.type() == bxltProperty && line.level() > level) reader.SkipContents(line);
  }
  reader.EndSection(line.end());
  return true;
}

}  // namespace

void ReadSection(LevelBase& list, std::string_view text) {
  const std::int32_t level = list.ClassNumber();
  LineWalker line(text, level == 0 ? 0 : level - 1);
  SectionReader reader(list, text, level);
  ReadLines(line, level, reader, nullptr);
}

std::int32_t ReadReportText(LevelBase& list, std::string_view text, const EngineContext& context,
                            std::int64_t& line_count, FileSections* sections) {
  LineWalker line(text, 0);
  const bool collects = sections && !sections->elements;
  SectionReader reader(list, text, 0, collects ? nullptr : sections, collects);
  if (!ReadLines(line, 0, reader, &context)) return -1;
  if (collects) *sections = {list.ElementArray(), reader.TakeSections()};
  line_count = line.count();
  return line.level();
}

}  // namespace tessary
