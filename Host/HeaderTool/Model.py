"""What the headers of a module declare, as plain records: the parser fills them, the emitters read them."""

from dataclasses import dataclass, field


@dataclass
class TypeRef:
    """A type as written: `const TArray<TObjectPtr<UFoo>>&` has name TArray, one argument, const and reference."""

    name: str
    arguments: list = field(default_factory=list)
    is_const: bool = False
    pointers: int = 0
    is_reference: bool = False

    def value_text(self):
        """The type of a variable that holds the value: without the reference, const only before a pointer's target."""
        text = self.name
        if self.arguments:
            text += "<" + ", ".join(argument.value_text() for argument in self.arguments) + ">"
        if self.is_const and self.pointers:
            text = "const " + text
        return text + "*" * self.pointers

    def full_text(self):
        """The type as declared, for a function's signature."""
        prefix = "const " if self.is_const and not self.pointers else ""
        return prefix + self.value_text() + ("&" if self.is_reference else "")


@dataclass
class Property:
    name: str
    type: TypeRef
    line: int
    kind: object = None  # a Kind of Types.py
    flags: list = field(default_factory=list)
    meta: dict = field(default_factory=dict)
    dimension: str = ""  # the text between the brackets of a C array
    is_bitfield: bool = False
    default: tuple = None  # of a parameter: (source text, decoded string literal or None)


@dataclass
class Function:
    name: str
    line: int
    flags: list = field(default_factory=list)
    meta: dict = field(default_factory=dict)
    parameters: list = field(default_factory=list)  # of Property; the return value is last and named ReturnValue
    is_static: bool = False
    is_const: bool = False
    stays_impure: bool = False  # BlueprintPure=false: const, but not to be called at will
    event: str = ""  # "implementable" and "native" have a generated body

    def returned(self):
        if self.parameters and self.parameters[-1].name == "ReturnValue":
            return self.parameters[-1]
        return None

    def arguments(self):
        return self.parameters[:-1] if self.returned() else self.parameters


@dataclass
class Enumerator:
    name: str
    meta: dict = field(default_factory=dict)


@dataclass
class Enum:
    name: str
    line: int
    is_class: bool
    underlying: str
    flags: list = field(default_factory=list)
    meta: dict = field(default_factory=dict)
    values: list = field(default_factory=list)


@dataclass
class Struct:
    name: str
    line: int
    body_line: int = 0  # the line of GENERATED_BODY
    super_name: str = ""
    flags: list = field(default_factory=list)
    meta: dict = field(default_factory=dict)
    properties: list = field(default_factory=list)


@dataclass
class Class(Struct):
    interfaces: list = field(default_factory=list)
    functions: list = field(default_factory=list)
    config: str = ""
    has_default_constructor: bool = False
    has_initializer_constructor: bool = False
    hands_initializer_on: bool = False  # has no constructor, and its parent's takes the initializer
    legacy_body: bool = False  # GENERATED_UCLASS_BODY: leaves the access public, declares the initializer constructor
    is_interface: bool = False
    native_name: str = ""  # of an interface: the I class
    native_body_line: int = 0
    implementations: set = field(default_factory=set)  # names of declared ..._Implementation functions


@dataclass
class Delegate:
    name: str
    line: int
    is_multicast: bool
    meta: dict = field(default_factory=dict)
    parameters: list = field(default_factory=list)


@dataclass
class Header:
    path: str
    name: str  # without folder and extension
    classes: list = field(default_factory=list)
    structs: list = field(default_factory=list)
    enums: list = field(default_factory=list)
    delegates: list = field(default_factory=list)


@dataclass
class Module:
    name: str
    headers: list = field(default_factory=list)
