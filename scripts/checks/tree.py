"""The source tree as the rules see it: files, their text, their code without comments, and what they include."""

import dataclasses
import functools
import pathlib
import re

ROOTS = ("Host", "Source", "Tests", "Fuzz", "Benchmarks")
CPP_SUFFIXES = (".h", ".cpp")
# Data that tests compare with or feed to the tools: no part of the program, so no rule applies to it.
DATA_FOLDERS = ("Golden", "Expected", "Inputs", "Fixtures", "Corpus")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"\n]+)"|<([^>\n]+)>)', re.MULTILINE)
LITERAL = re.compile(
    r"""//(?:\\\n|[^\n])*                                   # line comment
      | /\*.*?\*/                                           # block comment
      | \#[ \t]*include[ \t]*[<"][^>"\n]*[>"]               # kept: an include is no string
      | R"(?P<mark>[^()\s\\"]{0,16})\(.*?\)(?P=mark)"       # raw string
      | "(?:\\.|[^"\\\n])*"                                 # string
      | (?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'                 # character, and no digit separator
    """,
    re.DOTALL | re.VERBOSE,
)


@dataclasses.dataclass(frozen=True, order=True)
class Finding:
    """One fault: where it is and what to do about it."""

    path: str
    line: int
    message: str

    def __str__(self):
        return f"{self.path}:{self.line}: {self.message}"


@dataclasses.dataclass(frozen=True)
class Include:
    """One include line. `target` is the path of the file in the tree that it means, or None for a foreign header."""

    line: int
    name: str
    target: str | None


def blank_literals(text):
    """The text with comments and literals turned to spaces; line breaks and include lines stay where they are."""

    def blank(match):
        found = match.group(0)
        return found if found.startswith("#") else re.sub(r"[^\n]", " ", found)

    return LITERAL.sub(blank, text)


def line_of(text, offset):
    """The line, counted from 1, that holds the offset."""
    return text.count("\n", 0, offset) + 1


class Tree:
    """All C++ files of the project. Paths are text relative to the root, with forward slashes."""

    def __init__(self, root):
        self.root = pathlib.Path(root).resolve()
        self.files = sorted(self._walk(CPP_SUFFIXES))
        self._known = set(self.files)

    def _walk(self, suffixes):
        for top in ROOTS:
            for path in (self.root / top).rglob("*"):
                relative = path.relative_to(self.root)
                if path.suffix in suffixes and path.is_file() and not set(relative.parts) & set(DATA_FOLDERS):
                    yield relative.as_posix()

    @functools.cached_property
    def headers(self):
        return [path for path in self.files if path.endswith(".h")]

    @functools.cached_property
    def sources(self):
        return [path for path in self.files if path.endswith(".cpp")]

    @functools.lru_cache(maxsize=None)
    def text(self, path):
        return (self.root / path).read_text(encoding="utf-8", errors="replace")

    @functools.lru_cache(maxsize=None)
    def code(self, path):
        return blank_literals(self.text(path))

    @functools.lru_cache(maxsize=None)
    def includes(self, path):
        code = self.code(path)
        found = []
        for match in INCLUDE.finditer(code):
            name = match.group(1) or match.group(2)
            found.append(Include(line_of(code, match.start()), name, self._resolve(path, name, bool(match.group(1)))))
        return tuple(found)

    @functools.cached_property
    def _include_folders(self):
        publics = {path[: path.index("/Public/") + 8] for path in self.files if "/Public/" in path}
        return sorted(publics) + ["Source/Corvexa/Private/", "Tests/"]

    def _resolve(self, path, name, quoted):
        folders = list(self._include_folders)
        if "/Private/" in path:
            folders.insert(0, path[: path.index("/Private/") + 9])
        if quoted:
            folders.insert(0, path.rpartition("/")[0] + "/")
        for folder in folders:
            candidate = _normal(folder + name)
            if candidate in self._known:
                return candidate
        # A path from the root, or into another module's private folder: found by its tail when that is unique.
        tails = [known for known in self.files if known.endswith("/" + name)] if quoted and "/" in name else []
        return tails[0] if len(tails) == 1 else None

    def closure(self, path):
        """The path and every file of the tree that it includes, directly or not, sorted."""
        seen = {path}
        waiting = [path]
        while waiting:
            for include in self.includes(waiting.pop()):
                if include.target and include.target not in seen:
                    seen.add(include.target)
                    waiting.append(include.target)
        return sorted(seen)


def _normal(path):
    parts = []
    for part in path.split("/"):
        if part == ".." and parts:
            parts.pop()
        elif part not in ("", "."):
            parts.append(part)
    return "/".join(parts)
