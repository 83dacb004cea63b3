// Times of the stages that a report goes through, in this process. Each runs on generated reports
// of three shapes and three sizes; "items" are lines of the old report.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/diff_text.h"
#include "engine/element_table.h"
#include "engine/find_element.h"
#include "generated_reports.h"
#include "levels/level_factory.h"
#include "manager/report_io.h"
#include "platform/file_system.h"
#include "platform/message_loop.h"
#include "platform/text.h"
#include "report/line_syntax.h"
#include "report/report_file.h"

namespace tessary {
namespace {

constexpr std::size_t kChanges = 80;

// The reports of one shape and size, as texts and as files that are removed at the end.
class Sample {
 public:
  Sample(Shape shape, std::size_t lines) : reports_(GenerateReports(shape, lines, kChanges)) {
    char name[] = "/tmp/bench_stages_XXXXXX";
    if (!mkdtemp(name)) throw std::runtime_error("no temporary folder");
    folder_ = name;
    Save("/old.lst", reports_.old_report);
    Save("/new.lst", reports_.new_report);
    Save("/customer.lst", reports_.customer_report);
    SharedErrors errors;
    const Ref<EngineContext> context = NewEngineContext(errors, nullptr);
    WriteReport(SystemFiles(), File("/differences"), {context, Differences(context)}, nullptr);
  }
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;
  ~Sample() { std::filesystem::remove_all(folder_); }

  std::string File(const char* name) const { return folder_ + name; }
  Ref<ElementTable> Read(const Ref<EngineContext>& context, const char* name) const {
    return ReadReport(SystemFiles(), context, File(name), nullptr);
  }
  Ref<ElementTable> Differences(const Ref<EngineContext>& context) const {
    const Ref<ElementTable> old_report = Read(context, "/old.lst");
    const Ref<ElementTable> new_report = Read(context, "/new.lst");
    return Compared(context, old_report, new_report);
  }
  static Ref<ElementTable> Compared(const Ref<EngineContext>& context,
                                    const Ref<ElementTable>& old_report,
                                    const Ref<ElementTable>& new_report) {
    const Ref<Level> differences = context->CreateLevel(0);
    differences->Compare(old_report, new_report);
    return differences->ElementArray();
  }
  const std::vector<std::string>& lines() const { return lines_; }
  std::int64_t line_count() const {
    return std::count(reports_.old_report.begin(), reports_.old_report.end(), '\n');
  }
  // The lines of the old report, decoded and without line ends.
  void SplitLines() {
    const std::string text = DecodeWindows1252(reports_.old_report);
    for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
      lines_.push_back(text.substr(at, text.find('\r', at) - at));
    }
  }

 private:
  void Save(const char* name, const std::string& bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
  }

  ReportSet reports_;
  std::string folder_;
  std::vector<std::string> lines_;
};

// The sample of a benchmark's arguments; the last one is kept, since benchmarks come in its order.
const Sample& SampleFor(const benchmark::State& state) {
  static std::unique_ptr<Sample> sample;
  static std::pair<std::int64_t, std::int64_t> arguments = {-1, -1};
  const std::pair wanted = {state.range(0), state.range(1)};
  if (wanted != arguments) {
    sample = std::make_unique<Sample>(static_cast<Shape>(wanted.first),
                                      static_cast<std::size_t>(wanted.second));
    sample->SplitLines();
    arguments = wanted;
  }
  return *sample;
}

// Processor time, since other programs on the machine would count as well otherwise.
double SecondsUsed() {
  timespec time;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Runs a stage on what `prepare` gives it, which is not timed; nor is taking it down.
template <class Prepare, class Stage>
void Measure(benchmark::State& state, const Prepare& prepare, const Stage& stage) {
  const Sample& sample = SampleFor(state);
  SharedErrors errors;
  for ([[maybe_unused]] auto _ : state) {
    const Ref<EngineContext> context = NewEngineContext(errors, nullptr);
    auto prepared = prepare(sample, context);
    const double begin = SecondsUsed();
    auto result = stage(sample, context, prepared);
    const double end = SecondsUsed();
    benchmark::DoNotOptimize(result);
    state.SetIterationTime(end - begin);
  }
  state.SetItemsProcessed(state.iterations() * sample.line_count());
}

int Nothing(const Sample&, const Ref<EngineContext>&) { return 0; }

std::string FileText(const Sample& sample) {
  return ReadWholeFile(*SystemFiles().OpenForReading(sample.File("/old.lst")));
}

struct Pair {
  Ref<ElementTable> first;
  Ref<ElementTable> second;
};

Pair OldAndNew(const Sample& sample, const Ref<EngineContext>& context) {
  return {sample.Read(context, "/old.lst"), sample.Read(context, "/new.lst")};
}

// What a program does at least that looks at a report line by line.
void CountLines(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>&, int) {
    std::ifstream file(sample.File("/old.lst"), std::ios::binary);
    std::string line;
    int lines = 0;
    while (std::getline(file, line)) ++lines;
    return lines;
  });
}

void CountLineEnds(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>&, int) {
    const std::string text = FileText(sample);
    return std::count(text.begin(), text.end(), '\n');
  });
}

void Read(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>&, int) {
    return DecodeWindows1252(FileText(sample)).size();
  });
}

void Classify(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>&, int) {
    std::size_t sum = 0;
    DiffLine taken_apart;
    for (const std::string& line : sample.lines()) {
      DiffTextToElement(line, taken_apart);
      sum += IsSectionLine(taken_apart.text) ? 1 : SplitProperty(taken_apart.text).strName.size();
    }
    return sum;
  });
}

void BuildTree(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>& context, int) {
    BXReportFile store(context);
    for (const std::string& line : sample.lines()) store.AddLine(line);
    return store.ReportFile();
  });
}

void ReadAndParse(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>& context, int) {
    return sample.Read(context, "/old.lst");
  });
}

void ParseBoth(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>& context, int) {
    return OldAndNew(sample, context);
  });
}

void ParseCompareWrite(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>& context, int) {
    WriteReport(SystemFiles(), sample.File("/written"), {context, sample.Differences(context)},
                nullptr);
    return 0;
  });
}

void Search(benchmark::State& state) {
  const auto prepare = [](const Sample& sample, const Ref<EngineContext>& context) {
    Ref<ElementTable> table = sample.Read(context, "/old.lst");
    if (table->rows() > 2) return table;
    return context->ChildOf(*table, table->rows())->ElementArray();
  };
  Measure(state, prepare,
          [](const Sample&, const Ref<EngineContext>&, const Ref<ElementTable>& table) {
            std::int64_t sum = 0;
            for (std::int32_t row = 1; row <= table->rows(); ++row) {
              sum += FindElement(table, table->Row(row).key);
            }
            return sum;
          });
}

void Compare(benchmark::State& state) {
  Measure(state, OldAndNew,
          [](const Sample&, const Ref<EngineContext>& context, const Pair& reports) {
            return Sample::Compared(context, reports.first, reports.second);
          });
}

std::int64_t AllLines(const Ref<EngineContext>& context, const Ref<ElementTable>& tree) {
  BXReportFile store(context);
  store.SetReportFile(tree);
  std::string lines;
  bool more = store.AppendFirstBlock(lines);
  while (more) more = store.AppendNextBlock(lines.append("\r\n"));
  return static_cast<std::int64_t>(lines.size());
}

void Write(benchmark::State& state) {
  Measure(
      state,
      [](const Sample& sample, const Ref<EngineContext>& context) {
        return sample.Read(context, "/old.lst");
      },
      [](const Sample&, const Ref<EngineContext>& context, const Ref<ElementTable>& tree) {
        return AllLines(context, tree);
      });
}

void DifferenceText(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>&, int) {
    std::size_t sum = 0;
    std::string text;
    DiffLine taken_apart;
    for (const std::string& line : sample.lines()) {
      text.clear();
      ElementToDiffText(bxsUpdate, {line, "", "PrevName", "PrevKey", "", "Next", "Next", "", "2"},
                        text);
      DiffTextToElement(text.append(line), taken_apart);
      sum += taken_apart.text.size();
    }
    return sum;
  });
}

void Apply(benchmark::State& state) {
  Measure(
      state,
      [](const Sample& sample, const Ref<EngineContext>& context) {
        return Pair{sample.Read(context, "/customer.lst"), sample.Read(context, "/differences")};
      },
      [](const Sample&, const Ref<EngineContext>& context, const Pair& input) {
        const Ref<Level> converted = context->CreateLevel(0);
        converted->Convert(input.first, input.second);
        return converted;
      });
}

std::int64_t Converted(const Sample& sample, const Ref<EngineContext>& context) {
  const Ref<Level> converted = context->CreateLevel(0);
  const Ref<ElementTable> customer = sample.Read(context, "/customer.lst");
  converted->Convert(customer, sample.Read(context, "/differences"));
  return AllLines(context, converted->ElementArray());
}

void Convert(benchmark::State& state) {
  Measure(state, Nothing, [](const Sample& sample, const Ref<EngineContext>& context, int) {
    return Converted(sample, context);
  });
}

// Does what the component's loop does while no turn is due: it counts, and looks at the clock at
// every 32nd call.
class CountingLoop final : public MessageLoop {
 public:
  void Yield() override {
    if (++count_ % 32 != 0) return;
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    benchmark::DoNotOptimize(now);
  }
  std::int64_t count() const { return count_; }

 private:
  std::int64_t count_ = 0;
};

// As many calls of the message loop as Convert makes, and nothing else.
void Yields(benchmark::State& state) {
  SharedErrors errors;
  CountingLoop counter;
  Converted(SampleFor(state), NewEngineContext(errors, &counter));
  Measure(state, Nothing, [&](const Sample&, const Ref<EngineContext>&, int) {
    CountingLoop loop;
    MessageLoop* called = &loop;
    for (std::int64_t n = 0; n < counter.count(); ++n) {
      benchmark::DoNotOptimize(called);
      called->Yield();
    }
    return loop.count();
  });
}

void Register() {
  const std::pair<const char*, void (*)(benchmark::State&)> stages[] = {
      {"CountLines", CountLines},
      {"CountLineEnds", CountLineEnds},
      {"Read", Read},
      {"Classify", Classify},
      {"BuildTree", BuildTree},
      {"Search", Search},
      {"Compare", Compare},
      {"Write", Write},
      {"DifferenceText", DifferenceText},
      {"Apply", Apply},
      {"ReadAndParse", ReadAndParse},
      {"ParseBoth", ParseBoth},
      {"ParseCompareWrite", ParseCompareWrite},
      {"Convert", Convert},
      {"Yields", Yields},
  };
  for (const char* shape : {"sections", "siblings", "table"}) {
    for (const std::int64_t lines : {500, 5000, 50000}) {
      for (const auto& [name, function] : stages) {
        benchmark::RegisterBenchmark((std::string(name) + "/" + shape).c_str(), function)
            ->Args({static_cast<std::int64_t>(ShapeNamed(shape)), lines})
            ->Iterations(std::max<std::int64_t>(1, 25000 / lines))
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
      }
    }
  }
}

}  // namespace
}  // namespace tessary

int main(int argc, char** argv) {
  tessary::Register();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
