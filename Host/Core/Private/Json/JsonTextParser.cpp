#include "Json/JsonTextParser.h"

#include "Dom/JsonObject.h"
#include "Json/JsonNumber.h"

bool FJsonTextParser::Parse(TSharedPtr<FJsonValue>& OutValue)
{
	SkipSpace();
	if (IsAtEnd())
	{
		return Fail(EmptyText);
	}
	if (!ParseValue(OutValue, 1))
	{
		return false;
	}
	SkipSpace();
	return IsAtEnd() || Fail(TextBehindEnd);
}

bool FJsonTextParser::ParseValue(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	SkipSpace();
	if (IsAtEnd())
	{
		return Fail(NoValue);
	}
	switch (Peek())
	{
	case '{':
		return ParseObject(OutValue, Depth);
	case '[':
		return ParseArray(OutValue, Depth);
	case 't':
		return ParseWord("true", MakeShared<FJsonValueBoolean>(true), OutValue);
	case 'f':
		return ParseWord("false", MakeShared<FJsonValueBoolean>(false), OutValue);
	case 'n':
		return ParseWord("null", MakeShared<FJsonValueNull>(), OutValue);
	case '"':
		break;
	default:
		return ParseNumber(OutValue);
	}
	FString String;
	if (!ScanString(String))
	{
		return false;
	}
	OutValue = MakeShared<FJsonValueString>(MoveTemp(String));
	return true;
}

bool FJsonTextParser::ParseObject(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	if (Depth > JsonMaxDepth)
	{
		return Fail(TooDeep);
	}
	Accept('{');
	TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
	SkipSpace();
	if (!Accept('}'))
	{
		do
		{
			if (!ParseMember(*Object, Depth))
			{
				return false;
			}
			SkipSpace();
		} while (Accept(','));
		if (!Accept('}'))
		{
			return Fail(NoEndOfObject);
		}
	}
	OutValue = MakeShared<FJsonValueObject>(MoveTemp(Object));
	return true;
}

bool FJsonTextParser::ParseMember(FJsonObject& Object, int32 Depth)
{
	FString Name;
	TSharedPtr<FJsonValue> Value;
	if (!ScanName(Name) || !ParseValue(Value, Depth + 1))
	{
		return false;
	}
	Object.Values.Add(Name, MoveTemp(Value));
	return true;
}

bool FJsonTextParser::ParseArray(TSharedPtr<FJsonValue>& OutValue, int32 Depth)
{
	if (Depth > JsonMaxDepth)
	{
		return Fail(TooDeep);
	}
	Accept('[');
	TArray<TSharedPtr<FJsonValue>> Array;
	SkipSpace();
	if (!Accept(']'))
	{
		do
		{
			if (!ParseValue(Array.AddDefaulted_GetRef(), Depth + 1))
			{
				return false;
			}
			SkipSpace();
		} while (Accept(','));
		if (!Accept(']'))
		{
			return Fail(NoEndOfArray);
		}
	}
	OutValue = MakeShared<FJsonValueArray>(MoveTemp(Array));
	return true;
}

bool FJsonTextParser::ParseNumber(TSharedPtr<FJsonValue>& OutValue)
{
	const ANSICHAR* Start = nullptr;
	const ANSICHAR* End = nullptr;
	bool bWhole = false;
	if (!ScanNumber(Start, End, bWhole))
	{
		return false;
	}
	OutValue = JsonNumber::Make(Start, End, bWhole);
	return true;
}

bool FJsonTextParser::ParseWord(const char* Word, TSharedPtr<FJsonValue>&& Meaning, TSharedPtr<FJsonValue>& OutValue)
{
	if (!ScanWord(Word))
	{
		return false;
	}
	OutValue = MoveTemp(Meaning);
	return true;
}
