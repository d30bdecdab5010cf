"""Figures of whole processes: each from start to exit, pinned to one core."""

import json
import os
import pathlib
import platform
import shutil
import statistics
import subprocess
import sys

HERE = pathlib.Path(__file__).parent
ROOT = HERE.parent.parent
BUILD = ROOT / "build" / "release"
CLI = BUILD / "cli" / "tobrimax-cli"
# The last core: systems handle their interrupts on the first one.
CORE = max(os.sched_getaffinity(0))


def fresh(folder):
    """Makes `folder` an empty folder."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def run(command, environment=None, is_pinned=True):
    """Runs a command once. Returns {"wall", "cpu", "peak"}: seconds, seconds and bytes."""
    done = subprocess.run([sys.executable, "-IS", HERE / "measure.py", str(CORE) if is_pinned else "all",
                           *map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          env={**os.environ, **(environment or {})})
    if done.returncode != 0:
        sys.exit(f"{pathlib.Path(command[0]).name} ended with status {done.returncode}:\n{done.stderr.decode()}")
    return json.loads(done.stdout)


def median(runs):
    """The median of each figure on its own."""
    return {key: statistics.median(run[key] for run in runs) for key in runs[0]}


def picture(kind, side, path):
    """The path of a source picture. It is made where it is missing or older than the program that makes it."""
    program = BUILD / "bench" / "bench_pictures"
    if not path.exists() or path.stat().st_mtime < program.stat().st_mtime:
        path.parent.mkdir(parents=True, exist_ok=True)
        part = path.with_name("part-" + path.name)
        subprocess.run([program, kind, str(side), part], check=True)
        part.rename(path)
    return path


def machine():
    """What kind of machine this is, in words."""
    model = platform.machine()
    system = platform.platform()
    with open("/proc/cpuinfo") as lines:
        model = next((line.split(":")[1].strip() for line in lines if line.startswith("model name")), model)
    with open("/etc/os-release") as lines:
        system = next((line.split("=")[1].strip().strip('"') for line in lines if line.startswith("PRETTY_NAME")),
                      system)
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return f"{model}, {os.cpu_count()} cores, {memory:.0f} GiB, {system}, Linux {platform.release().split('-')[0]}"


def load():
    """A sentence on how busy the machine is; empty where it is idle."""
    busy = os.getloadavg()[0]
    return f"The machine was not idle: its load was {busy:.1f} when this began." if busy > 0.3 else ""
