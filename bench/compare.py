"""Runs this program and its peers in turn and prints one table of what that took.

    compare.py [--quick] BUILD_FOLDER DOCUMENT

Each run of ours is followed by one of the peer on the same reports; the ratio is the median of the
ratios of such pairs, so that a machine whose speed drifts does not matter much. Writing safely is
part of our work, so the peers' outputs are flushed as often as ours; our flushes are counted with
strace. Every run has a folder of its own, with reports that have just been copied there: where many
files have been removed a file system may take longer to create others for a while, and nobody
removes files between two runs. The table is put into the document between its two markers, except
with --quick.
"""

import json
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

BEGIN, END = "<!-- measured: begin -->", "<!-- measured: end -->"


class Case:
    """One row: what we run, what the peer runs, and what of the peer's is flushed. `prepare` gives
    the folder for the next run, from which the paths in commands and outputs start."""

    def __init__(self, work, peer, at_most, goal, ours, theirs, outputs, prepare):
        self.work, self.peer, self.at_most, self.goal = work, peer, at_most, goal
        self.ours, self.theirs, self.outputs, self.prepare = ours, theirs, outputs, prepare


def processor_time():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def output_file(folder, output):
    return open(os.path.join(folder, output) if output else os.devnull, "wb")


def run(commands, folder):
    """Wall time and processor time in seconds of commands, one after the other."""
    begin, used = time.perf_counter(), processor_time()
    for arguments, output in commands:
        with output_file(folder, output) as out:
            status = subprocess.call(arguments, stdout=out, stderr=subprocess.DEVNULL, cwd=folder)
        if not 0 <= status < 126:  # what lies between is how peers tell of differences
            raise SystemExit(f"{arguments} ended with {status}")
    return time.perf_counter() - begin, processor_time() - used


def peak_memory_of(commands, folder):
    """The largest peak memory in MB. A process that we started ourselves would count our own."""
    peak = 0
    for arguments, output in commands:
        with tempfile.NamedTemporaryFile("r") as log, output_file(folder, output) as out:
            subprocess.call(["time", "--format=%M", "--quiet", "--output=" + log.name] + arguments,
                            stdout=out, stderr=subprocess.DEVNULL, cwd=folder)
            peak = max(peak, int(log.read()) / 1024)
    return peak


def flush(folder, paths, count):
    begin = time.perf_counter()
    for number in range(count):
        descriptor = os.open(os.path.join(folder, paths[number % len(paths)]), os.O_RDONLY)
        os.fsync(descriptor)
        os.close(descriptor)
    return time.perf_counter() - begin


def flushes_of(commands, folder):
    count = 0
    for arguments, _ in commands:
        with tempfile.NamedTemporaryFile("r") as log:
            subprocess.run(["strace", "-f", "-e", "trace=fsync,fdatasync,syncfs", "-o", log.name]
                           + arguments, check=True, stdout=subprocess.DEVNULL, cwd=folder)
            # A call that another thread interrupts stands there twice.
            count += sum("sync" in line and "resumed>" not in line for line in log)
    return count


def measure(case, runs):
    flushes = flushes_of(case.ours, case.prepare())
    our_peak = peak_memory_of(case.ours, case.prepare())
    their_peak = peak_memory_of(case.theirs, case.prepare())
    ours, theirs, ratios, processor_ratios = [], [], [], []
    for _ in range(runs):
        seconds, our_processor = run(case.ours, case.prepare())
        ours.append(seconds)
        folder = case.prepare()
        seconds, their_processor = run(case.theirs, folder)
        theirs.append(seconds + flush(folder, case.outputs, flushes))
        ratios.append(ours[-1] / theirs[-1])
        processor_ratios.append(our_processor / max(their_processor, 1e-6))
    return {"ours": statistics.median(ours) * 1e3, "theirs": statistics.median(theirs) * 1e3,
            "ratio": statistics.median(ratios),
            "processor_ratio": statistics.median(processor_ratios),
            "our_peak": our_peak, "their_peak": their_peak, "flushes": flushes}


class Reports:
    """Generated reports, and folders to work on copies of them."""

    def __init__(self, make_reports, root, name, lines, changes, count=None):
        self.path = os.path.join(root, name)
        self.runs = 0
        for part in ("old", "new", "customer", "runs"):
            os.makedirs(self.at(part))
        extra = [] if count is None else [str(count)]
        subprocess.run([make_reports, "sections", str(lines), str(changes), self.path] + extra,
                       check=True)
        if count is None:
            shutil.move(self.at("customer.lst"), self.at("customer"))

    def at(self, *parts):
        return os.path.join(self.path, *parts)

    def new_folder(self):
        """A folder with a copy of the customer's reports, and empty ones for what is written."""
        self.runs += 1
        folder = self.at("runs", str(self.runs))
        for part in ("diff", "workBak"):
            os.makedirs(os.path.join(folder, part))
        shutil.copytree(self.at("customer"), os.path.join(folder, "work"))
        return folder


def cases_for(tessary, root, make_reports, quick):
    small = Reports(make_reports, root, "small", 5000, 80)
    old, new, customer = small.at("old.lst"), small.at("new.lst"), "work/customer.lst"
    diff = ([tessary, "diff", old, new, "diff"], None)
    convert = ([tessary, "convert", customer, "diff/3_4Rechnung"], None)
    patch_file = small.at("changes.diff")
    run([([tessary, "diff", old, new, small.path], None), (["diff", "-u", old, new], patch_file)],
        small.path)
    patch = ([tessary, "convert", customer, small.at("3_4Rechnung")], None)
    yield Case("`--version`", "`/bin/true`", 1.5, 1.2, [([tessary, "--version"], None)],
               [(["/bin/true"], None)], [], lambda: small.path)
    yield Case("`diff` of a 100 KB pair", "`diff -u`", 1.0, 0.7, [diff],
               [(["diff", "-u", old, new], "diff/out")], ["diff/out"], small.new_folder)
    yield Case("`convert` of a 100 KB report", "`patch -b`", 1.0, 0.8, [patch],
               [(["patch", "-b", "--binary", "-s", customer, patch_file], None)],
               [customer + ".orig", "work", customer, "work"], small.new_folder)
    yield Case("`diff` and `convert`, 100 KB", "`git merge-file`", 1.0, 0.7, [diff, convert],
               [(["git", "merge-file", "-q", customer, old, new], None)], [customer, "work"],
               small.new_folder)
    if quick:
        return
    large = Reports(make_reports, root, "large", 560000, 8000)
    old, new = large.at("old.lst"), large.at("new.lst")
    yield Case("`diff` and `convert`, 10 MB", "`git merge-file`", 0.8, 0.5,
               [([tessary, "diff", old, new, "diff"], None), convert],
               [(["git", "merge-file", "-q", customer, old, new], None)], [customer, "work"],
               large.new_folder)
    many = Reports(make_reports, root, "many", 5000, 80, 200)
    loop = ('for f in work/*.lst; do n=${f#work/}; '
            'git merge-file -q "$f" "$0/old/$n" "$0/new/$n"; done')
    yield Case("`diff-folder` and `convert-folder`, 200 pairs", "a loop of `git merge-file`",
               0.6, 0.4,
               [([tessary, "diff-folder", many.at("old"), many.at("new"), "diff"], None),
                ([tessary, "convert-folder", "diff", "work"], None)],
               [(["sh", "-c", loop, many.path], None)],
               [f"work/{n}.lst" for n in range(1, 201)] + ["work"], many.new_folder)


def table_of_cases(rows):
    lines = ["| work | peer | ours | peer's | ratio | at most | goal | of processor time | peak memory "
             "| flushes |", "|---|---|---|---|---|---|---|---|---|---|"]
    for case, result in rows:
        lines.append(
            f"| {case.work} | {case.peer} | {result['ours']:.1f} ms | {result['theirs']:.1f} ms "
            f"| **{result['ratio']:.2f}** | {case.at_most} | {case.goal} "
            f"| {result['processor_ratio']:.2f} "
            f"| {result['our_peak']:.1f} / {result['their_peak']:.1f} MB | {result['flushes']} |")
    return lines


def stage_times(program, runs, quick):
    """Median time in nanoseconds of each stage, by (stage, shape, lines), per line and whole."""
    only = ["--benchmark_filter=.*/5000/"] if quick else []
    with tempfile.NamedTemporaryFile("r") as out:
        # A machine that is faster for some seconds would favour the stages of these seconds.
        subprocess.run([program, f"--benchmark_repetitions={runs}",
                        "--benchmark_enable_random_interleaving=true",
                        "--benchmark_report_aggregates_only=true", f"--benchmark_out={out.name}",
                        "--benchmark_out_format=json"] + only,
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        results = json.load(out)["benchmarks"]
    times = {}
    for result in sorted(results, key=lambda result: result["family_index"]):
        if result["aggregate_name"] != "median":
            continue
        stage, shape, _, lines = result["run_name"].split("/")[:4]
        times[stage, shape, int(lines)] = result["real_time"] * 1e3  # it gives microseconds
    return times


def table_of_stages(times):
    sizes = sorted({lines for _, _, lines in times})
    shapes = list(dict.fromkeys(shape for _, shape, _ in times))
    lines = ["| stage | " + " | ".join(f"{shape}, {size}" for shape in shapes for size in sizes)
             + " |", "|---|" + "---|" * len(shapes) * len(sizes)]
    for stage in dict.fromkeys(stage for stage, _, _ in times):
        cells = [f"{times[stage, shape, size] / size:.0f}" for shape in shapes for size in sizes]
        lines.append(f"| {stage} | " + " | ".join(cells) + " |")
    return lines


def table_in_process(times):
    parse, count = times["ReadAndParse", "sections", 5000], times["CountLines", "sections", 5000]
    bytes_only = times["CountLineEnds", "sections", 5000]
    both, whole = times["ParseBoth", "sections", 5000], times["ParseCompareWrite", "sections", 5000]
    yields = times["Yields", "sections", 5000] / times["Convert", "sections", 5000]
    return ["| work, in one process | compared with | ratio | at most | goal |", "|---|---|---|---|---|",
            f"| read and parse a report | read its lines and count them | **{parse / count:.1f}** "
            "| 16 | 10 |",
            "| the same | read it at once and count the line ends "
            f"| {parse / bytes_only:.1f} | | |",
            f"| parse both, compare, write the difference | parse both | **{whole / both:.2f}** "
            "| 2.5 | 2.0 |",
            f"| yields of a conversion | the conversion | **{yields:.3f}** | 0.02 | |"]


def machine():
    with open("/proc/cpuinfo") as info:
        model = next(line.split(":", 1)[1].strip() for line in info if "model name" in line)
    return f"{model}, {os.cpu_count()} processors, load {os.getloadavg()[0]:.1f}"


def put_into(document, lines):
    with open(document) as file:
        text = file.read()
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    with open(document, "w") as file:
        file.write(before + BEGIN + "\n" + "\n".join(lines) + "\n" + END + after)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    quick = len(arguments) < len(sys.argv) - 1
    build, document = arguments
    runs = 5 if quick else 21
    build = os.path.abspath(build)
    lines = [f"Machine: {machine()}; medians of {runs} runs.", ""]
    with tempfile.TemporaryDirectory() as root:
        rows = []
        for case in cases_for(build + "/tessary", root, build + "/bench/make_reports", quick):
            rows.append((case, measure(case, runs)))
            print(table_of_cases(rows)[-1], file=sys.stderr, flush=True)
        lines += table_of_cases(rows)
    stage_runs = runs
    times = stage_times(build + "/bench/bench_stages", stage_runs, quick)
    lines += [""] + table_in_process(times)
    lines += ["", "Nanoseconds of processor time per line of the old report, medians of "
              f"{stage_runs}:", ""] + table_of_stages(times)
    print("\n".join(lines))
    if not quick:
        put_into(document, lines)


if __name__ == "__main__":
    main()
