"""Runs a command to its end and prints what it took, as JSON: seconds of wall and processor, peak memory in bytes.

    measure.py CORE|all COMMAND…

CORE pins it to one core. A process of its own for each run: a child's peak memory is never less than its parent's was
when it started, so the parent must be small. Processes that the command waited for count."""

import json
import os
import sys
import time


def main():
    core, command = sys.argv[1], sys.argv[2:]
    if core != "all":
        os.sched_setaffinity(0, {int(core)})
    start = time.perf_counter()
    child = os.posix_spawnp(command[0], command, os.environ,
                            file_actions=[(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(child, 0)
    wall = time.perf_counter() - start
    print(json.dumps({"wall": wall, "cpu": usage.ru_utime + usage.ru_stime, "peak": usage.ru_maxrss * 1024}))
    return os.waitstatus_to_exitcode(status)


if __name__ == "__main__":
    sys.exit(main())
