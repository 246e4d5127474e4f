#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

#include <variant>

template <typename T>
struct TInPlaceType
{
};

/** One value out of several types. Reading another type than the one held is a programmer's mistake. */
template <typename... Types>
class TVariant
{
public:
	TVariant() = default;
	template <typename T, typename... ArgTypes>
	explicit TVariant(TInPlaceType<T>, ArgTypes&&... Args)
		: Value(std::in_place_type<T>, Forward<ArgTypes>(Args)...)
	{
	}

	template <typename T>
	bool IsType() const
	{
		return std::holds_alternative<T>(Value);
	}
	template <typename T>
	T& Get()
	{
		check(IsType<T>());
		return std::get<T>(Value);
	}
	template <typename T>
	const T& Get() const
	{
		check(IsType<T>());
		return std::get<T>(Value);
	}
	template <typename T>
	T* TryGet()
	{
		return std::get_if<T>(&Value);
	}
	template <typename T>
	const T* TryGet() const
	{
		return std::get_if<T>(&Value);
	}
	template <typename T>
	void Set(const T& NewValue)
	{
		Value.template emplace<T>(NewValue);
	}
	template <typename T, typename... ArgTypes>
	T& Emplace(ArgTypes&&... Args)
	{
		return Value.template emplace<T>(Forward<ArgTypes>(Args)...);
	}
	/** The place of the held type in the list. */
	SIZE_T GetIndex() const { return Value.index(); }

	template <typename CallableType, typename... VariantTypes>
	friend decltype(auto) Visit(CallableType&& Callable, const TVariant<VariantTypes...>& Variant);

	template <typename T>
	static constexpr SIZE_T IndexOfType()
	{
		SIZE_T Index = 0;
		(void)((std::is_same_v<T, Types> ? false : (++Index, true)) && ...);
		return Index;
	}

private:
	std::variant<Types...> Value;
};

template <typename CallableType, typename... Types>
decltype(auto) Visit(CallableType&& Callable, const TVariant<Types...>& Variant)
{
	return std::visit(Forward<CallableType>(Callable), Variant.Value);
}
