"""Reads a header into the model: every UCLASS, USTRUCT, UENUM, UINTERFACE and dynamic delegate of it."""

import re

import Specifiers
from Cursor import Cursor
from Declarations import (
    read_function,
    read_specifiers,
    read_type,
    read_variable,
    refuse_condition,
    skip_declaration,
)
from Lexer import Lexer
from Model import Class, Delegate, Enum, Enumerator, Header, Property, Struct

TYPE_MACROS = ("UCLASS", "USTRUCT", "UENUM", "UINTERFACE", "UDELEGATE")
MEMBER_MACROS = ("UPROPERTY", "UFUNCTION")
BODY_MACROS = ("GENERATED_BODY", "GENERATED_UCLASS_BODY", "GENERATED_USTRUCT_BODY", "GENERATED_UINTERFACE_BODY")
DELEGATE = re.compile(r"DECLARE_DYNAMIC_(MULTICAST_)?DELEGATE(_RetVal)?(_(One|Two|Three|Four|Five|Six|Seven|Eight)Params?)?")
COUNTS = {None: 0, "One": 1, "Two": 2, "Three": 3, "Four": 4, "Five": 5, "Six": 6, "Seven": 7, "Eight": 8}


class Parser:
    def __init__(self, path, text):
        name = re.split(r"[/\\]", path)[-1].rsplit(".", 1)[0]
        lexer = Lexer(path, text)
        self.path = path
        self.cursor = Cursor(path, lexer.run())
        self.includes = lexer.includes
        self.header = Header(path, name)
        self.access = "private"

    def run(self):
        while not self.cursor.at_end():
            self._top_level()
        self._check_include()
        return self.header

    def _top_level(self):
        cursor = self.cursor
        token = cursor.token
        if token.kind == "ident" and token.text in TYPE_MACROS:
            self._reflected_type(cursor.advance())
        elif token.kind == "ident" and DELEGATE.fullmatch(token.text):
            self._delegate({}, token.doc)
        elif token.kind == "ident" and token.text in MEMBER_MACROS:
            raise cursor.error(f"{token.text} outside a reflected type; give its class UCLASS() and GENERATED_BODY()")
        elif cursor.at("class") and re.match(r"I[A-Z]", self._declared_name()):
            self._maybe_native_interface()
        else:
            self._skip_unreflected()

    def _skip_unreflected(self):
        start = self.cursor.index
        skip_declaration(self.cursor)
        if self.cursor.index == start:
            self.cursor.advance()
        for token in self.cursor.tokens[start : self.cursor.index]:
            if token.kind == "ident" and token.text in TYPE_MACROS:
                raise self.cursor.error(
                    f"{token.text} inside a namespace or another type; move it to file level", token.line
                )

    def _declared_name(self):
        for ahead in range(1, 4):
            token = self.cursor.peek(ahead)
            if token.kind == "ident" and not token.text.endswith("_API"):
                return token.text
        return ""

    def _check_include(self):
        header = self.header
        wanted = f"{header.name}.generated.h"
        reflects = header.classes or header.structs or header.enums or header.delegates
        found = [(path, line) for path, line in self.includes if path.endswith(".generated.h")]
        if not found:
            if reflects:
                line = (header.classes + header.structs + header.enums + header.delegates)[0].line
                raise self.cursor.error(f'missing include; add #include "{wanted}" as the last include', line)
            return
        path, line = found[0]
        if path.split("/")[-1] != wanted:
            raise self.cursor.error(f"'{path}' belongs to another header; include \"{wanted}\"", line)
        last_path, last_line = self.includes[-1]
        if last_path != path:
            raise self.cursor.error(f"'{last_path}' stands behind '{wanted}', which must be the last include", last_line)

    def _reflected_type(self, macro):
        refuse_condition(self.path, macro, macro.text)
        specifiers, meta = read_specifiers(self.cursor)
        if macro.text == "UENUM":
            self._enum(macro, specifiers, meta)
        elif macro.text == "USTRUCT":
            self._struct(macro, specifiers, meta)
        elif macro.text == "UDELEGATE":
            self._delegate(meta, macro.doc)
        else:
            self._class(macro, specifiers, meta)

    def _describe(self, target, macro, specifiers, meta):
        """Applies specifiers, then meta data, then the comment as ToolTip when no other was given."""
        found = Specifiers.apply(self.path, macro.text, specifiers, target)
        target.meta.update(meta)
        if macro.doc and "ToolTip" not in target.meta:
            target.meta["ToolTip"] = macro.doc
        return found

    # Enumerations

    def _enum(self, macro, specifiers, meta):
        cursor = self.cursor
        cursor.expect("enum", "behind UENUM()")
        is_class = bool(cursor.accept("class", "struct"))
        name = cursor.identifier("the enumeration's name")
        self._check_prefix(name, "E", "an enumeration")
        underlying = read_type(cursor).name if cursor.accept(":") else ""
        enum = Enum(name.text, name.line, is_class, underlying)
        self._describe(enum, macro, specifiers, meta)
        if not is_class and not underlying:
            raise cursor.error(f"plain enumeration '{name.text}' needs a type: enum {name.text} : int", name.line)
        if is_class and meta.get("BlueprintType") is None and "BlueprintType" in enum.meta and underlying != "uint8":
            raise cursor.error(f"a BlueprintType enumeration needs the type uint8: enum class {name.text} : uint8", name.line)
        cursor.expect("{", "before the enumerators")
        while not cursor.accept("}"):
            enum.values.append(self._enumerator(enum))
        cursor.expect(";", "behind the enumeration")
        if not enum.values:
            raise cursor.error(f"'{enum.name}' has no enumerators; give it at least one", enum.line)
        self.header.enums.append(enum)

    def _enumerator(self, enum):
        cursor = self.cursor
        doc = cursor.token.doc
        value = Enumerator(cursor.identifier("an enumerator").text)
        if cursor.accept("UMETA"):
            specifiers, value.meta = read_specifiers(cursor)
            value.meta.update({name: text or "" for name, text, _ in specifiers})
        if cursor.accept("="):
            while not cursor.at(",", "}", "UMETA"):
                if cursor.at_end():
                    raise cursor.error(f"'{enum.name}' has no closing '}}'", enum.line)
                cursor.skip_group() if cursor.at("(", "{") else cursor.advance()
        if cursor.accept("UMETA"):
            specifiers, value.meta = read_specifiers(cursor)
            value.meta.update({name: text or "" for name, text, _ in specifiers})
        if doc and "ToolTip" not in value.meta:
            value.meta["ToolTip"] = doc
        if not cursor.at("}"):
            cursor.expect(",", "between enumerators")
        return value

    # Structs and classes

    def _type_head(self, keyword):
        """`class MODULE_API UFoo final : public UBar, public IBaz {` as (name token, super, other bases)."""
        cursor = self.cursor
        cursor.expect(keyword, "behind the macro")
        while cursor.at("alignas", "UE_DEPRECATED") or (cursor.peek().kind == "ident" and cursor.peek().text != "final"):
            if cursor.advance().text in ("alignas", "UE_DEPRECATED"):
                cursor.skip_group()
        name = cursor.identifier("the type's name")
        cursor.accept("final")
        bases = []
        if cursor.accept(":"):
            while not cursor.at("{"):
                while cursor.accept("public", "protected", "private", "virtual"):
                    pass
                bases.append(read_type(cursor).value_text())
                if not cursor.at("{"):
                    cursor.expect(",", "between base classes")
        cursor.expect("{", f"before the members of '{name.text}'")
        return name, bases

    def _check_prefix(self, name, prefix, what):
        if not re.match(rf"[{prefix}][A-Z0-9]", name.text):
            wanted = " or ".join(prefix)
            raise self.cursor.error(f"the name of {what} begins with {wanted}; rename '{name.text}'", name.line)

    def _struct(self, macro, specifiers, meta):
        name, bases = self._type_head("struct")
        self._check_prefix(name, "F", "a struct")
        struct = Struct(name.text, name.line)
        self._describe(struct, macro, specifiers, meta)
        struct.super_name = next((base for base in bases if re.fullmatch(r"F\w+", base)), "")
        self.access = "public"
        self._members(struct)
        self.header.structs.append(struct)

    def _class(self, macro, specifiers, meta):
        name, bases = self._type_head("class")
        self._check_prefix(name, "UA", "a class")
        cls = Class(name.text, name.line)
        found = self._describe(cls, macro, specifiers, meta)
        cls.is_interface = macro.text == "UINTERFACE"
        if not bases:
            raise self.cursor.error(f"'{name.text}' has no base class; derive it from UObject or a child of it", name.line)
        cls.super_name = bases[0]
        cls.interfaces = [base for base in bases[1:] if re.fullmatch(r"I[A-Z]\w*", base)]
        cls.config = cls.meta.pop("Config", "")
        if "DefaultConfig" in found and not cls.config:
            raise self.cursor.error("DefaultConfig needs a file: UCLASS(config=Name, defaultconfig)", name.line)
        self.access = "private"
        self._members(cls)
        self.header.classes.append(cls)

    def _maybe_native_interface(self):
        """`class IFoo` behind `UINTERFACE() class UFoo`: its functions belong to UFoo."""
        name = self._declared_name()
        owner = next((cls for cls in self.header.classes if cls.is_interface and cls.name[1:] == name[1:]), None)
        index = self.cursor.index
        while not self.cursor.at("{", ";") and not self.cursor.at_end():
            self.cursor.advance()
        is_definition = self.cursor.at("{")
        self.cursor.index = index
        if not owner or not is_definition:
            self._skip_unreflected()
            return
        self._type_head("class")
        body = Class(name, owner.line)
        self.access = "private"
        self._members(body)
        owner.native_name, owner.native_body_line = name, body.body_line
        owner.functions.extend(body.functions)
        owner.implementations |= body.implementations
        if body.properties:
            raise self.cursor.error(f"'{name}' is an interface; it can't have properties", body.properties[0].line)

    def _members(self, owner):
        cursor = self.cursor
        while not cursor.accept("}"):
            if cursor.at_end():
                raise cursor.error(f"'{owner.name}' has no closing '}}'", owner.line)
            self._member(owner)
        cursor.accept(";")
        if not owner.body_line:
            raise cursor.error(f"'{owner.name}' lacks GENERATED_BODY(); write it as the first member", owner.line)

    def _member(self, owner):
        cursor = self.cursor
        if cursor.at("public", "protected", "private") and cursor.peek().is_punct(":"):
            self.access = cursor.advance().text
            cursor.advance()
        elif cursor.at(*BODY_MACROS):
            self._body(owner)
        elif cursor.at("UPROPERTY"):
            owner.properties.append(self._property())
        elif cursor.at("UFUNCTION"):
            self._function(owner)
        elif cursor.at(*TYPE_MACROS):
            raise cursor.error(f"{cursor.token.text} inside '{owner.name}'; move it to file level")
        elif not cursor.accept(";"):
            self._unreflected_member(owner)

    def _body(self, owner):
        macro = self.cursor.advance()
        if owner.body_line:
            raise self.cursor.error(f"'{owner.name}' has a second {macro.text}; keep one", macro.line)
        owner.body_line = macro.line
        if self.cursor.at("("):
            self.cursor.skip_group()
        if macro.text == "GENERATED_UCLASS_BODY":
            owner.legacy_body = owner.has_initializer_constructor = True
        self.access = "public" if owner.__class__ is Struct or macro.text == "GENERATED_UCLASS_BODY" else "private"

    def _property(self):
        macro = self.cursor.advance()
        refuse_condition(self.path, macro, "UPROPERTY")
        specifiers, meta = read_specifiers(self.cursor)
        variable = read_variable(self.cursor)
        variable.flags.append({"public": "CPF_NativeAccessSpecifierPublic", "private": "CPF_NativeAccessSpecifierPrivate",
                               "protected": "CPF_NativeAccessSpecifierProtected"}[self.access])
        self._describe(variable, macro, specifiers, meta)
        return variable

    def _function(self, owner):
        cursor = self.cursor
        macro = cursor.advance()
        refuse_condition(self.path, macro, "UFUNCTION")
        if owner.__class__ is Struct:
            raise cursor.error("a struct can't have a UFUNCTION; move it to a class or drop the macro", macro.line)
        specifiers, meta = read_specifiers(cursor)
        function = read_function(cursor)
        found = self._describe(function, macro, specifiers, meta)
        function.flags.append({"public": "FUNC_Public", "protected": "FUNC_Protected", "private": "FUNC_Private"}[self.access])
        if "BlueprintImplementableEvent" in found:
            function.event = "implementable"
        elif "BlueprintNativeEvent" in found:
            function.event = "native"
        if function.event and function.is_static:
            raise cursor.error(f"event '{function.name}' can't be static; remove 'static' or the event specifier", macro.line)
        owner.functions.append(function)

    def _unreflected_member(self, owner):
        start = self.cursor.index
        tokens = skip_declaration(self.cursor)
        if self.cursor.index == start:
            raise self.cursor.error(f"can't read '{self.cursor.token.text}' in '{owner.name}'")
        if isinstance(owner, Class):
            self._note_constructor(owner, tokens)
            self._note_implementation(owner, tokens)

    def _note_constructor(self, owner, tokens):
        for index, token in enumerate(tokens[:-1]):
            if token.is_punct("("):
                return
            if token.text == owner.name and tokens[index + 1].is_punct("(") and not (index and tokens[index - 1].text in "~::"):
                arguments = [entry.text for entry in tokens[index + 2 :]]
                if ")" in arguments[:1]:
                    owner.has_default_constructor = True
                elif "FObjectInitializer" in arguments[:3]:
                    owner.has_initializer_constructor = True
                return

    def _note_implementation(self, owner, tokens):
        names = (token.text for token in tokens if token.kind == "ident")
        owner.implementations.update(name for name in names if name.endswith("_Implementation"))

    # Delegates

    def _delegate(self, meta, doc):
        cursor = self.cursor
        macro = cursor.advance()
        match = DELEGATE.fullmatch(macro.text)
        if not match:
            raise cursor.error("expected DECLARE_DYNAMIC_DELEGATE... behind UDELEGATE()", macro.line)
        refuse_condition(self.path, macro, macro.text)
        cursor.expect("(", "behind the delegate macro")
        returned = read_type(cursor) if match.group(2) else None
        if returned:
            cursor.expect(",", "behind the return type")
        name = cursor.identifier("the delegate's name")
        self._check_prefix(name, "F", "a delegate")
        delegate = Delegate(name.text, name.line, bool(match.group(1)), dict(meta))
        if doc:
            delegate.meta.setdefault("ToolTip", doc)
        for _ in range(COUNTS[match.group(4)]):
            cursor.expect(",", "before the next parameter's type")
            type_ref = read_type(cursor)
            cursor.expect(",", "between the parameter's type and name")
            delegate.parameters.append(Property(cursor.identifier("the parameter's name").text, type_ref, macro.line))
        if returned:
            delegate.parameters.append(Property("ReturnValue", returned, macro.line))
        cursor.expect(")", f"behind the {len(delegate.parameters)} parameters of '{macro.text}'")
        cursor.expect(";", "behind the delegate")
        self.header.delegates.append(delegate)
