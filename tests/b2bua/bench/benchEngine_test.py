#!/usr/bin/env python3
"""The benchmark of the example engine: that it has all rows, that all of their calls succeed, and how it reads
profiles. What it measures is not judged."""

import os
import re
import subprocess
import sys
import unittest

from profiles import share_within

SKIPPED = 77
SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "benchEngine.py")
ROWS = ["Kamailio, a plain proxy"] + [
    f"engine, media {media}{store}{policy}"
    for media in ("none", "anchor", "rtpengine") for store in ("", ", Redis") for policy in ("", ", policy")]
COLUMNS = 10
CALLS = 20


def is_library(path):
    return os.path.basename(path).startswith("libx_")


class Profiles(unittest.TestCase):
    def test_a_sample_counts_where_the_library_is_anywhere_in_its_stack(self):
        script = """
            1f memset (/lib/libc.so.6)
            2f x::read (/opt/libx_one.so.1)
            3f main (/bin/program)

            4f [unknown] ([kernel.kallsyms])
            3f main (/bin/program)

            5f x::f(int) (/opt/libx_two.so)
            2f x::read (/opt/libx_one.so.1)

            6f libx_like (/bin/program)
"""
        self.assertEqual(share_within(script.splitlines(), is_library), (0.5, 4))

    def test_what_has_no_samples_is_no_profile(self):
        self.assertRaises(ValueError, share_within, ["", ""], is_library)


class Table(unittest.TestCase):
    def test_has_all_rows_and_all_calls_succeed(self):
        run = subprocess.run([sys.executable, SCRIPT, ENGINE, "--quick"], capture_output=True, text=True, check=False)
        if run.returncode == SKIPPED:
            self.skipTest(run.stderr)
        self.assertEqual(run.returncode, 0, run.stderr)
        rows = [[cell.strip() for cell in line.split("|")[1:-1]]
                for line in run.stdout.splitlines() if line.startswith("| ")]
        self.assertEqual({len(row) for row in rows}, {COLUMNS})
        left_out = re.findall(r"^left out: (.*): no .*$", run.stdout, re.M)
        self.assertEqual([row[0] for row in rows[1:]], [name for name in ROWS if name not in left_out])
        self.assertEqual({row[1] for row in rows[1:]}, {str(CALLS)})
        for row in rows[1:]:
            self.assertGreater(int(row[2]), 0, row)
            self.assertEqual("Redis" in row[0], row[8] != "", row)


if __name__ == "__main__":
    ENGINE = sys.argv.pop()
    unittest.main()
