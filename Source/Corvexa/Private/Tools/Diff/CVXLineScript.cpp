#include "Tools/Diff/CVXLineScript.h"

#include "Containers/Map.h"

#include <algorithm>

namespace
{
/** Gives equal lines the same number, so that lines are compared once. */
class FLineNumbers
{
public:
	TArray<int32> Number(const TArray<FStringView>& Lines)
	{
		TArray<int32> Result;
		Result.Reserve(Lines.Num());
		for (const FStringView Line : Lines)
		{
			Result.Add(Numbers.FindOrAdd(Line, Numbers.Num()));
		}
		return Result;
	}

	int32 Num() const { return Numbers.Num(); }

private:
	TMap<FStringView, int32> Numbers;
};

/**
 * How many lines the first Row old lines and the first Column new ones have in common, told by its steps: a row's count
 * grows by 0 or 1 from one column to the next, so a bit for each says all, and 64 columns are worked out at once.
 */
class FCommonLineTable
{
public:
	/** @param NumberCount all numbers of new lines are below it. */
	FCommonLineTable(const TArray<int32>& Old, const TArray<int32>& New, int32 NumberCount)
		: Words((New.Num() + 63) / 64)
	{
		FindPlaces(New, NumberCount);
		Rows.SetNumUninitialized((Old.Num() + 1) * Words);
		for (int32 Word = 0; Word < Words; ++Word)
		{
			Rows[Word] = ~0ull;
		}
		for (int32 Row = 1; Row <= Old.Num(); ++Row)
		{
			FillRow(Row, Old[Row - 1] < NumberCount ? Places.GetData() + Old[Row - 1] * Words : nullptr);
		}
	}

	/** Whether the count grows from the column before to this one, which is from 1 on. */
	bool GrowsAt(int32 Row, int32 Column) const
	{
		return (Rows[Row * Words + (Column - 1) / 64] >> ((Column - 1) % 64) & 1) == 0;
	}

private:
	void FindPlaces(const TArray<int32>& New, int32 NumberCount)
	{
		Places.SetNumZeroed(NumberCount * Words);
		for (int32 Index = 0; Index < New.Num(); ++Index)
		{
			Places[New[Index] * Words + Index / 64] |= 1ull << (Index % 64);
		}
	}

	/** @param Matches the places of the row's line among the new ones; null for none. */
	void FillRow(int32 Row, const uint64* Matches)
	{
		const uint64* Above = Rows.GetData() + (Row - 1) * Words;
		uint64* Here = Rows.GetData() + Row * Words;
		uint64 Carry = 0;
		for (int32 Word = 0; Word < Words; ++Word)
		{
			// The addition carries a bit from the place of a match to the next step behind it.
			const uint64 Match = Matches ? Matches[Word] : 0;
			const uint64 Sum = Above[Word] + (Above[Word] & Match);
			const uint64 Carried = Sum + Carry;
			Here[Word] = Carried | (Above[Word] & ~Match);
			Carry = (Sum < Above[Word] || Carried < Sum) ? 1 : 0;
		}
	}

	const int32 Words;
	/** For each number of a new line a bit for each place. */
	TArray<uint64> Places;
	/** For each row a bit for each column: clear where the count grows. */
	TArray<uint64> Rows;
};
} // namespace

TArray<FStringView> SplitIntoLines(FStringView Text)
{
	TArray<FStringView> Lines;
	int32 Start = 0;
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const TCHAR Char = Text[Index];
		if (Char != u'\n' && Char != u'\r')
		{
			continue;
		}
		Lines.Add(Text.Mid(Start, Index - Start));
		Index += Char == u'\r' && Index + 1 < Text.Len() && Text[Index + 1] == u'\n' ? 1 : 0;
		Start = Index + 1;
	}
	if (Start < Text.Len())
	{
		Lines.Add(Text.Mid(Start));
	}
	return Lines;
}

TArray<FCVXScriptLine> MakeLineScript(const TArray<FStringView>& Old, const TArray<FStringView>& New)
{
	FLineNumbers Numbers;
	const TArray<int32> NewNumbers = Numbers.Number(New);
	const int32 NumberCount = Numbers.Num();
	const TArray<int32> OldNumbers = Numbers.Number(Old);
	const FCommonLineTable Table(OldNumbers, NewNumbers, NumberCount);
	TArray<FCVXScriptLine> Script;
	int32 Row = Old.Num();
	int32 Column = New.Num();
	while (Row > 0 || Column > 0)
	{
		if (Row > 0 && Column > 0 && OldNumbers[Row - 1] == NewNumbers[Column - 1])
		{
			--Column;
			Script.Add({ECVXLineFate::Equal, Old[--Row]});
		}
		else if (Column > 0 && (Row == 0 || !Table.GrowsAt(Row, Column)))
		{
			Script.Add({ECVXLineFate::Added, New[--Column]});
		}
		else
		{
			Script.Add({ECVXLineFate::Removed, Old[--Row]});
		}
	}
	std::reverse(Script.GetData(), Script.GetData() + Script.Num());
	return Script;
}
