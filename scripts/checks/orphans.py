"""Every source and test file is built by some target: a test that nothing builds checks nothing."""

from checks.tree import Finding

BUILT = ("Host/", "Source/", "Tests/", "Fuzz/")


def check(tree, context):
    return [
        Finding(path, 1, "no target builds this file; see the CMakeLists.txt of its folder")
        for path in tree.sources
        if path.startswith(BUILT) and path not in context.commands
    ]
