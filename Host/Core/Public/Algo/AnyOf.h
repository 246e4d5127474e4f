#pragma once

namespace Algo
{
template <typename RangeType, typename PredicateType>
bool AnyOf(const RangeType& Range, PredicateType Predicate)
{
	for (const auto& Item : Range)
	{
		if (Predicate(Item))
		{
			return true;
		}
	}
	return false;
}

template <typename RangeType, typename PredicateType>
bool AllOf(const RangeType& Range, PredicateType Predicate)
{
	return !AnyOf(Range, [&Predicate](const auto& Item) { return !Predicate(Item); });
}
} // namespace Algo
