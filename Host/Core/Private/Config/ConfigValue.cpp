#include "ConfigValue.h"

FString ConfigValue::Quote(const FString& Value)
{
	const FStringView View(Value);
	const bool bBlankEnds = View.TrimStartAndEnd().Len() != View.Len();
	int32 Unused = INDEX_NONE;
	const bool bControls = View.FindChar(u'\n', Unused) || View.FindChar(u'\r', Unused);
	if (!bBlankEnds && !bControls && !View.StartsWith(u'"'))
	{
		return Value;
	}
	FString Result = TEXT("\"");
	for (const TCHAR Char : Value)
	{
		switch (Char)
		{
		case u'"':
			Result += TEXT("\\\"");
			break;
		case u'\\':
			Result += TEXT("\\\\");
			break;
		case u'\n':
			Result += TEXT("\\n");
			break;
		case u'\r':
			Result += TEXT("\\r");
			break;
		default:
			Result.AppendChars(&Char, 1);
		}
	}
	return Result + TEXT("\"");
}

bool ConfigValue::Unquote(FStringView Text, FString& OutValue)
{
	OutValue = FString(Text);
	if (!Text.StartsWith(u'"'))
	{
		return true;
	}
	FString Result;
	for (int32 Index = 1; Index < Text.Len(); ++Index)
	{
		if (Text[Index] == u'"')
		{
			OutValue = MoveTemp(Result);
			return true;
		}
		const bool bEscape = Text[Index] == u'\\' && Index + 1 < Text.Len();
		const TCHAR Char = bEscape ? Text[++Index] : Text[Index];
		const TCHAR Meant = bEscape && Char == u'n' ? u'\n' : (bEscape && Char == u'r' ? u'\r' : Char);
		Result.AppendChars(&Meant, 1);
	}
	return false;
}
