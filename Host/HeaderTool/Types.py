"""Decides which kind of property holds a type, and refuses types that no property holds."""

import re
from dataclasses import dataclass, field

SIMPLE = {
    "bool": "Bool",
    "int8": "Int8",
    "int16": "Int16",
    "int32": "Int",
    "int": "Int",
    "int64": "Int64",
    "uint8": "Byte",
    "uint16": "UInt16",
    "uint32": "UInt32",
    "uint64": "UInt64",
    "float": "Float",
    "double": "Double",
    "FString": "Str",
    "FName": "Name",
    "FText": "Text",
}

OBJECT_WRAPPERS = {
    "TObjectPtr": "Object",
    "TSubclassOf": "Class",
    "TWeakObjectPtr": "WeakObject",
    "TSoftObjectPtr": "SoftObject",
    "TSoftClassPtr": "SoftClass",
    "TScriptInterface": "Interface",
}

CONTAINERS = {"TArray": ("Array", 1), "TSet": ("Set", 1), "TMap": ("Map", 2)}

REPLACEMENTS = {
    "unsigned": "uint32",
    "long": "int64",
    "short": "int16",
    "char": "uint8 or FString",
    "size_t": "uint64 or int32",
    "SIZE_T": "uint64 or int32",
    "TSharedPtr": "TObjectPtr, or leave the member unreflected",
    "TSharedRef": "TObjectPtr, or leave the member unreflected",
    "TUniquePtr": "TObjectPtr, or leave the member unreflected",
    "TWeakPtr": "TWeakObjectPtr, or leave the member unreflected",
    "TFunction": "a dynamic delegate, or leave the member unreflected",
    "TOptional": "a bool beside the value, or leave the member unreflected",
    "FStringView": "FString",
    "TArrayView": "TArray",
    "auto": "the type itself",
}


class TypeProblem(Exception):
    """Why a type can't be reflected, and what to write instead."""


@dataclass
class Kind:
    name: str  # Int, Str, Struct, Array, ...
    referent: str = ""  # the C++ name of the class, struct or enumeration behind the property
    inner: list = field(default_factory=list)  # the kinds of a container's elements
    text: str = ""  # the type as C++ writes it


def classify(type_ref, delegates=None, depth=0):
    """The Kind of a value of this type. `delegates` maps the module's delegate names to whether they are multicast."""
    kind = _classify(type_ref, delegates or {}, depth)
    kind.text = type_ref.value_text()
    return kind


def _classify(type_ref, delegates, depth):
    if type_ref.pointers:
        return _pointer(type_ref)
    name = type_ref.name
    if name in SIMPLE:
        return Kind(SIMPLE[name])
    if name in CONTAINERS:
        return _container(type_ref, delegates, depth)
    if name in OBJECT_WRAPPERS:
        return _wrapped(type_ref)
    if name == "TEnumAsByte":
        _expect_arguments(type_ref, 1)
        return Kind("EnumAsByte", type_ref.arguments[0].name)
    if name in delegates:
        return Kind("MulticastDelegate" if delegates[name] else "Delegate", name)
    if name in REPLACEMENTS:
        raise TypeProblem(f"type '{name}' can't be reflected; use {REPLACEMENTS[name]}")
    if type_ref.arguments:
        raise TypeProblem(f"template '{name}' can't be reflected; wrap it or leave the member unreflected")
    if re.match(r"E[A-Z]", name):
        return Kind("Enum", name)
    if re.match(r"F[A-Z0-9]", name):
        return Kind("Struct", name)
    if re.match(r"[UA][A-Z]", name):
        raise TypeProblem(f"object type '{name}' needs a pointer: TObjectPtr<{name}> or {name}*")
    raise TypeProblem(f"type '{name}' can't be reflected; expected a number, a text, an F, E, U or A type or a container")


def _pointer(type_ref):
    if type_ref.pointers > 1 or not re.match(r"[UA][A-Z]", type_ref.name):
        raise TypeProblem(f"pointer '{type_ref.value_text()}' can't be reflected; only pointers to objects can")
    if type_ref.name == "UClass":
        return Kind("Class", "UObject")
    return Kind("Object", type_ref.name)


def _wrapped(type_ref):
    _expect_arguments(type_ref, 1)
    target = type_ref.arguments[0]
    if type_ref.name == "TObjectPtr" and target.name == "UClass":
        return Kind("Class", "UObject")
    wanted = "I" if type_ref.name == "TScriptInterface" else "[UA]"
    if target.pointers or target.arguments or not re.match(wanted + "[A-Z]", target.name):
        raise TypeProblem(f"'{type_ref.name}' needs the name of a class, not '{target.value_text()}'")
    referent = "U" + target.name[1:] if wanted == "I" else target.name
    return Kind(OBJECT_WRAPPERS[type_ref.name], referent)


def _container(type_ref, delegates, depth):
    kind, count = CONTAINERS[type_ref.name]
    _expect_arguments(type_ref, count)
    if depth:
        raise TypeProblem("a container can't hold a container; put the inner one into a USTRUCT")
    inner = [classify(argument, delegates, depth + 1) for argument in type_ref.arguments]
    if kind != "Array" and inner[0].name in ("Text", "Bool", "Delegate", "MulticastDelegate"):
        raise TypeProblem(f"'{inner[0].text}' can't be the key of a {type_ref.name}")
    return Kind(kind, inner=inner)


def _expect_arguments(type_ref, count):
    if len(type_ref.arguments) != count:
        raise TypeProblem(f"'{type_ref.name}' needs {count} template argument{'s' if count > 1 else ''}")
