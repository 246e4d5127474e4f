"""The one failure of the header tool: a header that it can't read."""


class HeaderError(Exception):
    """Says where a header is wrong and what to do about it; printed as `file:line: error: ...`."""

    def __init__(self, path, line, message):
        super().__init__(f"{path}:{line}: error: {message}")
