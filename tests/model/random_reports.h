#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "model_tree.h"

// Seeded random input for property tests. Everything is repeatable from the seed on every system.

namespace tessary::model {

using Lines = std::vector<std::string>;

// Sanitizers look at memory, not at agreement, and are slow, and the systems do not differ here:
// only the plain build of the system that builds gets all rounds.
#ifdef TESSARY_FEWER_ROUNDS
inline constexpr int kRoundsPart = 10;
#else
inline constexpr int kRoundsPart = 1;
#endif

// The seed of this run: the environment's TESSARY_SEED, else a fixed number. Tests print it.
std::uint64_t Seed();

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  // 0 to count - 1; `count` must be positive.
  int Below(int count);
  bool Chance(int percent) { return Below(100) < percent; }
  const std::string& Pick(const Lines& texts);

 private:
  std::mt19937_64 engine_;
};

// A report of at most about `max_lines` lines (open blocks are still closed behind them). Mostly
// well-formed and down to all ten levels, sometimes with braces too many or too few.
Lines RandomReport(Random& random, int max_lines);

// `report` after some changes, as a vendor makes a new version or a customer a copy: elements and
// single lines deleted, inserted, moved, doubled, their values and the case of their letters
// changed.
Lines Changed(Random& random, const Lines& report, int changes);

// A difference file that nobody's comparison wrote: a random report, most of whose lines have a
// random description, with neighbours and keys that occur in random reports.
Lines RandomDiffFile(Random& random, int max_lines);

// Single lines: any mixture of the characters that mean something; difference lines, some damaged.
std::string RandomLine(Random& random);
std::string RandomDiffLine(Random& random);

// A row of few distinct texts, with unknown status and without child; and an array of such rows, in
// which equal and partly equal rows are common.
Row RandomRow(Random& random);
Array RandomRows(Random& random, int count);

// The lines that open a report so far that the next line stands at `level`, 0 to 9; nothing needs
// to be closed.
Lines OpenTo(int level);

// Calls `visit` with every sequence of at most `max_lines` lines out of `alphabet`, the empty one
// first.
void ForEachReport(const Lines& alphabet, int max_lines,
                   const std::function<void(const Lines&)>& visit);
// Lines that reach the rules of the top levels; and of a list at `level` 3, 5 or 7 behind
// OpenTo(level).
const Lines& TinyAlphabet();
Lines TinyAlphabetAt(int level);

// The lines as one text, each with a line feed; for messages.
std::string Text(const Lines& lines);

}  // namespace tessary::model
