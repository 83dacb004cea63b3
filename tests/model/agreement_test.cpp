// The engine against the slow second opinion: whatever is read, compared, written and applied
// must come out the same, down to every position column, and fail with the same number.

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <string>

#include "model/model_compare.h"
#include "model/model_convert.h"
#include "model/model_find.h"
#include "model/model_report.h"
#include "model/random_reports.h"
#include "platform/failure.h"
#include "support/engine_trees.h"

namespace tessary {
namespace {

using model::Lines;

// What a piece of work comes to, as text: its result, or the number of the failure that ended it.
std::string Outcome(const std::function<std::string()>& work) {
  try {
    return work();
  } catch (const Failure& failure) {
    return "failure " + std::to_string(failure.number());
  }
}

std::string JoinLines(const Lines& lines) { return model::Text(lines); }

std::string EngineRead(const Lines& lines) {
  const TestEngine engine;
  return Outcome([&] { return Dump(ReadLines(engine.context, lines)); });
}

std::string ModelRead(const Lines& lines) {
  return Outcome([&] { return model::Dump(model::ReadLines(lines)); });
}

std::string EngineRoundTrip(const Lines& lines) {
  const TestEngine engine;
  return Outcome(
      [&] { return JoinLines(WriteLines(engine.context, ReadLines(engine.context, lines))); });
}

std::string ModelRoundTrip(const Lines& lines) {
  return Outcome([&] { return JoinLines(model::WriteLines(model::ReadLines(lines))); });
}

// The difference tree, the lines it is written as, and what is left of both inputs.
std::string EngineCompare(const Lines& old_lines, const Lines& new_lines, Lines* difference) {
  const TestEngine engine;
  return Outcome([&] {
    const auto old_tree = ReadLines(engine.context, old_lines);
    const auto new_tree = ReadLines(engine.context, new_lines);
    const auto level = engine.NewLevel(0);
    level->Compare(old_tree, new_tree);
    std::string text = Dump(level->ElementArray());
    *difference = WriteLines(engine.context, level->ElementArray());
    return text + "--\n" + JoinLines(*difference) + "--\n" + Dump(old_tree) + "--\n" +
           Dump(new_tree);
  });
}

std::string ModelCompare(const Lines& old_lines, const Lines& new_lines, Lines* difference) {
  return Outcome([&] {
    const auto old_tree = model::ReadLines(old_lines);
    const auto new_tree = model::ReadLines(new_lines);
    model::Level level(0);
    model::Compare(level, old_tree, new_tree);
    std::string text = model::Dump(level.rows);
    *difference = model::WriteLines(level.rows);
    return text + "--\n" + JoinLines(*difference) + "--\n" + model::Dump(old_tree) + "--\n" +
           model::Dump(new_tree);
  });
}

std::string EngineConvert(const Lines& report, const Lines& difference) {
  const TestEngine engine;
  return Outcome([&] {
    const auto report_tree = ReadLines(engine.context, report);
    const auto diff_tree = ReadLines(engine.context, difference);
    engine.NewLevel(0)->Convert(report_tree, diff_tree);
    std::string text = Dump(report_tree);
    return text + "--\n" + JoinLines(WriteLines(engine.context, report_tree));
  });
}

std::string ModelConvert(const Lines& report, const Lines& difference) {
  return Outcome([&] {
    const auto report_tree = model::ReadLines(report);
    const auto diff_tree = model::ReadLines(difference);
    model::ConvertReport(report_tree, diff_tree);
    std::string text = model::Dump(report_tree);
    return text + "--\n" + JoinLines(model::WriteLines(report_tree));
  });
}

void ExpectSameReading(const Lines& lines) {
  EXPECT_EQ(EngineRead(lines), ModelRead(lines)) << JoinLines(lines);
  EXPECT_EQ(EngineRoundTrip(lines), ModelRoundTrip(lines)) << JoinLines(lines);
}

// Both passes with one pair of versions and one customer's copy.
void ExpectSamePasses(const Lines& old_lines, const Lines& new_lines, const Lines& customer) {
  Lines engine_difference;
  Lines model_difference;
  ASSERT_EQ(EngineCompare(old_lines, new_lines, &engine_difference),
            ModelCompare(old_lines, new_lines, &model_difference))
      << "old:\n"
      << JoinLines(old_lines) << "new:\n"
      << JoinLines(new_lines);
  ASSERT_EQ(EngineConvert(customer, engine_difference), ModelConvert(customer, engine_difference))
      << "report:\n"
      << JoinLines(customer) << "difference:\n"
      << JoinLines(engine_difference);
}

// Sanitizers look at memory, not at agreement, and are slow: they get a part of the rounds.
#ifdef __SANITIZE_ADDRESS__
constexpr int kRoundsPart = 10;
#else
constexpr int kRoundsPart = 1;
#endif

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
    ASSERT_EQ(EngineConvert(report, difference), ModelConvert(report, difference))
        << "report:\n"
        << JoinLines(report) << "difference:\n"
        << JoinLines(difference);
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
    for (const Lines& old_lines : reports) {
      for (const Lines& new_lines : reports) {
        if (!HasFailure()) ExpectSamePasses(old_lines, new_lines, old_lines);
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
