// The engine against the slow second opinion: whatever is read, compared, written and applied
// must come out the same, down to every position column, and fail with the same number.

#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "engine/element_table.h"
#include "model/model_find.h"
#include "model/random_reports.h"
#include "support/both_engines.h"

namespace tessary {
namespace {

using model::Lines;

std::string JoinLines(const Lines& lines) { return model::Text(lines); }

void ExpectSame(const BothOutcomes& outcomes, const std::string& input) {
  EXPECT_EQ(outcomes.engine, outcomes.model) << input;
}

void ExpectSameReading(const Lines& lines) {
  ExpectSame(ReadByBoth(lines), JoinLines(lines));
  ExpectSame(RoundTripByBoth(lines), JoinLines(lines));
}

void ExpectSameConversion(const Lines& report, const Lines& difference) {
  ExpectSame(ConvertByBoth(report, difference),
             "report:\n" + JoinLines(report) + "difference:\n" + JoinLines(difference));
}

// Both passes with one pair of versions and one customer's copy.
void ExpectSamePasses(const Lines& old_lines, const Lines& new_lines, const Lines& customer) {
  Lines difference;
  ExpectSame(CompareByBoth(old_lines, new_lines, difference),
             "old:\n" + JoinLines(old_lines) + "new:\n" + JoinLines(new_lines));
  ExpectSameConversion(customer, difference);
}

using model::kRoundsPart;

class Agreement : public testing::Test {
 protected:
  Agreement() { std::cout << "TESSARY_SEED=" << model::Seed() << "\n"; }

  model::Random random{model::Seed()};
};

TEST_F(Agreement, RandomReportsAreReadAndWrittenTheSame) {
  for (int round = 0; round < 4000 / kRoundsPart && !HasFailure(); ++round) {
    ExpectSameReading(model::RandomReport(random, 1 + random.Below(120)));
  }
}

TEST_F(Agreement, RandomLinesAreReadAndWrittenTheSame) {
  for (int round = 0; round < 4000 / kRoundsPart && !HasFailure(); ++round) {
    Lines lines;
    for (int count = random.Below(40); count > 0; --count) {
      lines.push_back(random.Chance(50) ? model::RandomLine(random)
                                        : model::RandomDiffLine(random));
    }
    ExpectSameReading(lines);
  }
}

TEST_F(Agreement, BothPassesGiveTheSameOnRandomVersions) {
  for (int round = 0; round < 6000 / kRoundsPart && !HasFailure(); ++round) {
    const Lines old_lines = model::RandomReport(random, 1 + random.Below(100));
    const Lines new_lines = model::Changed(random, old_lines, random.Below(12));
    const Lines customer = model::Changed(random, old_lines, random.Below(12));
    ExpectSamePasses(old_lines, new_lines, customer);
  }
}

TEST_F(Agreement, BothPassesGiveTheSameOnUnrelatedReports) {
  for (int round = 0; round < 2000 / kRoundsPart && !HasFailure(); ++round) {
    ExpectSamePasses(model::RandomReport(random, 60), model::RandomReport(random, 60),
                     model::RandomReport(random, 60));
  }
}

TEST_F(Agreement, LargeReportsGiveTheSame) {
  for (int round = 0; round < 60 / kRoundsPart && !HasFailure(); ++round) {
    const Lines old_lines = model::RandomReport(random, 1200);
    ExpectSamePasses(old_lines, model::Changed(random, old_lines, 150),
                     model::Changed(random, old_lines, 150));
  }
}

TEST_F(Agreement, AnyDifferenceFileIsAppliedTheSame) {
  for (int round = 0; round < 6000 / kRoundsPart && !HasFailure(); ++round) {
    const Lines report = model::RandomReport(random, 1 + random.Below(100));
    const Lines difference = model::RandomDiffFile(random, 1 + random.Below(80));
    ExpectSameConversion(report, difference);
  }
}

TEST_F(Agreement, AllSmallReportsGiveTheSame) {
  std::vector<Lines> reports;
  model::ForEachReport(model::TinyAlphabet(), 2,
                       [&](const Lines& lines) { reports.push_back(lines); });
  model::ForEachReport(model::TinyAlphabet(), kRoundsPart == 1 ? 4 : 3, [&](const Lines& lines) {
    if (!HasFailure()) ExpectSameReading(lines);
  });
  for (const Lines& old_lines : reports) {
    for (const Lines& new_lines : reports) {
      if (!HasFailure()) ExpectSamePasses(old_lines, new_lines, old_lines);
    }
  }
}

TEST_F(Agreement, AllSmallRunsOfLinesAndColumnsGiveTheSame) {
  for (const int level : {3, 5, 7}) {
    std::vector<Lines> reports;
    model::ForEachReport(model::TinyAlphabetAt(level), 2, [&](const Lines& lines) {
      Lines report = model::OpenTo(level);
      report.insert(report.end(), lines.begin(), lines.end());
      reports.push_back(report);
    });
    for (std::size_t old = 0; old < reports.size(); ++old) {
      for (std::size_t n = old % kRoundsPart; n < reports.size(); n += kRoundsPart) {
        if (!HasFailure()) ExpectSamePasses(reports[old], reports[n], reports[old]);
      }
    }
  }
}

Symbol Interned(TextPool& pool, const std::string& text) { return pool.Intern(text); }

ElementKey KeyOf(TextPool& pool, const model::Row& row) {
  ElementKey key(Interned(pool, row.name), Interned(pool, row.key), Interned(pool, row.typ));
  key[bxeaPosPrevName] = Interned(pool, row.prev_name);
  key[bxeaPosPrevKey] = Interned(pool, row.prev_key);
  key[bxeaPosPrevTyp] = Interned(pool, row.prev_typ);
  key[bxeaPosNextName] = Interned(pool, row.next_name);
  key[bxeaPosNextKey] = Interned(pool, row.next_key);
  key[bxeaPosNextTyp] = Interned(pool, row.next_typ);
  key[bxeaPosNr] = Interned(pool, row.pos_nr);
  return key;
}

TEST_F(Agreement, SearchFindsTheSameRow) {
  for (int round = 0; round < 300 / kRoundsPart && !HasFailure(); ++round) {
    const model::Array rows = model::RandomRows(random, random.Below(round % 10 == 0 ? 400 : 40));
    const auto pool = MakeRef<TextPool>();
    const auto table = MakeRef<ElementTable>(pool);
    for (const model::Row& row : *rows) {
      Element element;
      element.key = KeyOf(*pool, row);
      table->Append(element);
    }
    for (int search = 0; search < 60; ++search) {
      const model::Row wanted = model::RandomRow(random);
      ASSERT_EQ(table->Find(KeyOf(*pool, wanted)), model::FindElement(rows, wanted));
      if (rows->empty() || !random.Chance(20)) continue;
      const int gone = 1 + random.Below(static_cast<int>(rows->size()));
      model::EraseRow(rows, gone);
      table->Delete(gone);
    }
  }
}

}  // namespace
}  // namespace tessary
