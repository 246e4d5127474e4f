"""What the rules need beside the tree: the build folder, its compile commands, and how many processes may run."""

import concurrent.futures
import functools
import json
import os
import pathlib
import shlex

# Words of a compile command that name one file or its by-products; the second list takes the word behind it along.
DROPPED = ("-c", "-MD", "-MMD", "-Winvalid-pch", "-fpch-preprocess")
DROPPED_WITH_NEXT = ("-o", "-MT", "-MF", "-MQ", "-include")


class MissingBuild(Exception):
    """The build folder holds no compile commands yet."""


class Context:
    def __init__(self, root, build):
        self.root = pathlib.Path(root).resolve()
        self.build = pathlib.Path(build).resolve()
        self.jobs = os.cpu_count() or 2

    @functools.cached_property
    def commands(self):
        """Source path relative to the root -> compiler and flags, without what names the file itself."""
        try:
            entries = json.loads((self.build / "compile_commands.json").read_text(encoding="utf-8"))
        except OSError as error:
            raise MissingBuild(f"{error.filename} is missing: configure first (cmake --preset dev)") from error
        found = {}
        for entry in entries:
            path = pathlib.Path(entry["directory"], entry["file"]).resolve()
            if path.is_relative_to(self.root):
                words = entry.get("arguments") or shlex.split(entry["command"])
                found[path.relative_to(self.root).as_posix()] = flags_of(words, entry["file"])
        return found

    def map(self, work, items):
        """Results of `work` over the items, in order, several at a time."""
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            return list(pool.map(work, items))


def flags_of(words, source):
    """The compiler and its flags: no launcher before it, no file names, no precompiled header."""
    start = next(at for at, word in enumerate(words) if is_compiler(word))
    kept = []
    skip = False
    for word in words[start:]:
        if skip or word in DROPPED_WITH_NEXT:
            skip = not skip
        elif word not in DROPPED and word != source:
            kept.append(word)
    return kept


def is_compiler(word):
    name = word.rpartition("/")[2]
    return name.startswith(("g++", "c++", "clang++", "gcc", "cc", "clang")) and not name.startswith("ccache")
