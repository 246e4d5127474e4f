"""The generated code of the input headers, compared with the files under Expected.

    python3 Tests/Host/HeaderTool/TestGolden.py --rewrite

writes the expected files anew, for review."""

import os
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "..", "Host", "HeaderTool"))

import HeaderTool  # noqa: E402

MODULE = "Weapons"
INPUTS = ["Inputs/Weapon.h", "Inputs/Interfaces.h"]


def generate():
    previous = os.getcwd()
    os.chdir(HERE)
    try:
        return HeaderTool.generate(MODULE, INPUTS)
    finally:
        os.chdir(previous)


class GoldenTest(unittest.TestCase):
    maxDiff = None

    def test_generated_code_is_the_reviewed_code(self):
        for name, text in generate().items():
            with self.subTest(name), open(os.path.join(HERE, "Expected", name + ".txt"), encoding="utf-8") as file:
                self.assertMultiLineEqual(file.read(), text)

    def test_a_second_run_leaves_the_files_alone(self):
        with tempfile.TemporaryDirectory() as folder:
            previous = os.getcwd()
            os.chdir(HERE)
            try:
                arguments = ["--module", MODULE, "--out", folder] + INPUTS
                self.assertEqual(HeaderTool.main(arguments), 0)
                path = os.path.join(folder, "Weapon.generated.h")
                os.utime(path, ns=(1, 1))
                self.assertEqual(HeaderTool.main(arguments), 0)
                self.assertEqual(os.stat(path).st_mtime_ns, 1)
                with open(path, "w", encoding="utf-8") as file:
                    file.write("stale")
                self.assertEqual(HeaderTool.main(arguments), 0)
                self.assertGreater(os.path.getsize(path), len("stale"))
            finally:
                os.chdir(previous)


if __name__ == "__main__":
    if "--rewrite" in sys.argv:
        os.makedirs(os.path.join(HERE, "Expected"), exist_ok=True)
        for file_name, contents in generate().items():
            HeaderTool.write_if_changed(os.path.join(HERE, "Expected", file_name + ".txt"), contents)
    else:
        unittest.main()
