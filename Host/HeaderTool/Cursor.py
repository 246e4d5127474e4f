"""A place in the tokens of one header, with the moves that every part of the parser needs."""

import ast
import re

from Errors import HeaderError

CLOSERS = {"(": ")", "{": "}", "[": "]"}


class Cursor:
    def __init__(self, path, tokens):
        self.path = path
        self.tokens = tokens
        self.index = 0

    @property
    def token(self):
        return self.tokens[self.index]

    def peek(self, ahead=1):
        return self.tokens[min(self.index + ahead, len(self.tokens) - 1)]

    def at_end(self):
        return self.token.kind == "end"

    def at(self, *texts):
        return self.token.kind in ("punct", "ident") and self.token.text in texts

    def advance(self):
        token = self.token
        if not self.at_end():
            self.index += 1
        return token

    def accept(self, *texts):
        return self.advance() if self.at(*texts) else None

    def expect(self, text, why):
        if not self.at(text):
            raise self.error(f"expected '{text}' {why}, found '{self.token.text}'")
        return self.advance()

    def identifier(self, what):
        if self.token.kind != "ident":
            raise self.error(f"expected {what}, found '{self.token.text}'")
        return self.advance()

    def error(self, message, line=None):
        return HeaderError(self.path, line or self.token.line, message)

    def skip_group(self):
        """Moves behind the bracket that closes the one at hand; answers the index behind."""
        opener = self.advance()
        closer = CLOSERS[opener.text]
        while not self.at(closer):
            if self.at_end():
                raise self.error(f"'{opener.text}' has no matching '{closer}'", opener.line)
            if self.token.kind == "punct" and self.token.text in CLOSERS:
                self.skip_group()
            else:
                self.advance()
        self.advance()
        return self.index

    def text_between(self, start, end):
        """The source text of a range of tokens, with single blanks where the source has any."""
        parts = []
        for index in range(start, end):
            token = self.tokens[index]
            parts.append((" " if token.space_before and parts else "") + token.text)
        return "".join(parts)

    def strings(self):
        """Adjacent string literals as one decoded text."""
        parts = []
        while self.token.kind == "string":
            parts.append(decode_string(self.advance().text))
        return "".join(parts)


def decode_string(literal):
    """The value of a C++ string literal, raw ones too."""
    raw = re.match(r'\w*R"([^()\\\s]*)\((.*)\)\1"$', literal, re.DOTALL)
    if raw:
        return raw.group(2)
    body = literal[literal.index('"') :]
    return ast.literal_eval(body.replace("\\?", "?"))
