// Long random runs of changes and searches: the array is held against a plain vector, its searches
// against a literal narrowing.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "engine/element_table.h"
#include "model/model_find.h"
#include "model/model_tree.h"
#include "support/engine_fixture.h"

namespace tessary {
namespace {

constexpr model::Field kTexts[] = {
    &model::Row::name,     &model::Row::key,      &model::Row::typ,       &model::Row::prev_name,
    &model::Row::prev_key, &model::Row::prev_typ, &model::Row::next_name, &model::Row::next_key,
    &model::Row::next_typ, &model::Row::pos_nr};

struct RunKind {
  const char* name;
  unsigned identities;  // number of different keys: few give large groups of equal elements
  unsigned places;      // number of different texts of a position column
  std::size_t rows;     // the size around which the run stays
  int steps;
  unsigned seeds;
};

void PrintTo(const RunKind& kind, std::ostream* out) { *out << kind.name; }

class RandomRun {
 public:
  RandomRun(const RunKind& kind, unsigned seed) : kind_(kind), random_(seed) {
    while (rows_->size() < kind_.rows) InsertAt(rows_->size());
  }

  // A row like many others, its name in any case.
  model::Row AnyRow() {
    model::Row row;
    row.status = Number(4);
    row.name = AnyOf({"A", "a", "[Line]", "[LINE]", "Ä", "ä", ""});
    row.key = Number(3) == 0 ? AnyOf({"K", "k", ""}) : std::to_string(Number(kind_.identities));
    row.typ = AnyOf({"", "", "", "T", "t"});
    for (const model::Field field :
         {&model::Row::prev_name, &model::Row::prev_key, &model::Row::prev_typ,
          &model::Row::next_name, &model::Row::next_key, &model::Row::next_typ,
          &model::Row::pos_nr}) {
      row.*field = AnyPlace();
    }
    row.value = std::to_string(random_());
    return row;
  }

  void Step() {
    const unsigned choice = Number(1000);
    if (choice < 500) return ExpectFind();
    if (choice < 560) return ExpectFindName();
    if (choice < 690) return InsertAt(rows_->size());
    if (choice < 740) return InsertAt(Number(rows_->size() + 1));
    if (rows_->empty()) return;
    if (choice < 900) return Number(2) == 0 ? DeleteAt(Row()) : ChangePosition();
    if (choice < 930) return ChangeRest();
    if (choice < 935) return ChangeIdentity();
    if (choice < 960 && rows_->size() > kind_.rows) return DeleteRun();
    if (choice < 960) return table_->Settle();
    if (choice < 966) return table_->SettleManyChanges();
    if (choice < 968) return Sort();
    if (choice < 970) return DeleteSome();
    if (choice == 970) DeleteEverything();
  }

  void ExpectSame() const { ASSERT_EQ(Dump(table_), model::Dump(rows_)); }

 private:
  unsigned Number(std::size_t below) { return static_cast<unsigned>(random_() % below); }
  std::string AnyOf(std::initializer_list<const char*> texts) {
    return *(texts.begin() + Number(texts.size()));
  }
  std::string AnyPlace() {
    return Number(2) == 0
               ? ""
               : std::string(Number(2) == 0 ? "p" : "P") + std::to_string(Number(kind_.places));
  }
  std::size_t Row() { return Number(rows_->size()); }
  Symbol Intern(const std::string& text) { return engine_.context->pool()->Intern(text); }
  static std::int32_t Count(std::size_t place) { return static_cast<std::int32_t>(place) + 1; }
  auto Place(std::size_t place) { return rows_->begin() + static_cast<std::ptrdiff_t>(place); }

  ElementKey KeyOfRow(const model::Row& row) {
    ElementKey key;
    for (int column = bxeaName; column <= bxeaPosNr; ++column) {
      key[static_cast<BXElementArray>(column)] = Intern(row.*kTexts[column - bxeaName]);
    }
    return key;
  }

  void ExpectFind() {
    model::Row wanted = AnyRow();
    if (!rows_->empty() && Number(4) != 0) wanted = (*rows_)[Row()];
    for (int changes = static_cast<int>(Number(3)); changes > 0; --changes) {
      wanted.*kTexts[3 + Number(7)] = AnyPlace();
    }
    ASSERT_EQ(table_->Find(KeyOfRow(wanted)), model::FindElement(rows_, wanted));
    if (Number(3) != 0) return;
    const model::Row identity = model::Identity(wanted.name, wanted.key, wanted.typ);
    ASSERT_EQ(table_->Find(KeyOfRow(wanted).Identity()), model::FindElement(rows_, identity));
  }

  void ExpectFindName() {
    const std::string name = AnyOf({"A", "a", "[line]", "ä", "", "none"});
    ASSERT_EQ(table_->FindName(Intern(name)), model::FirstNamed(rows_, name));
  }

  void InsertAt(std::size_t place) {
    const model::Row row = AnyRow();
    Element element;
    element.key = KeyOfRow(row);
    element.status = static_cast<std::int8_t>(row.status);
    element.set_value(engine_.context->pool()->Keep(row.value));
    if (place == rows_->size() && Number(2) == 0) {
      table_->Append(std::move(element));
    } else {
      table_->Insert(Count(place), std::move(element));
    }
    rows_->insert(Place(place), row);
  }

  void DeleteAt(std::size_t place) {
    table_->Delete(Count(place));
    rows_->erase(Place(place));
  }

  void DeleteRun() {
    const std::size_t first = Row();
    for (unsigned n = Number(40); n > 0 && first < rows_->size(); --n) DeleteAt(first);
  }

  void ChangePosition() { ChangeText(3 + Number(7), AnyPlace()); }
  void ChangeIdentity() { ChangeText(1, std::to_string(Number(kind_.identities))); }
  void ChangeText(std::size_t field, const std::string& text) {
    const std::size_t place = Row();
    table_->SetText(Count(place), static_cast<BXElementArray>(field + bxeaName), Intern(text));
    (*rows_)[place].*kTexts[field] = text;
  }

  void ChangeRest() {
    const std::size_t place = Row();
    model::Row& row = (*rows_)[place];
    row.value = std::to_string(random_());
    table_->SetValue(Count(place), row.value);
    row.status = static_cast<int>(Number(4));
    table_->SetStatus(Count(place), static_cast<BXStatus>(row.status));
  }

  void Sort() {
    table_->SortByStatus();
    std::stable_sort(rows_->begin(), rows_->end(),
                     [](const model::Row& a, const model::Row& b) { return a.status < b.status; });
  }

  void DeleteSome() {
    std::vector<std::uint8_t> marked(rows_->size());
    for (auto& mark : marked) mark = Number(50) == 0;
    table_->DeleteMarked(marked);
    std::size_t place = 0;
    std::erase_if(*rows_, [&](const model::Row&) { return marked[place++] != 0; });
  }

  void DeleteEverything() {
    table_->DeleteAll();
    rows_->clear();
    for (std::size_t n = 0; n < kind_.rows; ++n) InsertAt(n);
  }

  const RunKind& kind_;
  std::mt19937 random_;
  TestEngine engine_;
  Ref<ElementTable> table_ = MakeRef<ElementTable>(engine_.context->pool());
  model::Array rows_ = std::make_shared<model::Rows>();
};

class ElementTableRandomTest : public testing::TestWithParam<RunKind> {};

TEST_P(ElementTableRandomTest, AgreesWithAVectorAndALiteralNarrowing) {
  for (unsigned seed = 1; seed <= GetParam().seeds; ++seed) {
    SCOPED_TRACE(seed);
    RandomRun run(GetParam(), seed);
    for (int step = 0; step < GetParam().steps; ++step) {
      ASSERT_NO_FATAL_FAILURE(run.Step()) << "step " << step;
      if (HasFatalFailure()) return;
      if (step % 200 == 0) run.ExpectSame();
      if (HasFatalFailure()) return;
    }
    run.ExpectSame();
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ElementTableRandomTest,
                         testing::Values(RunKind{"tiny", 2, 2, 4, 2000, 2},
                                         RunKind{"scanned", 3, 2, 12, 2000, 2},
                                         RunKind{"small", 5, 2, 40, 2000, 2},
                                         RunKind{"fewGroups", 2, 3, 300, 1000, 2},
                                         RunKind{"oneGroup", 1, 2, 200, 1000, 1},
                                         RunKind{"manyGroups", 500, 4, 600, 1000, 1},
                                         RunKind{"large", 40, 3, 2000, 600, 1},
                                         RunKind{"largeDistinct", 100'000, 9, 2000, 400, 1}),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace tessary
