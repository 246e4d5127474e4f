"""Reads what stands behind a macro or between members: specifier lists, types, variables, functions; and steps over
declarations that nobody reflects."""

import re

from Cursor import Cursor
from Errors import HeaderError
from Model import Function, Property, TypeRef

FUNCTION_PREFIXES = ("virtual", "static", "inline", "FORCEINLINE", "FORCENOINLINE", "explicit", "constexpr", "friend")
ELABORATED = ("class", "struct", "enum", "typename")


def read_specifiers(cursor):
    """`(A, B=1, meta=(C="x", D))` as ([(name, value or None, line)], {meta})."""
    cursor.expect("(", "behind the macro")
    specifiers, meta = [], {}
    while not cursor.accept(")"):
        if cursor.at_end():
            raise cursor.error("the macro's '(' has no matching ')'")
        name = cursor.identifier("a specifier")
        if name.text.lower() == "meta":
            cursor.expect("=", "behind 'meta'")
            _read_meta(cursor, meta)
        else:
            specifiers.append((name.text, _read_value(cursor) if cursor.accept("=") else None, name.line))
        if not cursor.at(")"):
            cursor.expect(",", "between specifiers")
    return specifiers, meta


def _read_meta(cursor, meta):
    cursor.expect("(", "behind 'meta='")
    while not cursor.accept(")"):
        if cursor.at_end():
            raise cursor.error("'meta=(' has no matching ')'")
        key = cursor.identifier("a meta key").text
        meta[key] = _read_value(cursor) if cursor.accept("=") else ""
        if not cursor.at(")"):
            cursor.expect(",", "between meta keys")


def _read_value(cursor):
    if cursor.token.kind == "string":
        return cursor.strings()
    if cursor.accept("("):
        values = []
        while not cursor.accept(")"):
            values.append(_read_value(cursor))
            if not cursor.at(")"):
                cursor.expect(",", "between values")
        return " ".join(values)
    start = cursor.index
    cursor.accept("-", "+")
    if cursor.token.kind not in ("ident", "number"):
        raise cursor.error(f"expected a value behind '=', found '{cursor.token.text}'; quote free text")
    cursor.advance()
    while cursor.accept("::", "|", "."):
        cursor.identifier("a name")
    return cursor.text_between(start, cursor.index)


def read_type(cursor):
    is_const = False
    while cursor.at("const", *ELABORATED):
        is_const |= cursor.advance().text == "const"
    name = cursor.identifier("a type").text
    while cursor.accept("::"):
        name += "::" + cursor.identifier("the rest of a qualified name").text
    type_ref = TypeRef(name, is_const=is_const)
    if cursor.accept("<"):
        while not cursor.accept(">"):
            type_ref.arguments.append(read_type(cursor))
            if not cursor.at(">"):
                cursor.expect(",", "between template arguments")
    while cursor.at("const", "*", "&", "&&"):
        token = cursor.advance()
        type_ref.is_const |= token.text == "const" and not type_ref.pointers
        type_ref.pointers += token.text == "*"
        type_ref.is_reference |= token.text == "&"
        if token.text == "&&":
            raise cursor.error("a reflected type can't be an rvalue reference; take the value or a const reference")
    return type_ref


def read_variable(cursor):
    """A data member up to and with its ';'."""
    line = cursor.token.line
    while cursor.at("mutable", "UE_DEPRECATED") or _is_api_macro(cursor.token):
        if cursor.advance().text == "UE_DEPRECATED":
            cursor.skip_group()
    if cursor.at("static"):
        raise cursor.error("a static member can't be a UPROPERTY; remove the macro or 'static'")
    type_ref = read_type(cursor)
    if type_ref.is_reference:
        raise cursor.error("a reference can't be a UPROPERTY; hold the value or a pointer to an object")
    name = cursor.identifier("the property's name")
    variable = Property(name.text, type_ref, line)
    if cursor.at("("):
        raise cursor.error("UPROPERTY stands before a function; use UFUNCTION", name.line)
    if cursor.at("["):
        start = cursor.index + 1
        variable.dimension = cursor.text_between(start, cursor.skip_group() - 1)
    if cursor.accept(":"):
        cursor.advance()
        variable.is_bitfield = True
    _skip_initializer(cursor, name)
    return variable


def _skip_initializer(cursor, name):
    if cursor.at("{"):
        cursor.skip_group()
    elif cursor.accept("="):
        while not cursor.at(";"):
            if cursor.at_end() or cursor.at("}"):
                raise cursor.error(f"the initializer of '{name.text}' has no ';'", name.line)
            cursor.skip_group() if cursor.at("(", "{", "[") else cursor.advance()
    if cursor.at(","):
        raise cursor.error("a UPROPERTY declares one member; give each its own line and macro", name.line)
    cursor.expect(";", f"behind property '{name.text}'")


def read_function(cursor):
    """A member function up to and with its ';' or body."""
    line = cursor.token.line
    prefixes = _read_prefixes(cursor)
    if "friend" in prefixes:
        raise cursor.error("a friend can't be a UFUNCTION", line)
    returned = read_type(cursor)
    name = cursor.identifier("the function's name")
    if not cursor.at("("):
        raise cursor.error("UFUNCTION stands before a variable; use UPROPERTY", name.line)
    function = Function(name.text, line, is_static="static" in prefixes)
    function.parameters = _read_parameters(cursor, function)
    if returned.name != "void" or returned.pointers:
        function.parameters.append(Property("ReturnValue", returned, line))
    _read_function_tail(cursor, function)
    return function


def _read_prefixes(cursor):
    prefixes = set()
    while cursor.at("UE_DEPRECATED", *FUNCTION_PREFIXES) or _is_api_macro(cursor.token):
        token = cursor.advance()
        prefixes.add(token.text)
        if token.text == "UE_DEPRECATED":
            cursor.skip_group()
    return prefixes


def _is_api_macro(token):
    return token.kind == "ident" and re.fullmatch(r"[A-Z0-9_]+_API", token.text)


def _read_parameters(cursor, function):
    parameters = []
    cursor.expect("(", "before the parameters")
    if cursor.at("void") and cursor.peek().is_punct(")"):
        cursor.advance()
    while not cursor.accept(")"):
        parameters.append(_read_parameter(cursor, function))
        if not cursor.at(")"):
            cursor.expect(",", "between parameters")
    return parameters


def _read_parameter(cursor, function):
    specifiers, meta = [], {}
    if cursor.accept("UPARAM"):
        specifiers, meta = read_specifiers(cursor)
    line = cursor.token.line
    type_ref = read_type(cursor)
    if cursor.token.kind != "ident":
        raise cursor.error(f"a parameter of '{function.name}' has no name; reflected parameters need one")
    parameter = Property(cursor.advance().text, type_ref, line, meta=meta)
    for name, value, _ in specifiers:
        if name == "ref":
            parameter.flags.append("CPF_ReferenceParm")
        else:
            meta[name] = value or ""
    if cursor.accept("="):
        _read_default(cursor, function, parameter)
    return parameter


def _read_default(cursor, function, parameter):
    start = cursor.index
    angle = 0
    while not (cursor.at(")") or (cursor.at(",") and angle == 0)):
        if cursor.at_end():
            raise cursor.error(f"the default of '{parameter.name}' has no end", parameter.line)
        angle += {"<": 1, ">": -1}.get(cursor.token.text, 0)
        cursor.skip_group() if cursor.at("(", "{", "[") else cursor.advance()
    tokens = cursor.tokens[start : cursor.index]
    literals = [token for token in tokens if token.kind == "string"]
    words = [token.text for token in tokens if token.kind == "ident"]
    wrapped = all(word in ("TEXT", "FName", "FString", "FText", "FromString", "INVTEXT") for word in words)
    value = Cursor(cursor.path, literals + [cursor.tokens[-1]]).strings() if literals and wrapped else None
    parameter.default = ("".join(token.text for token in tokens), value)


def _read_function_tail(cursor, function):
    while True:
        if cursor.at("{"):
            cursor.skip_group()
            return
        if cursor.accept(";"):
            return
        if cursor.at_end() or cursor.at("}"):
            raise cursor.error(f"function '{function.name}' has neither ';' nor a body", function.line)
        function.is_const |= cursor.advance().text == "const"


def skip_declaration(cursor):
    """Steps over one member or statement that isn't reflected; answers its tokens up to the first body or ';'."""
    start = cursor.index
    has_parameters = False
    is_type = cursor.at("class", "struct", "union", "enum", "namespace", "extern", "typedef", "using")
    has_value = False
    in_initializers = False
    while not cursor.at_end() and not cursor.at("}"):
        if cursor.accept(";"):
            break
        if cursor.at("operator") and not has_parameters:
            _skip_operator_name(cursor)
        elif cursor.at("(", "["):
            has_parameters |= cursor.at("(")
            cursor.skip_group()
        elif cursor.at(":") and has_parameters:
            cursor.advance()
            in_initializers = True
        elif cursor.at("{"):
            is_member_initializer = in_initializers and cursor.peek(-1).kind == "ident"
            end = cursor.index
            cursor.skip_group()
            if not is_member_initializer and has_parameters and not has_value and not is_type:
                return cursor.tokens[start:end]
            if cursor.tokens[start].text in ("namespace", "extern"):
                return cursor.tokens[start:end]
        else:
            has_value |= cursor.at("=")
            cursor.advance()
    return cursor.tokens[start : cursor.index]


def _skip_operator_name(cursor):
    cursor.advance()
    if cursor.accept("("):
        cursor.expect(")", "of operator()")
    while not cursor.at("(", ";") and not cursor.at_end():
        cursor.advance()


def refuse_condition(path, token, macro):
    if token.condition:
        raise HeaderError(
            path,
            token.line,
            f"{macro} inside '#if {token.condition}'; only WITH_EDITOR and WITH_EDITORONLY_DATA may surround it",
        )
