"""Turns the default value of a function's parameter into import text, so that a script call can leave it out."""

import re

CONSTANTS = {
    "nullptr": "None",
    "NULL": "None",
    "NAME_None": "None",
    "FName()": "None",
    "FString()": "",
    "FText()": "",
    "FText::GetEmpty()": "",
    "FVector::ZeroVector": "(X=0.000000,Y=0.000000,Z=0.000000)",
    "FVector::OneVector": "(X=1.000000,Y=1.000000,Z=1.000000)",
    "FVector::UpVector": "(X=0.000000,Y=0.000000,Z=1.000000)",
    "FVector::ForwardVector": "(X=1.000000,Y=0.000000,Z=0.000000)",
    "FVector::RightVector": "(X=0.000000,Y=1.000000,Z=0.000000)",
    "FVector2D::ZeroVector": "(X=0.000000,Y=0.000000)",
    "FRotator::ZeroRotator": "(Pitch=0.000000,Yaw=0.000000,Roll=0.000000)",
    "FLinearColor::White": "(R=1.000000,G=1.000000,B=1.000000,A=1.000000)",
    "FLinearColor::Black": "(R=0.000000,G=0.000000,B=0.000000,A=1.000000)",
    "FLinearColor::Red": "(R=1.000000,G=0.000000,B=0.000000,A=1.000000)",
    "FLinearColor::Green": "(R=0.000000,G=1.000000,B=0.000000,A=1.000000)",
    "FLinearColor::Blue": "(R=0.000000,G=0.000000,B=1.000000,A=1.000000)",
    "FLinearColor::Transparent": "(R=0.000000,G=0.000000,B=0.000000,A=0.000000)",
    "INDEX_NONE": "-1",
    "MAX_int32": "2147483647",
    "MIN_int32": "-2147483648",
}

COMPONENTS = {
    "FVector": ("X", "Y", "Z"),
    "FVector2D": ("X", "Y"),
    "FVector4": ("X", "Y", "Z", "W"),
    "FRotator": ("Pitch", "Yaw", "Roll"),
    "FLinearColor": ("R", "G", "B", "A"),
    "FIntPoint": ("X", "Y"),
}

NUMBER = r"[+-]?(?:0[xX][0-9a-fA-F]+|(?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?)"


def to_import_text(kind, text, string_value):
    """The import text of default `text` for a parameter of `kind`; None if it has none. `string_value` is the
    decoded literal when the default is TEXT("...") or a wrapped one."""
    if text in CONSTANTS:
        return CONSTANTS[text]
    if string_value is not None and kind.name in ("Str", "Name", "Text"):
        return string_value
    if kind.name == "Bool" and text in ("true", "false"):
        return text
    if kind.name in ("Enum", "EnumAsByte") or (kind.name == "Byte" and "::" in text):
        return text.rsplit("::", 1)[-1] if re.fullmatch(r"\w+(::\w+)*", text) else None
    number = _number(kind, text)
    return number if number is not None else _constructed(text)


def _number(kind, text):
    match = re.fullmatch(rf"({NUMBER})[fFuUlL]*", text)
    if not match:
        return None
    if kind.name in ("Float", "Double"):
        return f"{float(match.group(1)):f}"
    return str(int(match.group(1), 0)) if re.fullmatch(r"[+-]?\w+", match.group(1)) else None


def _constructed(text):
    """`FVector(1, 2, 3)` member by member; `FFoo()` and `{}` as the empty list, which changes nothing."""
    if re.fullmatch(r"[FT]\w+(<.*>)?(\(\)|\{\})|\{\}", text):
        return "()"
    match = re.fullmatch(r"(F\w+)[({](.*)[)}]", text)
    if not match or match.group(1) not in COMPONENTS:
        return None
    names = COMPONENTS[match.group(1)]
    values = [value.strip().rstrip("fF") for value in match.group(2).split(",")]
    if len(values) == 1:
        values *= len(names)
    if len(values) > len(names) or not all(re.fullmatch(NUMBER, value) for value in values):
        return None
    if match.group(1) == "FIntPoint":
        return "(" + ",".join(f"{name}={int(value)}" for name, value in zip(names, values)) + ")"
    return "(" + ",".join(f"{name}={float(value):f}" for name, value in zip(names, values)) + ")"
