"""All C++ stands as .clang-format says."""

import re
import subprocess

from checks.cache import Cache, digest
from checks.tree import Finding

TOOL = "clang-format-14"
BATCH = 20
PLACE = re.compile(r"^(.*?):(\d+):\d+: (?:error|warning): code should be clang-formatted", re.MULTILINE)


def check(tree, context):
    style = (context.root / ".clang-format").read_text(encoding="utf-8")
    cache = Cache(context.build / "check" / "formatting.json")
    keys = {path: digest(style, path, tree.text(path)) for path in tree.files}
    waiting = [path for path in tree.files if not cache.has(keys[path])]
    batches = [waiting[at : at + BATCH] for at in range(0, len(waiting), BATCH)]

    faults = {}
    for found in context.map(lambda batch: misformatted(context.root, batch), batches):
        faults.update(found)
    for path in waiting:
        if path not in faults:
            cache.add(keys[path])
    cache.save()
    return [Finding(path, line, f"not formatted; run {TOOL} -i {path}") for path, line in faults.items()]


def misformatted(root, paths):
    """Path -> first line that differs from the style."""
    command = [TOOL, "--dry-run", "--style=file", *paths]
    done = subprocess.run(command, capture_output=True, text=True, cwd=root, check=True)
    faults = {}
    for match in PLACE.finditer(done.stderr):
        faults.setdefault(match.group(1), int(match.group(2)))
    return faults
