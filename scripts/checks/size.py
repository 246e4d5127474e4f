"""No file grows past what a person reads at a sitting."""

from checks.tree import Finding

MAX_LINES = 1000


def check(tree, context):
    del context
    findings = []
    for path in tree.files:
        lines = tree.text(path).count("\n")
        if lines > MAX_LINES:
            findings.append(Finding(path, MAX_LINES + 1, f"{lines} lines; split the file, {MAX_LINES} is the limit"))
    return findings
