#!/usr/bin/env python3
"""Runs the measuring programs and prints one table: our figures, the peers', the physical limit,
the bar, and whether it is met.

Everything in a row is done in the same run on the same machine, one program after the other in each
round, and medians over the rounds are shown. Programs leave one JSON line for each result; those of
peers that are not installed were not built, and are shown as absent.

    bench/run.sh build/bench                 the whole table (some minutes)
    bench/run.sh build/bench --quick         small sizes, to see that all of it runs; the bars are
                                             for the full sizes and are not judged
    bench/run.sh build/bench --only inverse  rows whose name contains the word
"""

import argparse
import json
import os
import pathlib
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from rows import ROWS

PEERS = ["hdf5", "netcdf", "exodus", "cgns", "med"]
FULL = dict(nodes=10_000_000, elements=5_000_000, picked=1_000_000, members=10_000_000,
            sets=[1_000, 10_000, 100_000], peer_sets=[1_000, 10_000], names=100_000,
            deck_nodes=10_000_000, meshio_nodes=500_000,
            labels=5_000_000, instances=[1, 10, 10_000], shells=100_000,
            fields=1_000_000, rows=100_000, rounds=5)
QUICK = dict(nodes=200_000, elements=100_000, picked=20_000, members=100_000, sets=[100, 1_000],
             peer_sets=[100], names=10_000, deck_nodes=50_000, meshio_nodes=5_000,
             labels=50_000, instances=[1, 10, 100], shells=2_000, fields=20_000,
             rows=2_000, rounds=1)


class Results:
    """Values by row and by who did the work; each shown value is the median over the rounds."""

    def __init__(self):
        self.values, self.peaks = {}, {}

    def add(self, row, who, value, mb=None):
        self.values.setdefault((row, who), []).append(value)
        if mb is not None:
            self.peaks.setdefault((row, who), []).append(mb)

    def get(self, row, who="ours"):
        found = self.values.get((row, who))
        return statistics.median(found) if found else None

    def peak(self, row, who="ours"):
        found = self.peaks.get((row, who))
        return statistics.median(found) if found else None

    def others(self, row):
        return {who: self.get(row, who) for (r, who) in self.values if r == row and who != "ours"}


class Bench:
    def __init__(self, options, sizes, folder):
        self.build, self.only, self.sizes = options.build, options.only, sizes
        self.folder, self.results = folder, Results()

    def wanted(self, group):
        return self.only is None or self.only in group

    def program(self, name):
        path = self.build / "bench" / name
        return path if path.exists() else None

    def run(self, name, **options):
        """One program; its results are kept. An absent program is passed over."""
        path = self.program(name)
        if path is None:
            return
        words = [str(path), "--dir", str(self.folder)]
        for key, value in options.items():
            words += [f"--{key}", str(value)]
        print("  " + " ".join(words[:1] + words[3:]), file=sys.stderr)
        done = subprocess.run(words, stdout=subprocess.PIPE, text=True, check=False)
        if done.returncode != 0:
            print(f"{name} ended with status {done.returncode}", file=sys.stderr)
        for line in done.stdout.splitlines():
            if line.startswith("{"):
                found = json.loads(line)
                self.results.add(found["row"], found["who"], found["value"], found.get("mb"))

    def bulk(self):
        sizes = self.sizes
        mesh_stores = [("bulk_plain", ""), ("bulk_ours", ""), ("bulk_ours", "service")]
        mesh_stores += [("bulk_" + peer, "") for peer in PEERS] + [("bulk_hdf5", "checksum")]
        field_stores = [("bulk_plain", ""), ("bulk_ours", ""), ("bulk_ours", "growing"),
                        ("bulk_hdf5", ""), ("bulk_netcdf", ""), ("bulk_hdf5", "checksum")]
        for case in ("coordinates", "connectivity", "fields", "gather", "open"):
            if not self.wanted(case):
                continue
            rounds = sizes["rounds"] if case in ("coordinates", "connectivity", "fields") else 1
            stores = field_stores if case == "fields" else mesh_stores
            for turn in range(rounds):
                # The disk is quick after a rest: each round begins with another program.
                first = turn * 2 % len(stores)
                for name, variant in stores[first:] + stores[:first]:
                    if variant and case in ("gather", "open"):
                        continue
                    # A peer that takes a call for each node is asked for fewer of them.
                    slow = name in ("bulk_netcdf", "bulk_exodus")
                    picked = sizes["picked"] // (10 if slow else 1)
                    self.run(name, case=case, variant=variant, nodes=sizes["nodes"],
                             elements=sizes["elements"], picked=picked)

    def inverse(self):
        if self.wanted("inverse"):
            for permuted in (0, 1):
                self.run("inverse", elements=self.sizes["elements"], permuted=permuted,
                         runs=self.sizes["rounds"])

    def classes(self):
        if self.wanted("classes"):
            for scattered in (0, 1):
                self.run("classification", elements=self.sizes["members"], scattered=scattered,
                         runs=self.sizes["rounds"])

    def checker(self):
        if self.wanted("checker"):
            self.run("checker", elements=self.sizes["elements"], runs=self.sizes["rounds"])

    def copy(self):
        if self.wanted("copy"):
            for permuted in (0, 1):
                self.run("copy_distribution", nodes=self.sizes["nodes"], permuted=permuted,
                         runs=2 * self.sizes["rounds"])

    def sets(self):
        if self.wanted("algebra"):
            self.run("set_algebra", members=self.sizes["members"])
        if self.wanted("sets"):
            for _ in range(min(self.sizes["rounds"], 3)):
                for count in self.sizes["sets"]:
                    self.run("named_sets", sets=count)
            for count in self.sizes["peer_sets"]:
                self.run("bulk_exodus", case="sets", sets=count)

    def names(self):
        if self.wanted("names"):
            for _ in range(min(self.sizes["rounds"], 3)):
                self.run("scoped_names", names=self.sizes["names"])

    def labels(self):
        if self.wanted("labels"):
            for count in self.sizes["instances"]:
                self.run("labels", nodes=self.sizes["labels"], instances=count,
                         runs=self.sizes["rounds"], map=int(count == 10))

    def shells(self):
        if self.wanted("shells"):
            for _ in range(self.sizes["rounds"]):
                self.run("shell_layers", sections=self.sizes["shells"])
            self.run("shell_fields", elements=self.sizes["fields"], runs=self.sizes["rounds"])
            self.shell_deck()

    def shell_deck(self):
        kovsim = self.build / "bin" / "kovsim"
        if not kovsim.exists():
            return
        deck, document = self.folder / "shells.inp", self.folder / "shells.ksd"
        count = self.sizes["shells"]
        subprocess.run([self.program("make_shell_deck"), "--out", deck, "--sections", str(count),
                        "--layers", "20"], check=True)
        rounds = min(self.sizes["rounds"], 3)
        for turn in range(rounds):
            seconds, peak = timed([kovsim, "translate", deck, "-o", document])
            self.results.add("shells.translate", "ours", seconds, peak)
            if turn < rounds - 1:
                shutil.rmtree(document)
        size = sum(path.stat().st_size for path in document.rglob("*") if path.is_file())
        self.results.add("shells.size", "ours", size / 1e6)
        self.results.add("shells.size", "the deck", deck.stat().st_size / 1e6)
        subprocess.run([self.program("shell_drawers"), "--document", document, "--layers", "20"],
                       check=True)
        for number in range(1, 8):
            name = f"S{number * count // 8}"
            seconds, peak = timed([kovsim, "layup", document, "--section", name])
            self.results.add("shells.layup", "ours", seconds, peak)
        deck.unlink()
        shutil.rmtree(document)

    def tables(self):
        if self.wanted("tables"):
            for _ in range(self.sizes["rounds"]):
                self.run("material_tables", rows=self.sizes["rows"])

    def extrapolation(self):
        if self.wanted("extrapolation"):
            self.run("extrapolation", elements=min(self.sizes["elements"], 1_000_000),
                     runs=self.sizes["rounds"])

    def text(self):
        kovsim = self.build / "bin" / "kovsim"
        if not self.wanted("text") or not kovsim.exists():
            return
        deck = self.deck("model.inp", self.sizes["deck_nodes"])
        megabytes = deck.stat().st_size
        for _ in range(min(self.sizes["rounds"], 3)):
            self.run("limit_text", deck=deck)
            document = self.folder / "deck.ksd"
            seconds, peak = timed([kovsim, "translate", deck, "-o", document])
            shutil.rmtree(document)
            self.results.add("text", "ours", megabytes / seconds)
            self.results.add("memory", "ours", peak)
        deck.unlink()
        self.meshio()

    def parts(self):
        kovsim = self.build / "bin" / "kovsim"
        if not self.wanted("parts") or not kovsim.exists():
            return
        elements = self.sizes["elements"]
        deck = self.deck("model.inp", elements)
        whole, part, copy = (self.folder / name for name in ("a.ksd", "part.ksd", "b.ksd"))
        with deck.open("a") as file:
            file.write(f"*ELSET, ELSET=half, GENERATE\n1, {elements // 2}\n"
                       f"*ELSET, ELSET=odd, GENERATE\n1, {elements // 2 * 2 - elements // 20}, 2\n")
        timed([kovsim, "translate", deck, "-o", whole])
        deck.unlink()
        for _ in range(min(self.sizes["rounds"], 3)):
            for name in ("half", "odd"):
                seconds, peak = timed([kovsim, "extract", whole, "--set", name, "-o", part])
                self.results.add("parts." + name, "ours", seconds, peak)
                start = time.perf_counter()
                shutil.copytree(part, copy)
                os.sync()
                self.results.add("parts." + name, "plain copy", time.perf_counter() - start)
                shutil.rmtree(part)
                shutil.rmtree(copy)
        timed([kovsim, "compact", whole, "-o", copy])
        for _ in range(min(self.sizes["rounds"], 3)):
            seconds, peak = timed([kovsim, "map", whole, copy])
            self.results.add("parts.map", "ours", seconds, peak)
        shutil.rmtree(whole)
        shutil.rmtree(copy)

    def meshio(self):
        deck = self.deck("small.inp", self.sizes["meshio_nodes"])
        try:
            # Debian's own Python, which is the one that has Debian's packages.
            seconds, _ = timed(["/usr/bin/python3", "-c", "import sys, time, meshio\n"
                                "start = time.time()\nmeshio.read(sys.argv[1])\n"
                                "print(time.time() - start)", deck], told=True)
            self.results.add("text", "meshio", deck.stat().st_size / seconds)
        except (OSError, subprocess.CalledProcessError, ValueError, IndexError):
            pass
        deck.unlink()

    def deck(self, name, nodes):
        deck = self.folder / name
        subprocess.run([self.program("make_deck"), "--out", deck, "--nodes", str(nodes)],
                       check=True)
        return deck


def timed(words, told=False):
    """Wall seconds of a process on one core (or the seconds that it tells) and its peak in MB."""
    start = time.perf_counter()
    process = subprocess.Popen([str(word) for word in words], stdout=subprocess.PIPE, text=True,
                               stderr=subprocess.DEVNULL if told else None,
                               preexec_fn=lambda: os.sched_setaffinity(0, {0}))
    output = process.stdout.read()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    seconds = time.perf_counter() - start
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, words)
    return float(output.split()[-1]) if told else seconds, usage.ru_maxrss / 1024


def machine():
    model = "unknown processor"
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            model = line.split(":")[1].strip()
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return (f"{len(os.sched_getaffinity(0))} cores ({model}), {memory:.0f} GiB of memory, "
            f"{platform.system()} {platform.release().split('-')[0]}")


def table(bench):
    lines = ["| Work | Ours | Peak memory | Physical limit | Others | Bar | Met |",
             "|---|---|---|---|---|---|---|"]
    for row in ROWS(bench.sizes):
        ours = bench.results.get(row.name)
        if ours is None:
            continue
        others = bench.results.others(row.name)
        also = [f"{who[6:]} {row.unit(others.pop(who))}" for who in sorted(others)
                if who.startswith("ours, ")]
        limits = [f"{who} {row.unit(others.pop(who))}" for who in row.limits if who in others]
        peers = [f"{who} {row.unit(value)}" for who, value in sorted(others.items())]
        peak = bench.results.peak(row.name)
        shown = row.unit(ours) + (f" ({', '.join(also)})" if also else "")
        met = row.met(bench.results) if bench.sizes is not QUICK else None
        lines.append("| " + " | ".join([
            row.title, shown, "" if peak is None else f"{peak:.0f} MB",
            ", ".join(limits), ", ".join(peers), row.bar, {True: "yes", False: "**no**",
                                                          None: ""}[met]]) + " |")
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--only")
    parser.add_argument("--rounds", type=int)
    parser.add_argument("--dir", type=pathlib.Path, help="where to write; on a real disk")
    parser.add_argument("--output", type=pathlib.Path, help="write the table here too")
    options = parser.parse_args()
    sizes = QUICK if options.quick else FULL
    if options.rounds:
        sizes["rounds"] = options.rounds
    with tempfile.TemporaryDirectory(prefix="kov-bench-", dir=options.dir) as folder:
        bench = Bench(options, sizes, pathlib.Path(folder))
        for part in (bench.bulk, bench.inverse, bench.classes, bench.checker, bench.copy, bench.sets,
                     bench.names, bench.labels, bench.shells, bench.tables, bench.extrapolation, bench.text,
                     bench.parts):
            part()
    absent = [peer for peer in PEERS if bench.program("bulk_" + peer) is None]
    lines = [f"Measured on {machine()}; medians of {sizes['rounds']} runs.", ""] + table(bench)
    if absent:
        lines += ["", "Absent: " + ", ".join(absent) + "."]
    print("\n".join(lines))
    if options.output:
        options.output.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
