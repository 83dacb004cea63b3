#include "random_reports.h"

#include <algorithm>
#include <cstdlib>

#include "model_diff_text.h"
#include "platform/text.h"

namespace tessary::model {
namespace {

const Lines kValues = {"1",     "2",        "3",   "10",     "Rechnung",  "Straße Süd",
                       "äöü",   "ÄÖÜ",      "a;b", "x:y",    "f(x)",      "=A",
                       "[x]",   "",         " ",   " Blank", "Blank  ",   "Total",
                       "TOTAL", "@Total;1", "U;1", "(a;b",   "Key=PosNr="};
const Lines kKeys = {"1", "2", "3", "1", "2", "Netto", "netto", "Größe", "x:y", "a;b", "", ")"};
const Lines kVariables = {"@Total", "@Netto", "@total", " @Größe ", "Total", "", "@"};
const Lines kPlainNames = {"Width", "Height",      "width", "Font",
                           "Foo",   "Überschrift", "[Half", "A:B"};

// What is common at each level besides the plain names.
const Lines kNames[10] = {
    {"Late"},
    {"ObjectName", "LinkID", "Visible", "visible", "LayerID", "User", "Sum", "linkid"},
    {"Para", "Visible", "LayerID"},
    {"Rows", "Text"},
    {"Text", "TEXT", "Style"},
    {"Rows", "LineID"},
    {"LineID", "lineid", "Style"},
    {"Columns", "columns", "Rows"},
    {"Text", "Style"},
    {"Contents", "Text"},
};
const Lines kSections[10] = {
    {"[Object]", "[Object]", "[Object]", "[Layer]", "[layer]", "[UserSection]", "[Übersicht]"},
    {"[@Lines]", "[@lines]"},
    {"[Lines]", "[Lines]", "[Para]", "[Tabelle]"},
    {"[Line]", "[Line]", "[line]", "[Other]"},
    {"[Para]", "[Cells]", "[]"},
    {"[Line]", "[Line]", "[line]", "[Other]"},
    {"[Cols]", "[Para]"},
    {"[Column]", "[Column]", "[column]", "[Other]"},
    {"[Inner]", "[Cells]"},
    {"[Deep]", "[Line]"},
};

const Lines& At(const Lines (&table)[10], int level) {
  return table[static_cast<std::size_t>(std::clamp(level, 0, 9))];
}

std::string RandomProperty(Random& random, int level) {
  const std::string name =
      random.Chance(60) ? random.Pick(At(kNames, level)) : random.Pick(kPlainNames);
  if (random.Chance(4)) return name;
  const bool is_variable = name == "User" || name == "Sum";
  if (is_variable && random.Chance(90)) {
    const std::string number = std::to_string(1 + random.Below(9));
    const std::string variable = random.Pick(kVariables);
    return name + number + "=" + variable + ";" + random.Pick(kValues);
  }
  const std::string equals = random.Chance(5) ? " = " : "=";
  return name + equals + random.Pick(kValues);
}

std::string RandomSection(Random& random, int level) { return random.Pick(At(kSections, level)); }

// Writes a report from the top down, every level with what its rules look for.
class Writer {
 public:
  Writer(Random& random, int max_lines) : random_(random), limit_(max_lines) {}

  Lines Report() {
    if (random_.Chance(25)) {
      LongRun();
    } else {
      while (!Full() && !random_.Chance(5)) TopSection();
    }
    return lines_;
  }

  // One element and, mostly, what is below it.
  void Element(int level) {
    if (random_.Chance(level == 1 ? 15 : 50)) {
      Section(RandomSection(random_, level), level);
    } else {
      Put(RandomProperty(random_, level));
      if (level > 0 && random_.Chance(8)) Block(level + 1);
    }
  }

  const Lines& lines() const { return lines_; }

 private:
  bool Full() const { return static_cast<int>(lines_.size()) >= limit_; }

  void Put(const std::string& line) {
    const int style = random_.Below(40);
    lines_.push_back(style == 0 ? "\t" + line : style == 1 ? "  " + line + " \t" : line);
    if (random_.Chance(1)) lines_.push_back(" \t");
  }

  void TopSection() {
    Put(RandomSection(random_, 0));
    Elements(1, random_.Below(6));
  }

  void Section(const std::string& header, int level) {
    Put(header);
    if (level > 0 && !Full() && random_.Chance(80)) Block(level + 1);
  }

  void Block(int level) {
    Put("{");
    Opening(level);
    if (level >= 3 && level % 2 == 1 && random_.Chance(60)) Run(level, random_.Below(5));
    if (level <= 10) Elements(level, random_.Below(level < 3 ? 4 : 3));
    Put("}");
  }

  void Elements(int level, int count) {
    for (int n = 0; n < count && !Full(); ++n) Element(level);
  }

  // The property that names the owner or counts what follows.
  void Opening(int level) {
    const Lines names[10] = {{}, {},         {},          {},       {"Text"},
                             {}, {"LineID"}, {"Columns"}, {"Text"}, {"Contents"}};
    if (level > 9 || At(names, level).empty() || random_.Chance(30)) return;
    Put(At(names, level).front() + "=" + random_.Pick(kKeys));
  }

  void Run(int level, int count) {
    const std::string header = level == 7 ? "[Column]" : "[Line]";
    for (int n = 0; n < count && !Full(); ++n) Section(header, level);
  }

  // A short way down and then many lines or columns that differ in little.
  void LongRun() {
    const int level = 3 + 2 * random_.Below(3);
    for (const std::string& line : OpenTo(level)) Put(line);
    Opening(level);
    while (!Full() && !random_.Chance(4)) {
      Put(level == 7 ? "[Column]" : "[Line]");
      if (random_.Chance(10)) continue;
      Put("{");
      Opening(level + 1);
      Elements(level + 1, random_.Below(2));
      Put("}");
    }
    for (int open = level; open > 1; --open) Put("}");
    if (random_.Chance(50)) TopSection();
  }

  Random& random_;
  int limit_;
  Lines lines_;
};

std::size_t AnyPlace(Random& random, std::size_t size) {
  return static_cast<std::size_t>(random.Below(static_cast<int>(size)));
}

void DamageBraces(Random& random, Lines& lines) {
  for (int n = 1 + random.Below(2); n > 0; --n) {
    const auto at = lines.begin() + random.Below(static_cast<int>(lines.size()) + 1);
    if (random.Chance(50)) {
      lines.insert(at, random.Chance(50) ? "{" : "}");
    } else if (at != lines.end() && (*at == "{" || *at == "}")) {
      lines.erase(at);
    }
  }
}

bool IsTopSection(const std::string& line) {
  return IsSectionLine(line) && !EqualsIgnoreCase(line, "[@Lines]");
}

// How many blocks are open before each line, and at the end.
std::vector<int> Depths(const Lines& lines) {
  std::vector<int> depths = {0};
  for (const std::string& line : lines) {
    depths.push_back(depths.back() + (line == "{") - (line == "}"));
  }
  return depths;
}

// Behind the element that begins at `first`: its block, or a top section up to the next one.
std::size_t ElementEnd(const Lines& lines, std::size_t first) {
  const std::vector<int> depths = Depths(lines);
  std::size_t end = first + 1;
  if (depths[first] == 0 && IsTopSection(lines[first])) {
    while (end < lines.size() && !(depths[end] == 0 && IsTopSection(lines[end]))) ++end;
  } else if (end < lines.size() && lines[end] == "{") {
    while (end < lines.size() && depths[end + 1] > depths[first]) ++end;
    end = std::min(end + 1, lines.size());
  }
  return end;
}

// Not a brace, unless there is nothing else near.
std::size_t AnyElement(Random& random, const Lines& lines) {
  std::size_t at = AnyPlace(random, lines.size());
  while (at > 0 && (lines[at] == "{" || lines[at] == "}")) --at;
  return at;
}

std::ptrdiff_t Offset(std::size_t place) { return static_cast<std::ptrdiff_t>(place); }

Lines CutElement(Lines& lines, std::size_t first) {
  const auto begin = lines.begin() + Offset(first);
  const auto end = lines.begin() + Offset(ElementEnd(lines, first));
  Lines element(begin, end);
  lines.erase(begin, end);
  return element;
}

// True where an element may stand: top sections between top sections, the rest behind the first
// one.
bool FitsAt(const Lines& lines, std::size_t at, const Lines& element, int depth) {
  if (at < lines.size() && lines[at] == "{") return false;
  if (depth > 0) return true;
  if (element.empty() || !IsTopSection(element.front())) return at > 0;
  return at == lines.size() || IsTopSection(lines[at]);
}

// Puts `element` before another one that lies equally deep, if there is any.
void InsertNear(Random& random, Lines& lines, const Lines& element, int depth) {
  const std::vector<int> depths = Depths(lines);
  std::vector<std::size_t> places;
  for (std::size_t at = 0; at <= lines.size(); ++at) {
    if (depths[at] == depth && FitsAt(lines, at, element, depth)) places.push_back(at);
  }
  const std::size_t place = places.empty() ? lines.size() : places[AnyPlace(random, places.size())];
  lines.insert(lines.begin() + Offset(place), element.begin(), element.end());
}

void MoveElement(Random& random, Lines& lines, bool keep) {
  const std::size_t first = AnyElement(random, lines);
  const int depth = Depths(lines)[first];
  Lines source = lines;
  const Lines element = CutElement(source, first);
  if (!keep) lines = source;
  InsertNear(random, lines, element, depth);
}

// Plain properties lie one level deeper than the blocks around them.
void InsertNewElement(Random& random, Lines& lines) {
  const std::size_t at = AnyPlace(random, lines.size() + 1);
  const int depth = Depths(lines)[at];
  Writer writer(random, 6);
  writer.Element(depth <= 0 && random.Chance(20) ? 0 : std::clamp(depth + 1, 1, 9));
  InsertNear(random, lines, writer.lines(), depth);
}

void ChangeValue(Random& random, std::string& line) {
  const Halves halves = SplitOnce(line, '=');
  if (halves.both) line = halves.first + "=" + random.Pick(kValues);
}

// Letters of ASCII and the umlauts of the code page.
void SwapCase(std::string& line) {
  unsigned char before = 0;
  for (char& c : line) {
    const auto byte = static_cast<unsigned char>(c);
    const bool ascii = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    const unsigned char low = byte & 0x1F;
    const bool umlaut = before == 0xC3 && low != 0x17 && low != 0x1F;
    if (ascii || umlaut) c = static_cast<char>(byte ^ 0x20);
    before = byte;
  }
}

void SwapCaseOfElement(Random& random, Lines& lines, std::size_t first) {
  const std::size_t end = random.Chance(50) ? first + 1 : ElementEnd(lines, first);
  for (std::size_t at = first; at < end; ++at) SwapCase(lines[at]);
}

void ChangeOnce(Random& random, Lines& lines) {
  const int change = random.Below(100);
  if (lines.empty() || change < 20) return InsertNewElement(random, lines);
  const std::size_t at = AnyElement(random, lines);
  if (change < 40) {
    CutElement(lines, at);
  } else if (change < 60) {
    ChangeValue(random, lines[at]);
  } else if (change < 70) {
    SwapCaseOfElement(random, lines, at);
  } else if (change < 84) {
    MoveElement(random, lines, false);
  } else if (change < 95) {
    MoveElement(random, lines, true);
  } else if (lines[at] != "{" && lines[at] != "}") {
    lines.erase(lines.begin() + Offset(at));
  }
}

std::string NameOfRandomElement(Random& random) {
  const int level = random.Below(10);
  if (random.Chance(40)) return RandomSection(random, level);
  return random.Chance(50) ? random.Pick(At(kNames, level)) : random.Pick(kPlainNames);
}

// Mostly empty or a small number; rarely something that is no number.
std::string RandomPosNr(Random& random) {
  const Lines numbers = {"", "", "", "1", "2", "3", "4", "0", "-1", "1,5", " "};
  return random.Chance(1) ? "x" : random.Pick(numbers);
}

Row RandomDescription(Random& random) {
  Row element;
  element.status = random.Below(3);
  const auto text = [&] { return random.Chance(40) ? std::string() : random.Pick(kKeys); };
  const auto name = [&] { return random.Chance(40) ? std::string() : NameOfRandomElement(random); };
  element.key = text();
  element.typ = random.Chance(80) ? "" : text();
  element.prev_name = name();
  element.prev_key = random.Chance(50) ? element.prev_name : text();
  element.prev_typ = random.Chance(80) ? "" : text();
  element.next_name = name();
  element.next_key = random.Chance(50) ? element.next_name : text();
  element.next_typ = random.Chance(80) ? "" : text();
  element.pos_nr = RandomPosNr(random);
  return element;
}

// One piece put in, or one byte taken out.
void DamageLine(Random& random, std::string& line) {
  const Lines pieces = {":", ";", "(", ")", "=", " ", "Key=", "keY=", "X", "N", "\t"};
  const std::size_t at = AnyPlace(random, line.size() + 1);
  if (random.Chance(60) || at == line.size()) {
    line.insert(at, random.Pick(pieces));
  } else if (static_cast<unsigned char>(line[at]) < 0x80) {
    line.erase(at, 1);
  }
}

void ForEachLonger(const Lines& alphabet, int more, Lines& lines,
                   const std::function<void(const Lines&)>& visit) {
  visit(lines);
  if (more == 0) return;
  for (const std::string& line : alphabet) {
    lines.push_back(line);
    ForEachLonger(alphabet, more - 1, lines, visit);
    lines.pop_back();
  }
}

}  // namespace

std::uint64_t Seed() {
  const char* text = std::getenv("TESSARY_SEED");
  return text == nullptr || *text == '\0' ? 20240611u : std::strtoull(text, nullptr, 10);
}

// Not one of the library's distributions: these differ from system to system.
int Random::Below(int count) {
  return static_cast<int>(engine_() % static_cast<std::uint64_t>(count));
}

const std::string& Random::Pick(const Lines& texts) {
  return texts[static_cast<std::size_t>(Below(static_cast<int>(texts.size())))];
}

Lines RandomReport(Random& random, int max_lines) {
  Lines lines = Writer(random, max_lines).Report();
  if (random.Chance(12)) DamageBraces(random, lines);
  return lines;
}

Lines Changed(Random& random, const Lines& report, int changes) {
  Lines lines = report;
  for (int n = 0; n < changes; ++n) ChangeOnce(random, lines);
  return lines;
}

Lines RandomDiffFile(Random& random, int max_lines) {
  Lines lines = RandomReport(random, max_lines);
  for (std::string& line : lines) {
    if (line == "{" || line == "}" || random.Chance(25)) continue;
    line = random.Chance(5) ? "U;" + line : ElementToDiffText(RandomDescription(random)) + line;
  }
  return lines;
}

std::string RandomLine(Random& random) {
  const Lines pieces = {
      "[",    "]",      "{",          "}",      "=",    ";",      ":",       "(",   ")",  " ",
      "\t",   "User",   "user",       "Sum",    "12",   "3",      "-1",      "1,5", "e3", "@x",
      "@",    "N",      "D",          "U",      "n",    "Ä",      "ä",       "ß",   "€",  "Line",
      "Key=", "PosNr=", "ObjectName", "LinkID", "Text", "[Line]", "[@Lines]"};
  std::string line;
  for (int n = random.Below(7); n > 0; --n) line += random.Pick(pieces);
  return line;
}

std::string RandomDiffLine(Random& random) {
  Row element = RandomDescription(random);
  element.name = NameOfRandomElement(random);
  if (random.Chance(15)) element.key = "KEY=x Key= ";
  std::string line = ElementToDiffText(element);
  if (random.Chance(10)) line = random.Pick({"D;", "N ;", " U; ", "n;", "X;", ";", "u(Key=);"});
  line += random.Chance(50) ? RandomProperty(random, random.Below(10)) : element.name;
  while (random.Chance(30)) DamageLine(random, line);
  return line;
}

Row RandomRow(Random& random) {
  const Lines names = {"A", "a", "A", "B", "[Line]", "Ä", "ä", ""};
  const Lines keys = {"", "1", "2", "k", "K"};
  const Lines few = {"", "", "A", "a", "1"};
  Row row;
  row.name = random.Pick(names);
  row.key = random.Pick(keys);
  row.typ = random.Chance(70) ? "" : random.Pick(keys);
  for (Field field : {&Row::prev_name, &Row::prev_key, &Row::prev_typ, &Row::next_name,
                      &Row::next_key, &Row::next_typ, &Row::pos_nr, &Row::value}) {
    row.*field = random.Pick(few);
  }
  return row;
}

Array RandomRows(Random& random, int count) {
  const Array rows = std::make_shared<Rows>();
  for (int n = 0; n < count; ++n) rows->push_back(RandomRow(random));
  return rows;
}

Lines OpenTo(int level) {
  Lines lines;
  if (level >= 1) lines.push_back("[Object]");
  if (level >= 2) lines.insert(lines.end(), {"[@Lines]", "{"});
  for (int n = 3; n <= level; ++n) {
    const bool counted = n % 2 == 0 && n > 3;
    lines.insert(lines.end(), {counted ? n == 8 ? "[Column]" : "[Line]" : "[Part]", "{"});
  }
  return lines;
}

void ForEachReport(const Lines& alphabet, int max_lines,
                   const std::function<void(const Lines&)>& visit) {
  Lines lines;
  ForEachLonger(alphabet, max_lines, lines, visit);
}

const Lines& TinyAlphabet() {
  static const Lines lines = {"[Object]", "[@Lines]", "A=1", "a=2", "User1=@A;1", "{", "}"};
  return lines;
}

Lines TinyAlphabetAt(int level) {
  switch (level) {
    case 3:
      return {"[Line]", "[Other]", "Text=1", "Text=2", "{", "}"};
    case 5:
      return {"[Line]", "[Other]", "LineID=1", "LineID=2", "{", "}"};
    default:
      return {"Columns=1", "[Column]", "Text=1", "Text=2", "{", "}"};
  }
}

std::string Text(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace tessary::model
