"""Every door works with libraries that fit, and refuses those that do not, with a reason.

Usage: versions_test.py PROBE OLD_HOST OLD_PRODUCT OLD_KIT SCRIPT_PROBE SCRIPT_TOOL

The last two may be empty.
"""

import os
import re
import subprocess
import sys
import unittest

PROBE, OLD_HOST, OLD_PRODUCT, OLD_KIT, SCRIPT_PROBE, TOOL = sys.argv[1:]
HOST = r"libuxtree_Utils 0\.\d+\.\d+ works with hosts of contract 2, not of contract 1"
PRODUCT = r"libuxtree_Utils 0\.1\.0 does not fit libuxtree_kit 0\.\d+\.\d+"
KIT = r"this is version 0\.\d+\.\d+, which does not fit libuxtree_kit 0\.1\.0"


def run(program, *arguments, before=""):
    environment = dict(os.environ, LD_PRELOAD=before, ASAN_OPTIONS="verify_asan_link_order=0")
    done = subprocess.run(
        [program, *arguments], capture_output=True, text=True, check=False, env=environment
    )
    return done.returncode, done.stdout, done.stderr


class Versions(unittest.TestCase):
    def assert_output(self, done, code, output, errors=""):
        self.assertEqual(done[0], code, done)
        self.assertTrue(re.fullmatch(output, done[1]), done)
        self.assertTrue(re.fullmatch(errors, done[2]), done)

    def test_those_that_fit_work(self):
        self.assert_output(run(PROBE), 0, "product: \nremoved: 1\nkit: works\n")

    def test_an_older_host_is_refused(self):
        output = f"product: {HOST}\nremoved: -1\nkit: {HOST}\n"
        self.assert_output(run(PROBE, before=OLD_HOST), 0, output)

    def test_the_kit_refuses_an_older_product(self):
        output = f"product: \nremoved: 1\nkit: {PRODUCT}\n"
        self.assert_output(run(PROBE, before=OLD_PRODUCT), 0, output)

    @unittest.skipUnless(SCRIPT_PROBE, "no scripts are built")
    def test_scripts_refuse_an_older_host(self):
        self.assert_output(run(SCRIPT_PROBE), 0, "1\n")
        self.assert_output(run(SCRIPT_PROBE, before=OLD_HOST), 0, f"refused: error: {HOST}\n")

    @unittest.skipUnless(TOOL, "no tool is built")
    def test_the_tool_runs_scripts_with_none(self):
        for before, reason in ((OLD_HOST, HOST), (OLD_PRODUCT, PRODUCT), (OLD_KIT, KIT)):
            done = run(TOOL, "run", "-e", "print(1);", before=before)
            self.assert_output(done, 4, "", f"uxtree: {reason}\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
