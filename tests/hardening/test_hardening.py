"""Checks that a program is built with hardening: test_hardening.py PROGRAM"""

import re
import subprocess
import sys
import unittest

program = None


def readelf(*options):
    return subprocess.run(["readelf", "--wide", *options, program], capture_output=True, text=True, check=True).stdout


class HardeningTest(unittest.TestCase):
    def test_lies_anywhere_in_memory(self):
        self.assertRegex(readelf("--file-header"), r"Type:\s+DYN")
        self.assertRegex(readelf("--dynamic"), r"FLAGS_1.*\bPIE\b")

    def test_tables_of_addresses_are_read_only(self):
        self.assertIn("GNU_RELRO", readelf("--program-headers"))
        self.assertRegex(readelf("--dynamic"), r"BIND_NOW|FLAGS_1.*\bNOW\b")

    def test_no_memory_is_both_written_and_run(self):
        headers = readelf("--program-headers")
        flags = re.findall(r"^ +(LOAD|GNU_STACK) .* ([R ][W ][E ]) 0x", headers, re.MULTILINE)
        self.assertGreaterEqual(len(flags), 3)
        for kind, permissions in flags:
            self.assertNotEqual(permissions[1:], "WE", kind)

    def test_stacks_are_guarded(self):
        self.assertIn("__stack_chk_fail", readelf("--dyn-syms"))

    def test_bounds_of_the_c_library_s_functions_are_checked(self):
        self.assertRegex(readelf("--dyn-syms"), r"__(mem(cpy|move|set)|vsnprintf|read|strncpy)_chk")


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
