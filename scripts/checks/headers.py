"""Every header compiles alone: it includes or declares all that it names."""

import os
import subprocess

from checks.cache import Cache, digest
from checks.tree import Finding


def check(tree, context):
    cache = Cache(context.build / "check" / "headers.json")
    waiting = []
    for header in tree.headers:
        flags = flags_for(header, context.commands)
        if flags is None:
            continue  # Its module builds nothing in this configuration, as the benchmarks outside `release`.
        key = digest(*flags, *(part for path in tree.closure(header) for part in (path, tree.text(path))))
        if not cache.has(key):
            waiting.append((header, flags, key))

    findings = []
    faults = context.map(lambda item: compile_alone(context.root, item[0], item[1]), waiting)
    for (_, _, key), fault in zip(waiting, faults):
        if fault:
            findings.append(fault)
        else:
            cache.add(key)
    cache.save()
    return findings


def flags_for(header, commands):
    """The flags of the built source that stands nearest to the header."""
    module = header.partition("/Public/")[0].partition("/Private/")[0]
    nearest = max(commands, key=lambda source: len(os.path.commonprefix([source, header])), default=None)
    if nearest is None:
        return None
    shared = os.path.commonprefix([nearest, header])
    if "/Public/" in header or "/Private/" in header:
        return commands[nearest] if shared.startswith(module + "/") else None
    return commands[nearest] if "/" in shared else None


def compile_alone(root, header, flags):
    """A finding at the first diagnostic, or None when the header compiles."""
    command = [*flags, "-fsyntax-only", "-x", "c++", "-"]
    unit = f'#include "{root / header}"\n'
    plain = {**os.environ, "LC_ALL": "C"}
    done = subprocess.run(command, input=unit, capture_output=True, text=True, cwd=root, env=plain, check=False)
    if done.returncode == 0:
        return None
    errors = [line for line in done.stderr.splitlines() if "error:" in line]
    first = (errors or done.stderr.splitlines() or ["the compiler failed without a word"])[0]
    return Finding(header, 1, "does not stand alone: " + first.replace(f"{root}/", ""))
