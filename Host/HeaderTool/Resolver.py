"""Completes the model once all headers are read: kinds of properties, flags that follow from declarations, defaults of
parameters, and the rules that hold between members."""

from Defaults import to_import_text
from Errors import HeaderError
from Types import TypeProblem, classify

# What C++ passes by const reference for speed only stays a plain input; see CPF_OutParm.
BY_VALUE_WHEN_CONST = ("Str",)

BLUEPRINT_ACCESS = ("CPF_BlueprintVisible", "CPF_BlueprintAssignable")


class Resolver:
    def __init__(self, module):
        self.module = module
        self.delegates = {d.name: d.is_multicast for header in module.headers for d in header.delegates}
        self.enums = {enum.name: enum for header in module.headers for enum in header.enums}
        self.path = ""

    def run(self):
        self._refuse_duplicates()
        for header in self.module.headers:
            self.path = header.path
            for delegate in header.delegates:
                for parameter in delegate.parameters:
                    self._parameter(parameter, None)
            for owner in header.structs + header.classes:
                self._properties(owner)
            for cls in header.classes:
                self._functions(cls)
        self._constructors()

    def _refuse_duplicates(self):
        seen = {}
        for header in self.module.headers:
            for entry in header.classes + header.structs + header.enums + header.delegates:
                if entry.name in seen:
                    raise HeaderError(
                        header.path, entry.line, f"'{entry.name}' is declared in {seen[entry.name]} too; rename one"
                    )
                seen[entry.name] = f"{header.path}:{entry.line}"

    def _constructors(self):
        """A class without constructors hands the initializer on when its parent, in this module, only takes one."""
        classes = {cls.name: cls for header in self.module.headers for cls in header.classes}
        for cls in classes.values():
            parent = classes.get(cls.super_name)
            while parent and not parent.has_default_constructor and not parent.has_initializer_constructor:
                parent = classes.get(parent.super_name)
            cls.hands_initializer_on = bool(
                parent and parent.has_initializer_constructor and not parent.has_default_constructor
            )

    def _properties(self, owner):
        names = set()
        for variable in owner.properties:
            if variable.name in names:
                raise HeaderError(self.path, variable.line, f"'{owner.name}' has two properties '{variable.name}'")
            names.add(variable.name)
            self._property(owner, variable)

    def _property(self, owner, variable):
        if variable.is_bitfield:
            if variable.type.name not in ("uint8", "uint32", "bool"):
                raise HeaderError(
                    self.path, variable.line, f"bit field '{variable.name}' needs the type uint8, as in 'uint8 {variable.name} : 1'"
                )
            variable.type.name = "bool"
        variable.kind = self._kind(variable)
        private = "CPF_NativeAccessSpecifierPrivate" in variable.flags
        visible = any(flag in variable.flags for flag in BLUEPRINT_ACCESS)
        if private and visible and variable.meta.get("AllowPrivateAccess") != "true":
            raise HeaderError(
                self.path,
                variable.line,
                f"'{variable.name}' is private but open to Blueprints; make it public or add meta=(AllowPrivateAccess=\"true\")",
            )
        multicast = ("CPF_BlueprintAssignable", "CPF_BlueprintCallable")
        if any(flag in variable.flags for flag in multicast) and variable.kind.name != "MulticastDelegate":
            if variable.kind.name != "Struct":  # another module's delegate looks like a struct here
                raise HeaderError(
                    self.path, variable.line, f"'{variable.name}' is BlueprintAssignable but no multicast delegate"
                )
        self._object_flags(variable)

    def _object_flags(self, variable):
        if variable.type.name == "TObjectPtr" or any(arg.name == "TObjectPtr" for arg in variable.type.arguments):
            variable.flags.append("CPF_UObjectWrapper")

    def _kind(self, variable):
        try:
            kind = classify(variable.type, self.delegates)
        except TypeProblem as problem:
            raise HeaderError(self.path, variable.line, f"'{variable.name}': {problem}") from problem
        self._check_enum(variable, kind)
        return kind

    def _check_enum(self, variable, kind):
        for entry in [kind] + kind.inner:
            enum = self.enums.get(entry.referent)
            if enum and entry.name == "Enum" and not enum.is_class:
                raise HeaderError(
                    self.path,
                    variable.line,
                    f"'{variable.name}': plain enumeration needs TEnumAsByte<{enum.name}>, or make it an enum class",
                )

    def _functions(self, cls):
        names = set()
        for function in cls.functions:
            if function.name in names:
                raise HeaderError(
                    self.path, function.line, f"'{cls.name}' has two UFUNCTIONs '{function.name}'; overloads can't be reflected"
                )
            names.add(function.name)
            if cls.is_interface and function.event:
                raise HeaderError(
                    self.path, function.line, f"'{function.name}': an interface's function can't be a Blueprint event; make it virtual"
                )
            self._function(function)

    def _function(self, function):
        for parameter in function.parameters:
            self._parameter(parameter, function)
        flags = function.flags
        if function.event != "implementable":
            flags.append("FUNC_Native")
        if function.is_static:
            flags.append("FUNC_Static")
        if function.is_const:
            flags.append("FUNC_Const")
        outputs = [p for p in function.parameters if "CPF_OutParm" in p.flags and "CPF_ConstParm" not in p.flags]
        if any(p.name != "ReturnValue" for p in function.parameters if "CPF_OutParm" in p.flags):
            flags.append("FUNC_HasOutParms")
        impure = flags.count("FUNC_BlueprintCallable") and "FUNC_BlueprintPure" not in flags
        if impure and function.is_const and outputs and not function.stays_impure:
            flags.append("FUNC_BlueprintPure")
        if "FUNC_BlueprintPure" in flags and not outputs:
            raise HeaderError(
                self.path, function.line, f"'{function.name}' is BlueprintPure but gives nothing back; return a value or use BlueprintCallable"
            )

    def _parameter(self, parameter, function):
        parameter.kind = self._kind(parameter)
        flags = ["CPF_Parm"]
        type_ref = parameter.type
        if parameter.name == "ReturnValue":
            flags += ["CPF_OutParm", "CPF_ReturnParm"]
        elif type_ref.is_reference and not type_ref.is_const:
            flags += ["CPF_OutParm"]
        elif type_ref.is_reference and parameter.kind.name not in BY_VALUE_WHEN_CONST:
            flags += ["CPF_ConstParm", "CPF_OutParm", "CPF_ReferenceParm"]
        elif type_ref.is_const and type_ref.pointers:
            flags += ["CPF_ConstParm"]
        parameter.flags = flags + [flag for flag in parameter.flags if flag not in flags]
        if parameter.default:
            self._default(parameter, function)

    def _default(self, parameter, function):
        text, string_value = parameter.default
        value = to_import_text(parameter.kind, text, string_value)
        if value is None:
            raise HeaderError(
                self.path,
                parameter.line,
                f"default '{text}' of '{parameter.name}' can't be told to scripts; use a literal, an enumerator or a simple constructor",
            )
        function.meta[f"CPP_Default_{parameter.name}"] = value
