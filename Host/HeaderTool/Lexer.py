"""Turns a C++ header into tokens. Comments become the documentation of the token behind them, conditional blocks are
followed the way the editor build takes them."""

import re
from dataclasses import dataclass, field

from Errors import HeaderError

# The conditions that may surround reflected members: the host always builds them in.
EDITOR_CONDITIONS = ("WITH_EDITOR", "WITH_EDITORONLY_DATA")

PATTERN = re.compile(
    r"""(?P<space>[ \t\r\f\v]+|\\\r?\n)
    |(?P<newline>\n)
    |(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<raw>(?:u8|u|U|L)?R"(?P<delimiter>[^()\\\s]{0,16})\(.*?\)(?P=delimiter)")
    |(?P<string>(?:u8|u|U|L)?"(?:[^"\\\n]|\\.)*")
    |(?P<char>(?:u8|u|U|L)?'(?:[^'\\\n]|\\.)*')
    |(?P<number>\.?\d(?:[eEpP][+-]|'(?=\w)|[\w.])*)
    |(?P<ident>[A-Za-z_]\w*)
    |(?P<directive>\#(?:[^\n\\]|\\\r?\n|\\.)*)
    |(?P<punct>::|->|\.\.\.|&&|.)""",
    re.VERBOSE | re.DOTALL,
)


@dataclass
class Token:
    kind: str  # ident, number, string, char, punct or end
    text: str
    line: int
    doc: str = ""  # the comment that stands directly above, cleaned
    condition: str = ""  # the innermost #if that is not an editor condition, empty at file level
    space_before: bool = False

    def is_punct(self, text):
        return self.kind == "punct" and self.text == text


@dataclass
class _Conditional:
    text: str
    taken: bool
    skipping: bool = field(default=False)


class Lexer:
    def __init__(self, path, text):
        self.path = path
        self.text = text
        self.line = 1
        self.tokens = []
        self.includes = []  # (path, line) of each #include, in order
        self.conditionals = []
        self.comment = []
        self.comment_end = 0

    def run(self):
        spaced = False
        position = 0
        while position < len(self.text):
            match = PATTERN.match(self.text, position)
            kind = match.lastgroup if match.lastgroup != "delimiter" else "raw"
            text = match.group()
            self._check_closed(kind, text, position)
            if kind == "comment":
                self._keep_comment(text)
            elif kind == "directive" and self._starts_line(position):
                self._directive(text)
            elif kind not in ("space", "newline") and not self._skipping():
                self._keep_token("string" if kind == "raw" else "punct" if kind == "directive" else kind, text, spaced)
            spaced = kind in ("space", "newline", "comment")
            self.line += text.count("\n")
            position = match.end()
        if self.conditionals:
            raise HeaderError(self.path, self.line, f"'{self.conditionals[-1].text}' has no #endif")
        self.tokens.append(Token("end", "end of file", self.line))
        return self.tokens

    def _check_closed(self, kind, text, position):
        if self._skipping() or kind != "punct":
            return
        if self.text.startswith("/*", position):
            raise HeaderError(self.path, self.line, "comment has no end; close it with '*/'")
        if text in "\"'":
            raise HeaderError(self.path, self.line, "literal has no end on its line; close its quote")

    def _starts_line(self, position):
        return not self.text[self.text.rfind("\n", 0, position) + 1 : position].strip()

    def _skipping(self):
        return any(entry.skipping for entry in self.conditionals)

    def _keep_token(self, kind, text, spaced):
        doc = ""
        if self.comment and self.comment_end + 1 >= self.line:
            doc = clean_comment(self.comment)
        self.comment = []
        self.tokens.append(Token(kind, text, self.line, doc, self._condition(), spaced))

    def _condition(self):
        for entry in reversed(self.conditionals):
            if entry.text not in EDITOR_CONDITIONS:
                return entry.text
        return ""

    def _keep_comment(self, text):
        if self._skipping():
            return
        if self.tokens and self.tokens[-1].line == self.line:
            return  # a remark behind code documents nothing that follows
        if text.startswith("/*") or self.comment_end + 1 < self.line:
            self.comment = []
        self.comment.append(text)
        self.comment_end = self.line + text.count("\n")

    def _directive(self, text):
        words = re.sub(r"\\\r?\n", " ", text[1:])
        words = re.sub(r"//.*|/\*.*?\*/", "", words).strip()
        name, _, rest = words.partition(" ")
        name, rest = name.strip(), rest.strip()
        if name.startswith("if"):
            condition = rest if name == "if" else f"{name} {rest}"
            hidden = condition in ("0", "CPP")
            self.conditionals.append(_Conditional(condition, not hidden, hidden))
        elif name.startswith("el"):
            self._else(name)
        elif name == "endif":
            if not self.conditionals:
                raise HeaderError(self.path, self.line, "#endif without an #if")
            self.conditionals.pop()
        elif name == "include" and not self._skipping():
            self.includes.append((rest.strip('"<>'), self.line))

    def _else(self, name):
        if not self.conditionals:
            raise HeaderError(self.path, self.line, f"#{name} without an #if")
        entry = self.conditionals[-1]
        entry.skipping = entry.taken
        entry.taken = True
        entry.text = f"#{name} of {entry.text}"


def clean_comment(comments):
    """The text of one block comment or of successive line comments, without its decoration."""
    lines = []
    for comment in comments:
        if comment.startswith("//"):
            lines.append(re.sub(r"^//[/!]?<? ?", "", comment))
        else:
            body = re.sub(r"^/\*+!?|\*+/$", "", comment)
            lines.extend(re.sub(r"^\s*\* ?|^\s+", "", line) for line in body.split("\n"))
    lines = [line.rstrip() for line in lines]
    while lines and not lines[0].strip(" -=*"):
        lines.pop(0)
    while lines and not lines[-1].strip(" -=*"):
        lines.pop()
    return "\n".join(lines).strip()
