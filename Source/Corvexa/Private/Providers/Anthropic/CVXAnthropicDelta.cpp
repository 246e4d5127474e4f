#include "Providers/Anthropic/CVXAnthropicDelta.h"

namespace
{
/** Passes over the value whose first token was read. @return false on an error. */
bool SkipValue(FJsonReader& Reader, EJsonNotation Notation)
{
	const bool bContainer = Notation == EJsonNotation::ObjectStart || Notation == EJsonNotation::ArrayStart;
	return !bContainer || Reader.SkipObject();
}
} // namespace

bool FCVXAnthropicDelta::Read(const FString& Data)
{
	FJsonReader Reader(Data);
	EJsonNotation Notation = EJsonNotation::Error;
	if (!Reader.ReadNext(Notation) || Notation != EJsonNotation::ObjectStart)
	{
		return false;
	}
	while (Reader.ReadNext(Notation) && Notation != EJsonNotation::ObjectEnd)
	{
		if (!ReadMember(Reader, Notation))
		{
			return false;
		}
	}
	// What stands behind the object makes the text bad JSON.
	return Notation == EJsonNotation::ObjectEnd && !Reader.ReadNext(Notation) && Notation != EJsonNotation::Error;
}

bool FCVXAnthropicDelta::ReadMember(FJsonReader& Reader, EJsonNotation Notation)
{
	if (Notation == EJsonNotation::Number && Reader.GetIdentifier() == TEXT("index"))
	{
		Index = FCString::Atoi(*Reader.GetValueAsNumberString());
		return true;
	}
	if (Notation == EJsonNotation::ObjectStart && Reader.GetIdentifier() == TEXT("delta"))
	{
		return ReadDelta(Reader);
	}
	return SkipValue(Reader, Notation);
}

bool FCVXAnthropicDelta::ReadDelta(FJsonReader& Reader)
{
	EJsonNotation Notation = EJsonNotation::Error;
	while (Reader.ReadNext(Notation) && Notation != EJsonNotation::ObjectEnd)
	{
		const FString& Name = Reader.GetIdentifier();
		if (Notation != EJsonNotation::String)
		{
			if (!SkipValue(Reader, Notation))
			{
				return false;
			}
		}
		else if (Name == TEXT("type"))
		{
			Type = Reader.GetValueAsString();
		}
		else if (Name == TEXT("text"))
		{
			Text = Reader.GetValueAsString();
		}
		else if (Name == TEXT("partial_json"))
		{
			PartialJson = Reader.GetValueAsString();
		}
		else if (Name == TEXT("thinking"))
		{
			Thinking = Reader.GetValueAsString();
		}
	}
	return Notation == EJsonNotation::ObjectEnd;
}
