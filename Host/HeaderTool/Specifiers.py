"""What each specifier of UCLASS, USTRUCT, UENUM, UPROPERTY and UFUNCTION means, in one table a macro.

A row gives flags to set and meta data to add. A specifier that takes a value names the meta key that receives it."""

import difflib
from dataclasses import dataclass, field

from Errors import HeaderError


@dataclass
class Effect:
    flags: list = field(default_factory=list)
    meta: dict = field(default_factory=dict)
    value_key: str = ""  # the meta key for the value behind '='


def _flags(*names):
    return Effect(flags=list(names))


def _meta(**pairs):
    return Effect(meta=pairs)


def _value(key):
    return Effect(value_key=key)


CLASS = {
    "Abstract": _flags("CLASS_Abstract"),
    "AutoCollapseCategories": _value("AutoCollapseCategories"),
    "AutoExpandCategories": _value("AutoExpandCategories"),
    "Blueprintable": _meta(IsBlueprintBase="true", BlueprintType="true"),
    "BlueprintType": _meta(BlueprintType="true"),
    "ClassGroup": _value("ClassGroupNames"),
    "CollapseCategories": _flags("CLASS_CollapseCategories"),
    "Config": Effect(flags=["CLASS_Config"], value_key="Config"),
    "Const": _flags("CLASS_Const"),
    "DefaultConfig": _flags("CLASS_DefaultConfig"),
    "DefaultToInstanced": _flags("CLASS_DefaultToInstanced"),
    "Deprecated": _flags("CLASS_Deprecated", "CLASS_NotPlaceable"),
    "DisplayName": _value("DisplayName"),
    "EditInlineNew": _flags("CLASS_EditInlineNew"),
    "Experimental": _meta(DevelopmentStatus="Experimental"),
    "GlobalUserConfig": _flags("CLASS_GlobalUserConfig"),
    "Hidden": _flags("CLASS_Hidden"),
    "HideCategories": _value("HideCategories"),
    "HideDropdown": _flags("CLASS_HideDropDown"),
    "HideFunctions": _value("HideFunctions"),
    "MinimalAPI": _flags("CLASS_MinimalAPI"),
    "NotBlueprintable": _meta(IsBlueprintBase="false"),
    "NotBlueprintType": _meta(NotBlueprintType="true"),
    "NotPlaceable": _flags("CLASS_NotPlaceable"),
    "PerObjectConfig": _flags("CLASS_PerObjectConfig"),
    "Placeable": _flags(),
    "ProjectUserConfig": _flags("CLASS_ProjectUserConfig"),
    "ShowCategories": _value("ShowCategories"),
    "ShowFunctions": _value("ShowFunctions"),
    "Transient": _flags("CLASS_Transient"),
    "Within": _value("Within"),
}

STRUCT = {
    "Atomic": _flags("STRUCT_Atomic"),
    "BlueprintType": _meta(BlueprintType="true"),
    "BlueprintInternalUseOnly": _meta(BlueprintInternalUseOnly="true"),
    "DisplayName": _value("DisplayName"),
    "NoExport": _flags("STRUCT_NoExport"),
}

ENUM = {
    "BlueprintType": _meta(BlueprintType="true"),
    "Flags": _flags("EEnumFlags::Flags"),
    "DisplayName": _value("DisplayName"),
}

PROPERTY = {
    "AdvancedDisplay": _flags("CPF_AdvancedDisplay"),
    "AssetRegistrySearchable": _flags("CPF_AssetRegistrySearchable"),
    "BlueprintAssignable": _flags("CPF_BlueprintAssignable", "CPF_BlueprintVisible"),
    "BlueprintAuthorityOnly": _flags("CPF_BlueprintAuthorityOnly"),
    "BlueprintCallable": _flags("CPF_BlueprintCallable", "CPF_BlueprintVisible"),
    "BlueprintGetter": Effect(flags=["CPF_BlueprintVisible", "CPF_BlueprintReadOnly"], value_key="BlueprintGetter"),
    "BlueprintReadOnly": _flags("CPF_BlueprintVisible", "CPF_BlueprintReadOnly"),
    "BlueprintReadWrite": _flags("CPF_BlueprintVisible"),
    "BlueprintSetter": Effect(flags=["CPF_BlueprintVisible"], value_key="BlueprintSetter"),
    "Category": _value("Category"),
    "Config": _flags("CPF_Config"),
    "DisplayName": _value("DisplayName"),
    "DuplicateTransient": _flags("CPF_DuplicateTransient"),
    "EditAnywhere": _flags("CPF_Edit"),
    "EditDefaultsOnly": _flags("CPF_Edit", "CPF_DisableEditOnInstance"),
    "EditFixedSize": _flags("CPF_EditFixedSize"),
    "EditInstanceOnly": _flags("CPF_Edit", "CPF_DisableEditOnTemplate"),
    "Export": _flags("CPF_ExportObject"),
    "FieldNotify": _meta(FieldNotify=""),
    "Getter": _value("Getter"),
    "GlobalConfig": _flags("CPF_GlobalConfig", "CPF_Config"),
    "Instanced": Effect(
        flags=["CPF_PersistentInstance", "CPF_ExportObject", "CPF_InstancedReference"], meta={"EditInline": "true"}
    ),
    "Interp": _flags("CPF_Interp", "CPF_BlueprintVisible", "CPF_Edit"),
    "NoClear": _flags("CPF_NoClear"),
    "NonTransactional": _flags("CPF_NonTransactional"),
    "NotReplicated": _flags("CPF_RepSkip"),
    "Replicated": _flags("CPF_Net"),
    "ReplicatedUsing": Effect(flags=["CPF_Net", "CPF_RepNotify"], value_key="ReplicatedUsing"),
    "SaveGame": _flags("CPF_SaveGame"),
    "Setter": _value("Setter"),
    "SimpleDisplay": _flags("CPF_SimpleDisplay"),
    "SkipSerialization": _flags("CPF_SkipSerialization"),
    "TextExportTransient": _flags("CPF_TextExportTransient"),
    "Transient": _flags("CPF_Transient"),
    "VisibleAnywhere": _flags("CPF_Edit", "CPF_EditConst"),
    "VisibleDefaultsOnly": _flags("CPF_Edit", "CPF_EditConst", "CPF_DisableEditOnInstance"),
    "VisibleInstanceOnly": _flags("CPF_Edit", "CPF_EditConst", "CPF_DisableEditOnTemplate"),
}

FUNCTION = {
    "BlueprintAuthorityOnly": _flags("FUNC_BlueprintAuthorityOnly"),
    "BlueprintCallable": _flags("FUNC_BlueprintCallable"),
    "BlueprintCosmetic": _flags("FUNC_BlueprintCosmetic"),
    "BlueprintGetter": Effect(
        flags=["FUNC_BlueprintCallable", "FUNC_BlueprintPure"], meta={"BlueprintGetter": ""}
    ),
    "BlueprintImplementableEvent": _flags("FUNC_BlueprintEvent", "FUNC_Event"),
    "BlueprintInternalUseOnly": _meta(BlueprintInternalUseOnly="true"),
    "BlueprintNativeEvent": _flags("FUNC_BlueprintEvent", "FUNC_Event"),
    "BlueprintPure": _flags("FUNC_BlueprintCallable", "FUNC_BlueprintPure"),
    "BlueprintSetter": Effect(flags=["FUNC_BlueprintCallable"], meta={"BlueprintSetter": ""}),
    "CallInEditor": _meta(CallInEditor="true"),
    "Category": _value("Category"),
    "Client": _flags("FUNC_Net", "FUNC_NetClient"),
    "DisplayName": _value("DisplayName"),
    "Exec": _flags("FUNC_Exec"),
    "FieldNotify": _meta(FieldNotify=""),
    "NetMulticast": _flags("FUNC_Net", "FUNC_NetMulticast"),
    "Reliable": _flags("FUNC_NetReliable"),
    "SealedEvent": _flags("FUNC_Final"),
    "Server": _flags("FUNC_Net", "FUNC_NetServer"),
    "Unreliable": _flags(),
    "WithValidation": _flags("FUNC_NetValidate"),
}

TABLES = {
    "UCLASS": CLASS,
    "UINTERFACE": CLASS,
    "USTRUCT": STRUCT,
    "UENUM": ENUM,
    "UPROPERTY": PROPERTY,
    "UFUNCTION": FUNCTION,
    "UDELEGATE": FUNCTION,
}


def apply(path, macro, specifiers, target):
    """Adds the flags and the meta data of `specifiers` ((name, value or None, line) each) to `target`; answers the
    set of their names in the table's spelling."""
    table = {name.lower(): (name, effect) for name, effect in TABLES[macro].items()}
    found = set()
    for name, value, line in specifiers:
        if name.lower() not in table:
            raise HeaderError(path, line, _unknown(macro, name))
        spelling, effect = table[name.lower()]
        if value is not None and not effect.value_key and not (macro == "UFUNCTION" and spelling == "BlueprintPure"):
            raise HeaderError(path, line, f"{macro} specifier '{spelling}' takes no value; remove '={value}'")
        if value is None and effect.value_key and spelling not in ("Getter", "Setter"):
            raise HeaderError(path, line, f"{macro} specifier '{spelling}' needs a value: {spelling}=...")
        if value == "false" and spelling == "BlueprintPure":
            target.stays_impure = True
            continue
        target.flags.extend(flag for flag in effect.flags if flag not in target.flags)
        target.meta.update(effect.meta)
        if effect.value_key:
            target.meta[effect.value_key] = value or ""
        found.add(spelling)
    return found


def _unknown(macro, name):
    near = difflib.get_close_matches(name, TABLES[macro], 1, 0.5)
    hint = f"did you mean '{near[0]}'?" if near else f"free keys go into meta=({name}=...)"
    return f"unknown {macro} specifier '{name}'; {hint}"
