"""What the benchmarks share: building, measuring processes, and tables."""

import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time
from typing import NamedTuple

TOP = pathlib.Path(__file__).resolve().parent.parent
BUILD = TOP / "build" / "bench"
README = TOP / "bench" / "README.md"
MIB = 1 << 20


class Usage(NamedTuple):
    wall: float  # seconds
    processor: float  # seconds, user and system
    peak: int  # bytes


def build(*packages):
    """Builds all benchmarks. `packages`: those of Debian that are needed."""
    subprocess.run([TOP / "scripts" / "require-packages", *packages], check=True)
    subprocess.run(["cmake", "--preset", "bench"], cwd=TOP, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", "--preset", "bench", "--parallel", str(os.cpu_count())],
                   cwd=TOP, check=True, stdout=subprocess.DEVNULL)


def measured(command, directory, statuses=(0,)):
    """Runs a command in a new directory. Returns its usage, its standard output and its standard error. It must end
    with one of the statuses."""
    directory.mkdir()
    os.sync()  # so that it does not wait for what others have written
    texts = []
    with open(directory / "stdout", "w+", encoding="utf-8", errors="replace") as out, \
            open(directory / "stderr", "w+", encoding="utf-8", errors="replace") as err:
        start = time.perf_counter()
        process = subprocess.Popen(command, cwd=directory, stdout=out, stderr=err)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
        for stream in (out, err):
            stream.seek(0)
            texts.append(stream.read())
        if os.waitstatus_to_exitcode(status) not in statuses:
            sys.exit(f"{command[0]}: ended with status {os.waitstatus_to_exitcode(status)}: {texts[1]}")
    (directory / "stdout").unlink()
    (directory / "stderr").unlink()
    return Usage(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024), *texts


def number_after(label, text):
    return float(re.search(re.escape(label) + r"\s*([0-9.e+-]+)", text).group(1))


def median_of(usages, field):
    return statistics.median(getattr(usage, field) for usage in usages)


def median_ratio(pairs, field):
    return statistics.median(getattr(korv, field) / getattr(other, field) for korv, other in pairs)


def medians(command):
    """The median real time and counters of each benchmark of a program, by its name."""
    text = subprocess.run(
        [*command, "--benchmark_format=json", "--benchmark_repetitions=3", "--benchmark_min_time=0.1"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    return {each["run_name"]: each for each in json.loads(text)["benchmarks"]
            if each.get("aggregate_name") == "median"}


def table(rows):
    header, *body = rows
    lines = ["| " + " | ".join(row) + " |" for row in (header, ["---"] * len(header), *body)]
    return "\n".join(lines) + "\n"


def machine():
    model = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text(encoding="ascii"))
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")
    compiler = subprocess.run(["g++", "--version"], check=True, stdout=subprocess.PIPE, text=True).stdout
    return (f"{model.group(1) if model else os.uname().machine}, {os.cpu_count()} cores, "
            f"{memory / 2**30:.0f} GiB, Linux {os.uname().release}, {compiler.splitlines()[0]}, "
            f"{time.strftime('%Y-%m-%d')}")


def update_readme(section, text):
    """Replaces what stands in bench/README.md between the marks of a section."""
    begin, end = f"<!-- {section} -->\n", f"<!-- end of {section} -->\n"
    before, rest = README.read_text(encoding="utf-8").split(begin)
    _, after = rest.split(end)
    README.write_text(f"{before}{begin}\n{text}\n{end}{after}", encoding="utf-8")
