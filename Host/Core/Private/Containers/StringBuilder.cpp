#include "Misc/StringBuilder.h"

FStringBuilderBase::FStringBuilderBase(TCHAR* Inline, int32 Capacity)
	: InlineData(Inline)
	, Data(Inline)
	, Max(Capacity)
{
	Data[0] = 0;
}

FStringBuilderBase::~FStringBuilderBase()
{
	if (Data != InlineData)
	{
		FMemory::Free(Data);
	}
}

FStringBuilderBase& FStringBuilderBase::Append(FStringView Text)
{
	check(Text.Len() < MAX_int32 - Count - 1);
	const int32 Needed = Count + Text.Len() + 1;
	if (Needed > Max)
	{
		const int32 NewMax = CalculateSlackGrow(Needed, Max);
		TCHAR* NewData = (TCHAR*)FMemory::Malloc((SIZE_T)NewMax * sizeof(TCHAR));
		FMemory::Memcpy(NewData, Data, (SIZE_T)Count * sizeof(TCHAR));
		FMemory::Memcpy(NewData + Count, Text.GetData(), (SIZE_T)Text.Len() * sizeof(TCHAR));
		if (Data != InlineData)
		{
			FMemory::Free(Data);
		}
		Data = NewData;
		Max = NewMax;
	}
	else
	{
		FMemory::Memmove(Data + Count, Text.GetData(), (SIZE_T)Text.Len() * sizeof(TCHAR));
	}
	Count = Needed - 1;
	Data[Count] = 0;
	return *this;
}

void FStringBuilderBase::Reset()
{
	Count = 0;
	Data[0] = 0;
}

void FStringBuilderBase::RemoveSuffix(int32 Units)
{
	check(Units >= 0 && Units <= Count);
	Count -= Units;
	Data[Count] = 0;
}
