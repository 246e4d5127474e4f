#include "Knowledge/CVXFallbackDictionary.h"

namespace
{
constexpr FCVXFallbackMapping Exact[] = {
	{TEXT("bp"), TEXT("blueprint")},
	{TEXT("proj"), TEXT("project")},
	{TEXT("anim"), TEXT("animation")},
	{TEXT("mat"), TEXT("material")},
	{TEXT("char"), TEXT("character")},
	{TEXT("ctrl"), TEXT("controller")},
	{TEXT("nav"), TEXT("navigation")},
	{TEXT("fx"), TEXT("effect")},
	{TEXT("vfx"), TEXT("effect")},
	{TEXT("sfx"), TEXT("sound")},
	{TEXT("hud"), TEXT("widget")},
	{TEXT("gui"), TEXT("widget")},
	{TEXT("ai"), TEXT("behavior")},
	{TEXT("蓝图"), TEXT("blueprint")},
	{TEXT("项目"), TEXT("project")},
	{TEXT("类"), TEXT("class")},
	{TEXT("创建"), TEXT("create")},
	{TEXT("插件"), TEXT("plugin")},
	{TEXT("组件"), TEXT("component")},
	{TEXT("材质"), TEXT("material")},
	{TEXT("动画"), TEXT("animation")},
	{TEXT("关卡"), TEXT("level")},
};

constexpr FCVXFallbackMapping Prefixes[] = {
	{TEXT("проект"), TEXT("project")},
	{TEXT("клас"), TEXT("class")},
	{TEXT("блюпринт"), TEXT("blueprint")},
	{TEXT("плагин"), TEXT("plugin")},
	{TEXT("модул"), TEXT("module")},
	{TEXT("компонент"), TEXT("component")},
	{TEXT("материал"), TEXT("material")},
	{TEXT("уровен"), TEXT("level")},
	{TEXT("созда"), TEXT("create")},
	{TEXT("добави"), TEXT("add")},
	{TEXT("удали"), TEXT("delete")},
	{TEXT("измени"), TEXT("change")},
	{TEXT("опиши"), TEXT("describe")},
	{TEXT("расскаж"), TEXT("describe")},
	{TEXT("обзор"), TEXT("overview")},
	{TEXT("анимаци"), TEXT("animation")},
	{TEXT("настро"), TEXT("settings")},
	{TEXT("projekt"), TEXT("project")},
	{TEXT("klasse"), TEXT("class")},
	{TEXT("erstell"), TEXT("create")},
	{TEXT("effekt"), TEXT("effect")},
	{TEXT("classe"), TEXT("class")},
	{TEXT("projet"), TEXT("project")},
	{TEXT("proyecto"), TEXT("project")},
	{TEXT("progetto"), TEXT("project")},
};
} // namespace

TArrayView<const FCVXFallbackMapping> CVXFallbackDictionary::GetExact()
{
	return Exact;
}

TArrayView<const FCVXFallbackMapping> CVXFallbackDictionary::GetPrefixes()
{
	return Prefixes;
}
