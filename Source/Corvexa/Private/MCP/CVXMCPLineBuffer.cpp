#include "MCP/CVXMCPLineBuffer.h"

void FCVXMCPLineBuffer::Append(const FString& Part)
{
	DropTaken();
	Text += Part;
}

bool FCVXMCPLineBuffer::TakeLine(FString& OutLine)
{
	for (int32 End = 0; FindLineEnd(End);)
	{
		const FStringView Line = FStringView(Text).Mid(Begin, End - Begin).TrimStartAndEnd();
		Begin = Searched = End + 1 < Text.Len() ? End + 1 : Text.Len();
		if (!Line.IsEmpty())
		{
			OutLine = FString(Line);
			return true;
		}
	}
	return false;
}

void FCVXMCPLineBuffer::Empty()
{
	Text.Empty();
	Begin = Searched = 0;
}

bool FCVXMCPLineBuffer::FindLineEnd(int32& OutEnd)
{
	int32 Offset = INDEX_NONE;
	if (FStringView(Text).RightChop(Searched).FindChar(TEXT('\n'), Offset))
	{
		OutEnd = Searched + Offset;
		return true;
	}
	Searched = OutEnd = Text.Len();
	return Num() > MaxLineLength;
}

/** Once for all the lines of a part: taking each one out by itself would move the rest as many times. */
void FCVXMCPLineBuffer::DropTaken()
{
	if (Begin > 0)
	{
		Text.RightChopInline(Begin);
		Searched -= Begin;
		Begin = 0;
	}
}
