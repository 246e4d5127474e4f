#pragma once

namespace Algo
{
/** Appends the projection of each element to the output. */
template <typename InputType, typename OutputType, typename TransformType>
void Transform(const InputType& Input, OutputType& Output, TransformType Function)
{
	for (const auto& Item : Input)
	{
		Output.Add(Function(Item));
	}
}

template <typename InputType, typename OutputType, typename PredicateType, typename TransformType>
void TransformIf(const InputType& Input, OutputType& Output, PredicateType Predicate, TransformType Function)
{
	for (const auto& Item : Input)
	{
		if (Predicate(Item))
		{
			Output.Add(Function(Item));
		}
	}
}
} // namespace Algo
