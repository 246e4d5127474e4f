#include "Json/JsonTokenReader.h"

bool FJsonTokenReader::Stop(EJsonNotation& OutNotation)
{
	OutNotation = EJsonNotation::Error;
	return false;
}

bool FJsonTokenReader::Next(EJsonNotation& OutNotation)
{
	if (HasFailed())
	{
		return Stop(OutNotation);
	}
	SkipSpace();
	if (Phase == EPhase::AfterValue)
	{
		if (Containers.IsEmpty())
		{
			return IsAtEnd() ? false : (Fail(TextBehindEnd), Stop(OutNotation));
		}
		if (!Accept(','))
		{
			return Close(OutNotation);
		}
		SkipSpace();
	}
	else if (Phase == EPhase::Opened && Peek() == (IsInObject() ? '}' : ']'))
	{
		return Close(OutNotation);
	}
	return ReadValue(OutNotation) || Stop(OutNotation);
}

bool FJsonTokenReader::Open(bool bObject, EJsonNotation& OutNotation)
{
	if (Containers.Num() >= JsonMaxDepth)
	{
		return Fail(TooDeep);
	}
	Accept(bObject ? '{' : '[');
	Containers.Add(bObject);
	Phase = EPhase::Opened;
	OutNotation = bObject ? EJsonNotation::ObjectStart : EJsonNotation::ArrayStart;
	return true;
}

bool FJsonTokenReader::Close(EJsonNotation& OutNotation)
{
	const bool bObject = IsInObject();
	if (!Accept(bObject ? '}' : ']'))
	{
		Fail(bObject ? NoEndOfObject : NoEndOfArray);
		return Stop(OutNotation);
	}
	Containers.Pop(EAllowShrinking::No);
	Phase = EPhase::AfterValue;
	Identifier.Reset();
	OutNotation = bObject ? EJsonNotation::ObjectEnd : EJsonNotation::ArrayEnd;
	return true;
}

bool FJsonTokenReader::ReadValue(EJsonNotation& OutNotation)
{
	Identifier.Reset();
	if (IsInObject())
	{
		if (!ScanName(Identifier))
		{
			return false;
		}
		SkipSpace();
	}
	if (IsAtEnd())
	{
		return Fail(Containers.IsEmpty() ? EmptyText : NoValue);
	}
	if (Peek() == '{' || Peek() == '[')
	{
		return Open(Peek() == '{', OutNotation);
	}
	Phase = EPhase::AfterValue;
	return ReadScalar(OutNotation);
}

bool FJsonTokenReader::ReadScalar(EJsonNotation& OutNotation)
{
	switch (Peek())
	{
	case '"':
		OutNotation = EJsonNotation::String;
		StringValue.Reset();
		return ScanString(StringValue);
	case 't':
	case 'f':
		OutNotation = EJsonNotation::Boolean;
		bBoolean = Peek() == 't';
		return ScanWord(bBoolean ? "true" : "false");
	case 'n':
		OutNotation = EJsonNotation::Null;
		return ScanWord("null");
	default:
		OutNotation = EJsonNotation::Number;
		return ReadNumber();
	}
}

bool FJsonTokenReader::ReadNumber()
{
	const ANSICHAR* Start = nullptr;
	const ANSICHAR* End = nullptr;
	bool bWhole = false;
	if (!ScanNumber(Start, End, bWhole))
	{
		return false;
	}
	NumberText.Reset();
	NumberText.AppendUtf8(Start, End - Start);
	return true;
}
