"""Reads the reflected headers of a module and writes their reflection code.

    HeaderTool.py --module NAME --out DIR header...

Writes DIR/X.generated.h for each header and DIR/NAME.gen.cpp; a file whose text stays the same isn't touched, so that
nothing is rebuilt for it. Exit status: 0 done, 1 a header can't be read (`file:line: error: ...` on standard error),
2 wrong usage."""

import argparse
import os
import sys

from Errors import HeaderError
from HeaderEmitter import emit_header
from Model import Module
from Parser import Parser
from Resolver import Resolver
from SourceEmitter import emit_source


def main(arguments):
    options = _parse_arguments(arguments)
    try:
        outputs = generate(options.module, options.headers)
    except HeaderError as error:
        print(error, file=sys.stderr)
        return 1
    os.makedirs(options.out, exist_ok=True)
    for name, text in outputs.items():
        write_if_changed(os.path.join(options.out, name), text)
    return 0


def _parse_arguments(arguments):
    parser = argparse.ArgumentParser(prog="HeaderTool.py", description="Writes the reflection code of a module.")
    parser.add_argument("--module", required=True, help="the module's name, which is also its package's")
    parser.add_argument("--out", required=True, help="the folder for the generated files")
    parser.add_argument("headers", nargs="+", help="the headers that declare reflected types")
    return parser.parse_args(arguments)


def generate(module_name, paths):
    """The generated files as {name: text}."""
    module = Module(module_name)
    names = {}
    for path in paths:
        header = Parser(path, _read(path)).run()
        if header.name in names:
            raise HeaderError(path, 1, f"{names[header.name]} has the same file name; a module's headers need distinct ones")
        names[header.name] = path
        module.headers.append(header)
    Resolver(module).run()
    outputs = {f"{header.name}.generated.h": emit_header(module, header) for header in module.headers}
    outputs[f"{module_name}.gen.cpp"] = emit_source(module)
    return outputs


def _read(path):
    try:
        with open(path, encoding="utf-8-sig", newline="") as file:
            return file.read()
    except OSError as error:
        raise HeaderError(path, 1, f"can't open the header: {error.strerror}") from error
    except UnicodeDecodeError as error:
        raise HeaderError(path, 1, "the header isn't UTF-8; save it with that encoding") from error


def write_if_changed(path, text):
    data = text.encode("utf-8")
    try:
        with open(path, "rb") as file:
            if file.read() == data:
                return
    except FileNotFoundError:
        pass
    with open(path, "wb") as file:
        file.write(data)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
