#include "UObject/NameTypes.h"

#include "Containers/Map.h"

#include <mutex>
#include <shared_mutex>

namespace
{
struct FNameEntry
{
	FString Text;
	uint32 ComparisonIndex;
};

/** All texts of names, never removed. Entries sit in blocks that don't move, so reading one needs no lock. */
class FNameTable
{
public:
	static FNameTable& Get()
	{
		// Never destroyed: names are used by static objects until the very end.
		static FNameTable* const Table = new FNameTable();
		return *Table;
	}

	/** @return the place of exactly this spelling, or 0 when it isn't there and shall not be added. */
	uint32 FindOrAdd(FStringView Text, bool bAdd)
	{
		{
			std::shared_lock Lock(Mutex);
			if (const uint32* Found = Spellings.Find(Text))
			{
				return *Found;
			}
			if (!bAdd)
			{
				const uint32* First = FirstSpellings.Find(Text);
				return First ? *First : 0;
			}
		}
		std::unique_lock Lock(Mutex);
		if (const uint32* Found = Spellings.Find(Text))
		{
			return *Found;
		}
		return Add(Text);
	}

	const FNameEntry& operator[](uint32 Index) const { return Blocks[Index / BlockSize][Index % BlockSize]; }

private:
	static constexpr uint32 BlockSize = 4096;
	static constexpr uint32 MaxBlocks = 4096;

	FNameTable() { Add(TEXT("None")); }

	uint32 Add(FStringView Text)
	{
		const uint32 Index = Count++;
		check(Index < BlockSize * MaxBlocks);
		FNameEntry*& Block = Blocks[Index / BlockSize];
		if (!Block)
		{
			Block = new FNameEntry[BlockSize];
		}
		FNameEntry& Entry = Block[Index % BlockSize];
		Entry.Text = FString(Text);
		Entry.ComparisonIndex = FirstSpellings.FindOrAdd(Entry.Text, Index);
		Spellings.Add(Entry.Text, Index);
		return Index;
	}

	std::shared_mutex Mutex;
	FNameEntry* Blocks[MaxBlocks] = {};
	uint32 Count = 0;
	TMap<FString, uint32> FirstSpellings;
	TMap<FString, uint32, TCaseSensitiveMapKeyFuncs<uint32>> Spellings;
};

/** Cuts "_12" off "Light_12". A number with a leading zero or beyond 32 bits stays part of the text. */
int32 SplitNumber(FStringView& Text)
{
	int32 Digits = 0;
	while (Digits < Text.Len() && FChar::IsDigit(Text[Text.Len() - 1 - Digits]))
	{
		++Digits;
	}
	const int32 Underscore = Text.Len() - 1 - Digits;
	const bool bLeadingZero = Digits > 1 && Text[Underscore + 1] == u'0';
	if (Digits == 0 || Digits > 9 || bLeadingZero || Underscore < 1 || Text[Underscore] != u'_')
	{
		return 0;
	}
	int32 Number = 0;
	for (const TCHAR Digit : Text.RightChop(Underscore + 1))
	{
		Number = Number * 10 + (Digit - u'0');
	}
	Text.LeftInline(Underscore);
	return Number + 1;
}
} // namespace

FName::FName(FStringView Text, EFindName FindType)
{
	Text = Text.Left(NAME_SIZE);
	if (Text.IsEmpty())
	{
		return;
	}
	const int32 SplitOff = SplitNumber(Text);
	DisplayIndex = FNameTable::Get().FindOrAdd(Text, FindType == FNAME_Add);
	ComparisonIndex = FNameTable::Get()[DisplayIndex].ComparisonIndex;
	const bool bUnknown = DisplayIndex == 0 && !Text.Equals(TEXT("None"), ESearchCase::IgnoreCase);
	Number = bUnknown ? 0 : SplitOff;
}

FString FName::GetPlainNameString() const
{
	return FNameTable::Get()[DisplayIndex].Text;
}

FString FName::ToString() const
{
	FString Result;
	AppendString(Result);
	return Result;
}

void FName::AppendString(FString& Out) const
{
	Out.Append(FNameTable::Get()[DisplayIndex].Text);
	if (Number > 0)
	{
		Out.Appendf(TEXT("_%d"), Number - 1);
	}
}

int32 FName::Compare(FName Other) const
{
	if (ComparisonIndex == Other.ComparisonIndex)
	{
		return Number < Other.Number ? -1 : (Number > Other.Number ? 1 : 0);
	}
	const FNameTable& Table = FNameTable::Get();
	return Table[ComparisonIndex].Text.Compare(Table[Other.ComparisonIndex].Text, ESearchCase::IgnoreCase);
}
