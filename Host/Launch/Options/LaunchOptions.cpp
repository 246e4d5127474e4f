#include "Launch/Options/LaunchOptions.h"

#include "Algo/AnyOf.h"
#include "Launch/Options/NearestName.h"

namespace
{
using FSetText = bool (*)(FLaunchOptions&, const FString&);
using FLooksRight = bool (*)(const FString&);

struct FOption
{
	const TCHAR* Name;
	/** A short form, or null. */
	const TCHAR* ShortName;
	/** What the value is called; null for a flag. */
	const TCHAR* Value;
	const TCHAR* Help;
	/** Takes the value, which is empty for a flag. @return false when it isn't one of those that there are. */
	FSetText Set;
	/** Whether an argument is the value, where that may be missing; null where it may not. */
	FLooksRight LooksLikeValue = nullptr;
	/** Takes a number that may stand behind the value; null where none may. @return false when it is out of range. */
	FSetText SetNumber = nullptr;
};

constexpr const TCHAR* LastTask = TEXT("last");
/** A shorter text is taken for a word rather than for the beginning of an id. */
constexpr int32 MinIdChars = 4;

bool IsNumber(const FString& Text)
{
	const FString Digits = Text.StartsWith(TEXT("-")) ? Text.RightChop(1) : Text;
	return !Digits.IsEmpty() && Algo::AllOf(Digits, [](TCHAR Char) { return FChar::IsDigit(Char); });
}

/** Hexadecimal digits, and not a word such as "decade". */
bool LooksLikeTaskId(const FString& Text)
{
	return Text == LastTask ||
		(Text.Len() >= MinIdChars && Algo::AllOf(Text, [](TCHAR Char) { return FChar::IsHexDigit(Char); }) &&
			Algo::AnyOf(Text, [](TCHAR Char) { return FChar::IsDigit(Char); }));
}

bool SetResume(FLaunchOptions& Options, const FString& Value)
{
	Options.Resume = Value.IsEmpty() ? FString(LastTask) : Value;
	return true;
}

bool SetForkMessages(FLaunchOptions& Options, const FString& Value)
{
	const int64 Count = Value.Len() < 10 ? FCString::Atoi64(*Value) : 0;
	Options.ForkMessages = static_cast<int32>(Count);
	return Count > 0;
}

template <FString FLaunchOptions::*Member>
bool SetText(FLaunchOptions& Options, const FString& Value)
{
	Options.*Member = Value;
	return !Value.IsEmpty();
}

template <bool FLaunchOptions::*Member>
bool SetFlag(FLaunchOptions& Options, const FString&)
{
	Options.*Member = true;
	return true;
}

bool SetApprovalMode(FLaunchOptions& Options, const FString& Value)
{
	struct FMode
	{
		const TCHAR* Name;
		ECVXApprovalMode Mode;
	};
	static constexpr FMode Modes[] = {{TEXT("ask"), ECVXApprovalMode::AlwaysAsk},
		{TEXT("reads"), ECVXApprovalMode::AutoApproveReads}, {TEXT("all"), ECVXApprovalMode::FullyAutonomous}};
	for (const FMode& Mode : Modes)
	{
		if (Value == Mode.Name)
		{
			Options.ApprovalMode = Mode.Mode;
			return true;
		}
	}
	return false;
}

constexpr FOption Table[] = {
	{TEXT("--project"), nullptr, TEXT("DIR"),
		TEXT("the project: its directory or project file (default: the working directory)"),
		&SetText<&FLaunchOptions::Project>},
	{TEXT("--provider"), nullptr, TEXT("NAME"),
		TEXT("the provider profile for this run; 'demo' is the built-in demo model, also as "
			 "'demo-openai', 'demo-gemini'"),
		&SetText<&FLaunchOptions::Provider>},
	{TEXT("--model"), nullptr, TEXT("ID"), TEXT("the vendor's model id for this run"),
		&SetText<&FLaunchOptions::Model>},
	{TEXT("--agent"), nullptr, TEXT("NAME"), TEXT("the agent profile for this run"), &SetText<&FLaunchOptions::Agent>},
	{TEXT("--approve"), nullptr, TEXT("ask|reads|all"),
		TEXT("which tool calls run without asking: none, those that only read, or all"), &SetApprovalMode},
	{TEXT("--resume"), nullptr, TEXT("[ID]"),
		TEXT("go on with a stored conversation, by the beginning of its id; the last one without"), &SetResume,
		&LooksLikeTaskId},
	{TEXT("--fork"), nullptr, TEXT("ID|last [N]"),
		TEXT("go on in a branch of a stored conversation, with all or the first N of its messages"),
		&SetText<&FLaunchOptions::Fork>, nullptr, &SetForkMessages},
	{TEXT("--json"), nullptr, nullptr, TEXT("print events as JSON, one a line"), &SetFlag<&FLaunchOptions::bJson>},
	{TEXT("--verbose"), nullptr, nullptr, TEXT("print the log's warnings to standard error"),
		&SetFlag<&FLaunchOptions::bVerbose>},
	{TEXT("--help"), TEXT("-h"), nullptr, TEXT("print this, or a command's own help"),
		&SetFlag<&FLaunchOptions::bHelp>},
	{TEXT("--version"), nullptr, nullptr, TEXT("print the version"), &SetFlag<&FLaunchOptions::bVersion>},
};

const FOption* FindOption(const FString& Name)
{
	for (const FOption& Option : Table)
	{
		if (Name == Option.Name || (Option.ShortName && Name.Equals(Option.ShortName)))
		{
			return &Option;
		}
	}
	return nullptr;
}

FString DescribeUnknown(const FString& Name)
{
	TArray<FString> Names;
	for (const FOption& Option : Table)
	{
		Names.Add(Option.Name);
	}
	const FString Nearest = FindNearestName(Name, Names);
	return FString::Printf(TEXT("unknown option '%s'"), *Name) +
		(Nearest.IsEmpty() ? FString() : FString::Printf(TEXT("; did you mean '%s'?"), *Nearest));
}

bool LooksLikeOption(const FString& Argument)
{
	return Argument.Len() > 1 && Argument.StartsWith(TEXT("-"));
}

void AddWord(const FString& Word, FLaunchOptions& Options)
{
	if (Options.Command.IsEmpty())
	{
		Options.Command = Word;
		return;
	}
	Options.Words.Add(Word);
}

/** @param InOutIndex of the option or its value; moved to the number when there is one. */
bool ReadNumber(const FOption& Option, const TArray<FString>& Arguments, int32& InOutIndex, FLaunchOptions& Options,
	FString& OutError)
{
	const bool bGiven =
		Option.SetNumber && Arguments.IsValidIndex(InOutIndex + 1) && IsNumber(Arguments[InOutIndex + 1]);
	if (!bGiven || Option.SetNumber(Options, Arguments[++InOutIndex]))
	{
		return true;
	}
	OutError = FString::Printf(TEXT("the number behind option '%s' must be from 1 to 999999999, not '%s'"), Option.Name,
		*Arguments[InOutIndex]);
	return false;
}

/** @param InOutIndex of the option; moved to its value when that is an argument of its own. */
bool ReadOption(const TArray<FString>& Arguments, int32& InOutIndex, FLaunchOptions& Options, FString& OutError)
{
	FString Name = Arguments[InOutIndex];
	FString Value;
	const bool bJoined = Name.Split(TEXT("="), &Name, &Value);
	const FOption* Option = FindOption(Name);
	if (!Option)
	{
		OutError = DescribeUnknown(Name);
		return false;
	}
	if (!Option->Value && bJoined)
	{
		OutError = FString::Printf(TEXT("option '%s' takes no value"), Option->Name);
		return false;
	}
	const FString* Next = Arguments.IsValidIndex(InOutIndex + 1) ? &Arguments[InOutIndex + 1] : nullptr;
	const bool bLeftOut = Option->LooksLikeValue && !(Next && Option->LooksLikeValue(*Next));
	if (Option->Value && !bJoined && !bLeftOut)
	{
		if (!Next)
		{
			OutError = FString::Printf(TEXT("option '%s' needs a value: %s"), Option->Name, Option->Value);
			return false;
		}
		Value = *Next;
		++InOutIndex;
	}
	if (!Option->Set(Options, Value))
	{
		OutError = FString::Printf(TEXT("option '%s' takes %s, not '%s'"), Option->Name, Option->Value, *Value);
		return false;
	}
	return ReadNumber(*Option, Arguments, InOutIndex, Options, OutError);
}

/** What holds for several options together. */
bool CheckTogether(const FLaunchOptions& Options, FString& OutError)
{
	if (!Options.Resume.IsEmpty() && !Options.Fork.IsEmpty())
	{
		OutError = TEXT("options '--resume' and '--fork' don't go together");
		return false;
	}
	return true;
}
} // namespace

bool LaunchOptions::Parse(const TArray<FString>& Arguments, FLaunchOptions& OutOptions, FString& OutError)
{
	OutOptions = FLaunchOptions();
	bool bWordsOnly = false;
	for (int32 Index = 0; Index < Arguments.Num(); ++Index)
	{
		const FString& Argument = Arguments[Index];
		if (bWordsOnly || !LooksLikeOption(Argument))
		{
			AddWord(Argument, OutOptions);
		}
		else if (Argument.Equals(TEXT("--")))
		{
			bWordsOnly = true;
		}
		else if (!ReadOption(Arguments, Index, OutOptions, OutError))
		{
			return false;
		}
	}
	return CheckTogether(OutOptions, OutError);
}

TArray<FLaunchOptionHelp> LaunchOptions::GetHelp()
{
	TArray<FLaunchOptionHelp> Result;
	for (const FOption& Option : Table)
	{
		FString Usage = Option.ShortName ? FString(Option.ShortName) + TEXT(", ") + Option.Name : FString(Option.Name);
		if (Option.Value)
		{
			Usage += TEXT(" ");
			Usage += Option.Value;
		}
		Result.Add({Usage, Option.Help});
	}
	return Result;
}
