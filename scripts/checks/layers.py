"""Layers: an include may run downward or sideways, never upward, and no files include each other in a loop."""

import fnmatch

from checks.tree import Finding

# Folder -> level. The longest matching folder counts. Everything may include what stands on its level or lower.
LEVELS = {
    "Host/Core": 0,
    "Host/Loopback": 0,
    "Host/CoreUObject": 1,
    "Host/Engine": 2,
    "Host/Slate": 3,
    "Host/Editor": 4,
    "Source/Corvexa/Private/Core": 10,
    "Source/Corvexa/Private/Diagnostics": 10,
    "Source/Corvexa/Private/HTTP": 10,
    "Source/Corvexa/Private/Providers": 20,
    "Source/Corvexa/Private/Tools": 20,
    "Source/Corvexa/Private/Knowledge": 20,
    "Source/Corvexa/Private/SemanticSearch": 20,
    "Source/Corvexa/Private/Mentions": 20,
    "Source/Corvexa/Private/MCP": 20,
    "Source/Corvexa/Private/Agent": 30,
    "Source/Corvexa/Private/UI": 40,
    "Source/Corvexa": 50,
    "Host/Launch": 60,
    "Tests": 70,
    "Benchmarks": 70,
    "Fuzz": 70,
}

# (includer, included, reason). Patterns as of a shell; one entry for each true exception.
EXCEPTIONS = [
    (
        "Source/Corvexa/Private/Tools/CVXToolExecutor.cpp",
        "Source/Corvexa/Private/Agent/CVXApprovalManager.h",
        "the executor asks the approval manager before it runs a tool",
    ),
    (
        "Source/Corvexa/Private/Tools/*Conversation*.cpp",
        "Source/Corvexa/Private/Agent/Tasks/CVXTaskManager.h",
        "the conversation tools start, finish and question tasks",
    ),
]


def level_of(path):
    """(folder, level) of a path, or None where no layer is declared."""
    folders = [folder for folder in LEVELS if path.startswith(folder + "/")]
    if not folders:
        return None
    folder = max(folders, key=len)
    return folder, LEVELS[folder]


def module_of(path):
    """The folder that holds Public and Private, or None outside a module."""
    for part in ("/Private/", "/Public/"):
        if part in path:
            return path.partition(part)[0]
    return None


def is_excepted(path, target):
    return any(fnmatch.fnmatch(path, source) and fnmatch.fnmatch(target, to) for source, to, _ in EXCEPTIONS)


def fault_of(path, target):
    """What is wrong with this include, or None."""
    here, there = level_of(path), level_of(target)
    if here is None:
        return "this folder has no level; give it one in scripts/checks/layers.py"
    if there is not None and there[1] > here[1] and not is_excepted(path, target):
        return f"{here[0]} may not include {there[0]}, which stands above it; use a delegate or an interface"
    foreign = module_of(path) != module_of(target)
    if foreign and "/Private/" in target and target.startswith("Host/") and not path.startswith(("Tests/", "Fuzz/")):
        return "this header is private to another module; include a public one"
    return None


def check_layers(tree):
    findings = []
    for path in tree.files:
        for include in tree.includes(path):
            message = fault_of(path, include.target) if include.target else None
            if message:
                findings.append(Finding(path, include.line, f"{message} ({include.name})"))
    return findings


def check_cycles(tree):
    """Each loop is reported once, at the include that closes it."""
    findings = []
    done = set()

    def visit(path, trail):
        trail.append(path)
        for include in tree.includes(path):
            target = include.target
            if target is None or target in done:
                continue
            if target in trail:
                loop = trail[trail.index(target):] + [target]
                findings.append(Finding(path, include.line, "include loop: " + " -> ".join(loop)))
                continue
            visit(target, trail)
        trail.pop()
        done.add(path)

    for path in tree.files:
        if path not in done:
            visit(path, [])
    return findings


def check(tree, context):
    del context
    return check_layers(tree) + check_cycles(tree)
