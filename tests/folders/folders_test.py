"""The folders of src/: what their include lines say, what their build lets them include, and the picture of both.

    folders_test.py PROJECT_FOLDER BUILD_FOLDER
"""
import json
import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(sys.argv.pop(1))
BUILD = pathlib.Path(sys.argv.pop(1))
SCRIPT = PROJECT / "scripts/folders"


def run_script(*arguments):
    return subprocess.run([SCRIPT, *arguments], capture_output=True, text=True)


class TheSources(unittest.TestCase):
    def test_no_circle_and_no_upward_include(self):
        self.assertEqual("", run_script("check", PROJECT).stderr)

    def test_every_header_stands_alone(self):
        self.assertEqual("", run_script("alone", PROJECT).stderr)

    def test_the_picture_is_that_of_the_code(self):
        self.assertEqual((BUILD / "folders.svg").read_text(), (PROJECT / "docs/folders.svg").read_text(),
                         "draw it again: scripts/folders draw docs/folders.svg")


class TheBuild(unittest.TestCase):
    """What the compiler finds, with the very flags of a source of each folder."""

    def setUp(self):
        text = (PROJECT / "CMakeLists.txt").read_text()
        self.order = [line.split("(")[1].split()[0] for line in text.splitlines()
                      if line.startswith("tallymoor_library(")]
        self.commands = {}
        for entry in json.loads((BUILD / "compile_commands.json").read_text()):
            source = pathlib.Path(entry["file"])
            if source.parent.parent == PROJECT / "src":
                words = shlex.split(entry["command"])
                self.commands[source.parent.name] = [
                    word for at, word in enumerate(words)
                    if word.startswith("-I") or words[at - 1] == "-isystem" or word == "-isystem"]

    def finds(self, folder, other):
        """Whether a source of the folder can include a header of the other one."""
        header = min((PROJECT / "src" / other).glob("*.h")).name
        run = subprocess.run(["c++", "-std=c++20", *self.commands[folder], "-E", "-x", "c++", "-o", "/dev/null", "-"],
                             input=f'#include "{other}/{header}"\n', capture_output=True, text=True)
        if run.returncode != 0:
            self.assertIn(f"{other}/{header}: No such file", run.stderr)
        return run.returncode == 0

    def test_every_folder_finds_itself(self):
        self.assertGreater(len(self.order), 10)
        for folder in self.order:
            self.assertTrue(self.finds(folder, folder), folder)

    def test_no_folder_finds_a_higher_one(self):
        for at, folder in enumerate(self.order):
            for higher in self.order[at + 1:]:
                self.assertFalse(self.finds(folder, higher), f"{folder} can include {higher}")



class TheScript(unittest.TestCase):
    """Small houses with one thing wrong."""

    def say(self, command, **files):
        with tempfile.TemporaryDirectory() as scratch:
            root = pathlib.Path(scratch)
            (root / "CMakeLists.txt").write_text("tallymoor_library(lower)\ntallymoor_library(upper USES lower)\n")
            for name, text in files.items():
                folder, file, suffix = name.split("_")
                path = root / "src" / folder / f"{file}.{suffix}"
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            run = run_script(command, root)
            self.assertEqual(1 if run.stderr else 0, run.returncode)
            return run.stderr.strip()

    def test_a_downward_include_is_right(self):
        self.assertEqual("", self.say("check", lower_A_h="", upper_B_h='#include "lower/A.h"\n'))

    def test_an_upward_include_is_found(self):
        self.assertEqual("src/lower/A.cpp includes the higher folder upper",
                         self.say("check", lower_A_cpp='#include "upper/B.h"\n', upper_B_h=""))

    def test_a_circle_is_found(self):
        self.assertEqual(
            "files include each other in a circle: src/lower/A.h -> src/lower/B.h -> src/lower/C.h -> src/lower/A.h",
            self.say("check", lower_A_h='#include "lower/B.h"\n', lower_B_h='#include "lower/C.h"\n',
                     lower_C_h='#include "lower/A.h"\n'))

    def test_a_header_that_counts_on_the_precompiled_ones_is_found(self):
        self.assertEqual("src/lower/A.h uses std::vector without <vector>",
                         self.say("alone", lower_A_h="std::vector<int> numbers();\n"))
        self.assertEqual("", self.say("alone", lower_A_h="#include <vector>\nstd::vector<int> numbers();\n"))
        self.assertEqual("", self.say("alone", lower_A_h="// as a std::vector\n"))

    def test_a_class_that_is_only_named_needs_no_header(self):
        self.assertEqual("", self.say("alone", lower_A_h="class FXWindow;\nvoid show(FXWindow*);\n"))
        self.assertEqual("src/lower/A.h uses FXWindow without <fx.h>", self.say("alone", lower_A_h="void show(FXWindow*);\n"))

    def test_a_source_includes_its_own_header_first(self):
        self.assertEqual("src/lower/A.cpp does not include its own header first",
                         self.say("alone", lower_A_h="", lower_B_h="",
                                  lower_A_cpp='#include "lower/B.h"\n#include "lower/A.h"\n'))


if __name__ == "__main__":
    unittest.main()
