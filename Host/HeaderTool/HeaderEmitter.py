"""Writes X.generated.h: forward declarations, the bodies behind GENERATED_BODY, and this header's file id."""

UNDERLYING = {"": "int"}


def emit_header(module, header):
    file_id = f"FID_{module.name}_{header.name}_h"
    lines = ["#pragma once", "", '#include "UObject/ObjectMacros.h"', ""]
    for enum in header.enums:
        lines += _enum(enum)
    for delegate in header.delegates:
        lines += _delegate(delegate)
    for struct in header.structs:
        lines += _struct(file_id, struct)
    for cls in header.classes:
        lines += _class(file_id, cls)
    lines += ["#undef CURRENT_FILE_ID", f"#define CURRENT_FILE_ID {file_id}"]
    return "\n".join(lines) + "\n"


def _enum(enum):
    keyword = "enum class" if enum.is_class else "enum"
    underlying = f" : {enum.underlying}" if enum.underlying else ""
    return [
        f"{keyword} {enum.name}{underlying};",
        "template <>",
        f"UEnum* StaticEnum<{enum.name}>();",
        "",
    ]


def _delegate(delegate):
    return [
        f"class {delegate.name};",
        f"UFunction* Z_Delegate_{delegate.name}();",
        "template <>",
        f"struct TDelegateSignature<{delegate.name}>",
        "{",
        f"\tstatic constexpr bool bMulticast = {str(delegate.is_multicast).lower()};",
        f"\tstatic UFunction* Get() {{ return Z_Delegate_{delegate.name}(); }}",
        "};",
        "",
    ]


def _define(name, lines):
    return [f"#define {name} \\"] + [f"\t{line} \\" for line in lines[:-1]] + [f"\t{lines[-1]}", ""]


def _struct(file_id, struct):
    body = [
        f"friend struct Z_{struct.name}_Statics;",
        "static UScriptStruct* StaticStruct();",
    ]
    if struct.super_name:
        body.append(f"using Super = {struct.super_name};")
    return [f"struct {struct.name};"] + _define(f"{file_id}_{struct.body_line}_GENERATED_BODY", body)


def _class(file_id, cls):
    lines = [f"class {cls.name};", f"UClass* Z_Class_{cls.name}();"]
    body = [f"DECLARE_REFLECTED_CLASS({cls.name}, {cls.super_name})"]
    body += _constructor(cls)
    if not cls.is_interface:
        body += _native_events(cls)
    access = "public:" if cls.legacy_body else "private:"
    lines += _define(f"{file_id}_{cls.body_line}_GENERATED_BODY", body + [access])
    if cls.is_interface and cls.native_name:
        lines.append(f"class {cls.native_name};")
        native = [f"DECLARE_REFLECTED_INTERFACE({cls.native_name}, {cls.name})", "private:"]
        lines += _define(f"{file_id}_{cls.native_body_line}_GENERATED_BODY", native)
    return lines


def _constructor(cls):
    if cls.legacy_body:
        return ["public:", f"{cls.name}(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());"]
    if cls.has_default_constructor or cls.has_initializer_constructor:
        return []
    if cls.hands_initializer_on:
        argument = "const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get()"
        return ["public:", f"{cls.name}({argument}) : Super(ObjectInitializer) {{}}"]
    return ["public:", f"{cls.name}() = default;"]


def signature(function, name):
    """`Name(int32 A, const FString& B) const`, without the return type."""
    arguments = ", ".join(f"{p.type.full_text()} {p.name}" for p in function.arguments())
    return f"{name}({arguments})" + (" const" if function.is_const else "")


def returned_type(function):
    returned = function.returned()
    return returned.type.full_text() if returned else "void"


def _native_events(cls):
    return [
        f"virtual {returned_type(function)} {signature(function, function.name + '_Implementation')};"
        for function in cls.functions
        if function.event == "native" and function.name + "_Implementation" not in cls.implementations
    ]
