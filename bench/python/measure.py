"""Runs a command to its end and prints as JSON what it took: wall and processor time in seconds, peak memory in bytes.

    measure.py CORE|all COMMAND…

A number as CORE pins the command to that core. Each run has a process of its own as its parent, which is small: a
child's peak memory is never less than its parent's was when the child started. Processes that the command waited for
count too."""

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
