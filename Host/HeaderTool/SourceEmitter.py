"""Writes <module>.gen.cpp: the tables that describe every reflected type, and what hands them to the registry."""

from HeaderEmitter import returned_type, signature


def emit_source(module):
    lines = ['#include "UObject/GeneratedSource.h"', ""]
    lines += [f'#include "{header.path}"' for header in module.headers]
    lines += ["", '#pragma GCC diagnostic ignored "-Winvalid-offsetof"', ""]
    lines += _class_declarations(module)
    for header in module.headers:
        for enum in header.enums:
            lines += _enum(module, enum)
        for delegate in header.delegates:
            lines += _delegate(module, delegate)
        for struct in header.structs:
            lines += _struct(module, struct)
        for cls in header.classes:
            lines += _class(module, cls)
    lines += [f'extern "C" void CorvexaReflection_{module.name}() {{}}']
    return "\n".join(lines) + "\n"


def _class_declarations(module):
    names = set()
    for header in module.headers:
        for owner in header.classes + header.structs + header.delegates:
            variables = list(getattr(owner, "properties", [])) + list(getattr(owner, "parameters", []))
            for function in getattr(owner, "functions", []):
                variables += function.parameters
            for variable in variables:
                names.update(kind.referent for kind in [variable.kind] + variable.kind.inner if _is_class(kind))
        names.update(cls.super_name for cls in header.classes)
    return [f"UClass* Z_Class_{name}();" for name in sorted(names)] + [""]


def _is_class(kind):
    return kind.name in ("Object", "Class", "WeakObject", "SoftObject", "SoftClass", "Interface")


# Literals and small tables


def literal(text):
    """A UTF-8 C++ literal of any text."""
    out = []
    hexadecimal = False
    for byte in text.encode("utf-8"):
        char = chr(byte)
        if char in '"\\':
            out.append("\\" + char)
        elif char == "\n":
            out.append("\\n")
        elif 32 <= byte < 127 and not (hexadecimal and char in "0123456789abcdefABCDEF") and char != "?":
            out.append(char)
        else:
            out.append(f"\\{byte:03o}")
        hexadecimal = False
    return '"' + "".join(out) + '"'


def _meta(name, meta):
    if not meta:
        return []
    rows = [f"\t\t{{{literal(key)}, {literal(value)}}}," for key, value in meta.items()]
    return [f"\tstatic constexpr Reflection::FMetaDataTable {name}[] = {{"] + rows + ["\t};"]


def _join(flags, zero):
    return " | ".join(dict.fromkeys(flags)) if flags else zero


def _package(module):
    return literal(f"/Script/{module.name}")


# Properties


class _PropertyRows:
    """The rows of one table of properties, with the inner tables, setters and meta data that they point to."""

    def __init__(self, owner, prefix):
        self.owner = owner
        self.prefix = prefix
        self.helpers = []
        self.rows = []

    def add(self, variable):
        name = f"{self.prefix}{variable.name}"
        fields = [f".Name = {literal(variable.name)}"] + self._kind(variable.kind, name, variable)
        fields.append(f".Flags = {_join(variable.flags, 'CPF_None')}")
        if variable.is_bitfield:
            self._bit_setter(name, variable)
            fields.append(f".SetBit = &SetBit_{name}")
            fields.append(f".OwnerSize = sizeof({self.owner})")
        else:
            fields.append(f".Offset = offsetof({self.owner}, {variable.name})")
        if variable.dimension:
            fields.append(f".ArrayDim = int32(std::extent_v<decltype({self.owner}::{variable.name})>)")
        if variable.meta:
            self.helpers += _meta(f"Meta_{name}", variable.meta)
            fields.append(f".MetaData = Meta_{name}")
        self.rows.append("\t\t{" + ", ".join(fields) + "},")

    def _bit_setter(self, name, variable):
        self.helpers += [
            f"\tREFLECTION_RAW_ACCESS static void SetBit_{name}(void* Memory)",
            "\t{",
            f"\t\tstatic_cast<{self.owner}*>(Memory)->{variable.name} = true;",
            "\t}",
        ]

    def _kind(self, kind, name, variable):
        """The fields that tell a value's kind; the kinds of a container's elements become tables of their own."""
        fields = {
            "Struct": [f".Kind = Reflection::KindOf<{kind.text}>()", f".Type = &Reflection::TypeOf<{kind.text}>"],
            "Enum": [
                ".Kind = EPropertyKind::Enum",
                f".Underlying = Reflection::UnderlyingKind<{kind.referent}>()",
                f".Type = &Reflection::EnumOf<{kind.referent}>",
            ],
            "EnumAsByte": [".Kind = EPropertyKind::Byte", f".Type = &Reflection::EnumOf<{kind.referent}>"],
        }.get(kind.name)
        if kind.name in ("Delegate", "MulticastDelegate"):
            fields = [f".Kind = EPropertyKind::{kind.name}", f".Type = &Reflection::TypeOf<{kind.referent}>"]
        if fields is None:
            fields = [f".Kind = EPropertyKind::{kind.name}"]
        if _is_class(kind):
            fields.append(f".Type = &Reflection::FieldOf<&Z_Class_{kind.referent}>")
        for field, suffix, inner in zip(("Inner", "Value"), ("_Inner", "_Value"), kind.inner):
            inner_fields = [f".Name = {literal(variable.name + suffix)}"] + self._kind(inner, name, variable)
            self.helpers.append(
                f"\tstatic constexpr Reflection::FPropertyTable {name}{suffix} = {{{', '.join(inner_fields)}}};"
            )
            fields.append(f".{field} = &{name}{suffix}")
        return fields

    def table(self, name):
        if not self.rows:
            return self.helpers
        head = f"\tstatic constexpr Reflection::FPropertyTable {name}[] = {{"
        return self.helpers + [head] + self.rows + ["\t};"]


def _property_table(owner, properties, prefix, name):
    rows = _PropertyRows(owner, prefix)
    for variable in properties:
        rows.add(variable)
    return rows.table(name)


def _reference(field, name, present):
    return [f"\t\t.{field} = {name},"] if present else []


# Enumerations, structs and delegates


def _enum(module, enum):
    lines = [f"struct Z_{enum.name}_Statics", "{"]
    rows = []
    for value in enum.values:
        lines += _meta(f"Meta_{value.name}", value.meta)
        meta = f", Meta_{value.name}" if value.meta else ""
        rows.append(f"\t\t{{{literal(value.name)}, int64({enum.name}::{value.name}){meta}}},")
    lines += ["\tstatic constexpr Reflection::FEnumeratorTable Values[] = {"] + rows + ["\t};"]
    lines += _meta("MetaData", enum.meta)
    lines += [
        "\tstatic constexpr Reflection::FEnumTable Table = {",
        f"\t\t.CppName = {literal(enum.name)},",
        f"\t\t.Package = {_package(module)},",
        f"\t\t.Form = UEnum::ECppForm::{'EnumClass' if enum.is_class else 'Regular'},",
        f"\t\t.Flags = {_join(enum.flags, 'EEnumFlags::None')},",
        f"\t\t.UnderlyingSize = sizeof({enum.name}),",
        "\t\t.Values = Values,",
    ]
    lines += _reference("MetaData", "MetaData", enum.meta)
    lines += ["\t};", "};", f"static Reflection::FEnumRegistration Z_{enum.name}_Registration(Z_{enum.name}_Statics::Table);"]
    return lines + [
        "template <>",
        f"UEnum* StaticEnum<{enum.name}>()",
        "{",
        f"\treturn Z_{enum.name}_Registration.Get();",
        "}",
        "",
    ]


def _struct(module, struct):
    name = struct.name
    lines = [f"struct Z_{name}_Statics", "{"]
    lines += _property_table(name, struct.properties, "", "Properties")
    lines += _meta("MetaData", struct.meta)
    lines += [
        "\tstatic constexpr Reflection::FStructTable Table = {",
        f"\t\t.CppName = {literal(name)},",
        f"\t\t.Package = {_package(module)},",
    ]
    if struct.super_name:
        lines.append(f"\t\t.Super = &Reflection::TypeOf<{struct.super_name}>,")
    lines += [f"\t\t.Flags = {_join(struct.flags, 'STRUCT_NoFlags')},", f"\t\t.Ops = &Reflection::StructOpsOf<{name}>,"]
    lines += _reference("Properties", "Properties", struct.properties)
    lines += _reference("MetaData", "MetaData", struct.meta)
    lines += ["\t};", "};", f"static Reflection::FStructRegistration Z_{name}_Registration(Z_{name}_Statics::Table);"]
    return lines + [
        f"UScriptStruct* {name}::StaticStruct()",
        "{",
        f"\treturn Z_{name}_Registration.Get();",
        "}",
        "",
    ]


def _parms_struct(name, parameters):
    if not parameters:
        return []
    lines = [f"\tstruct {name}", "\t{"]
    lines += [f"\t\t{parameter.type.value_text()} {parameter.name};" for parameter in parameters]
    return lines + ["\t};"]


def _delegate(module, delegate):
    name = delegate.name
    lines = [f"struct Z_{name}_Statics", "{"]
    lines += _parms_struct("FParms", delegate.parameters)
    lines += _property_table("FParms", delegate.parameters, "", "Parameters")
    lines += _meta("MetaData", delegate.meta)
    flags = ["FUNC_Public", "FUNC_Delegate"] + (["FUNC_MulticastDelegate"] if delegate.is_multicast else [])
    lines += [
        "\tstatic constexpr Reflection::FFunctionTable Table = {",
        f"\t\t.Name = {literal(name[1:] + '__DelegateSignature')},",
        f"\t\t.Package = {_package(module)},",
        f"\t\t.Flags = {_join(flags, '')},",
    ]
    lines += _parms_fields("FParms", "Parameters", delegate.parameters)
    lines += _reference("MetaData", "MetaData", delegate.meta)
    lines += ["\t};", "};", f"static Reflection::FDelegateRegistration Z_{name}_Registration(Z_{name}_Statics::Table);"]
    return lines + [
        f"UFunction* Z_Delegate_{name}()",
        "{",
        f"\treturn Z_{name}_Registration.Get();",
        "}",
        "",
    ]


def _parms_fields(struct, table, parameters):
    if not parameters:
        return []
    return [
        f"\t\t.Parameters = {table},",
        f"\t\t.ParmsSize = sizeof({struct}),",
        f"\t\t.ParmsAlignment = alignof({struct}),",
    ]


# Classes


def _class(module, cls):
    name = cls.name
    lines = [f"struct Z_{name}_Statics", "{"]
    lines += _property_table(name, cls.properties, "", "Properties")
    for function in cls.functions:
        lines += _function(cls, function)
    lines += _function_rows(cls)
    lines += _interface_rows(cls)
    lines += _meta("MetaData", cls.meta)
    lines += [
        "\tstatic void Construct(const FObjectInitializer& Initializer)",
        "\t{",
        f"\t\t::new (Initializer.GetMemory()) {name}{'(Initializer)' if _takes_initializer(cls) else '()'};",
        "\t}",
        "\tstatic constexpr Reflection::FClassTable Table = {",
        f"\t\t.CppName = {literal(name)},",
        f"\t\t.Package = {_package(module)},",
        f"\t\t.Super = &Z_Class_{cls.super_name},",
        f"\t\t.Size = sizeof({name}),",
        f"\t\t.Alignment = alignof({name}),",
        f"\t\t.Flags = {_join(_class_flags(cls), 'CLASS_None')},",
    ]
    if cls.config:
        lines.append(f"\t\t.Config = {literal(cls.config)},")
    lines += [
        "\t\t.Construct = &Construct,",
        f"\t\t.AddReferencedObjects = &{name}::AddReferencedObjects,",
    ]
    lines += _reference("Properties", "Properties", cls.properties)
    lines += _reference("Functions", "Functions", cls.functions)
    lines += _reference("Interfaces", "Interfaces", cls.interfaces)
    lines += _reference("MetaData", "MetaData", cls.meta)
    lines += ["\t};", "};", f"static Reflection::FClassRegistration Z_{name}_Registration(Z_{name}_Statics::Table);"]
    lines += [f"UClass* Z_Class_{name}()", "{", f"\treturn Z_{name}_Registration.Get();", "}"]
    lines += [f"UClass* {name}::StaticClass()", "{", f"\treturn Z_Class_{name}();", "}"]
    for function in cls.functions:
        lines += _event_body(cls, function)
    return lines + [""]


def _takes_initializer(cls):
    return cls.has_initializer_constructor or (cls.hands_initializer_on and not cls.has_default_constructor)


def _class_flags(cls):
    return ["CLASS_Native"] + (["CLASS_Interface", "CLASS_Abstract"] if cls.is_interface else []) + cls.flags


def _function(cls, function):
    parms = f"FParms_{function.name}"
    lines = _parms_struct(parms, function.parameters)
    lines += _property_table(parms, function.parameters, f"{function.name}_", f"Parameters_{function.name}")
    lines += _meta(f"Meta_{function.name}", function.meta)
    if function.event != "implementable":
        lines += _thunk(cls, function, parms)
    return lines


def _thunk(cls, function, parms):
    """The function that takes its arguments from a frame and leaves its results there."""
    unused = "[[maybe_unused]] "
    lines = [f"\tstatic void Exec_{function.name}({unused}UObject* Object, {unused}void* Memory)", "\t{"]
    if function.parameters:
        lines.append(f"\t\t{parms}& Parms = *static_cast<{parms}*>(Memory);")
    target = function.name + ("_Implementation" if function.event == "native" else "")
    if function.is_static:
        callee = f"{cls.native_name or cls.name}::{target}"
    elif cls.is_interface:
        interface = f"Object->GetInterfaceAddress({cls.name}::StaticClass())"
        callee = f"static_cast<{cls.native_name}*>({interface})->{target}"
    else:
        callee = f"static_cast<{cls.name}*>(Object)->{target}"
    arguments = ", ".join(f"Parms.{parameter.name}" for parameter in function.arguments())
    result = "Parms.ReturnValue = " if function.returned() else ""
    return lines + [f"\t\t{result}{callee}({arguments});", "\t}"]


def _function_rows(cls):
    if not cls.functions:
        return []
    lines = ["\tstatic constexpr Reflection::FFunctionTable Functions[] = {"]
    for function in cls.functions:
        lines += ["\t\t{", f"\t\t.Name = {literal(function.name)},", f"\t\t.Flags = {_join(function.flags, 'FUNC_None')},"]
        if function.event != "implementable":
            lines.append(f"\t\t.Exec = &Exec_{function.name},")
        lines += _parms_fields(f"FParms_{function.name}", f"Parameters_{function.name}", function.parameters)
        lines += _reference("MetaData", f"Meta_{function.name}", function.meta)
        lines.append("\t\t},")
    return lines + ["\t};"]


def _interface_rows(cls):
    if not cls.interfaces:
        return []
    rows = [f"\t\tReflection::InterfaceOf<{cls.name}, {interface}>()," for interface in cls.interfaces]
    return ["\tstatic inline const Reflection::FInterfaceTable Interfaces[] = {"] + rows + ["\t};"]


def _event_body(cls, function):
    """The C++ side of a Blueprint event: it calls whatever implements the event on this object."""
    if not function.event:
        return []
    parms = f"Z_{cls.name}_Statics::FParms_{function.name}"
    lines = [f"{returned_type(function)} {cls.name}::{signature(function, function.name)}", "{"]
    memory = "nullptr"
    if function.parameters:
        values = [parameter.name for parameter in function.arguments()] + (["{}"] if function.returned() else [])
        lines.append(f"\t{parms} Parms{{{', '.join(values)}}};")
        memory = "&Parms"
    this = f"const_cast<{cls.name}*>(this)" if function.is_const else "this"
    lines.append(f"\t{this}->ProcessEvent(FindFunctionChecked(FName(TEXT({literal(function.name)}))), {memory});")
    for parameter in function.arguments():
        if parameter.type.is_reference and not parameter.type.is_const:
            lines.append(f"\t{parameter.name} = Parms.{parameter.name};")
    if function.returned():
        lines.append("\treturn Parms.ReturnValue;")
    return lines + ["}"]
