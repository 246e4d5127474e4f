"""Remembers which texts passed an expensive rule, so that a second run looks only at what changed."""

import hashlib
import json


class Cache:
    """A set of digests in one file. Entries that a run didn't ask for are dropped when it is saved."""

    def __init__(self, path):
        self.path = path
        self.passed = set()
        self.used = set()
        try:
            self.passed = set(json.loads(path.read_text(encoding="ascii")))
        except (OSError, ValueError):
            pass  # No cache yet, or a damaged one: everything is looked at again.

    def has(self, key):
        self.used.add(key)
        return key in self.passed

    def add(self, key):
        self.passed.add(key)

    def save(self):
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.path.write_text(json.dumps(sorted(self.passed & self.used)), encoding="ascii")


def digest(*parts):
    whole = hashlib.sha256()
    for part in parts:
        data = part.encode("utf-8", "surrogateescape")
        whole.update(len(data).to_bytes(8, "little"))
        whole.update(data)
    return whole.hexdigest()
