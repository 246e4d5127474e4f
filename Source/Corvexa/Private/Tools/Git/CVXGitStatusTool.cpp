#include "Tools/Git/CVXGitStatusTool.h"

#include "Algo/AnyOf.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Git/CVXGitProcess.h"
#include "Tools/Shell/CVXCommandRun.h"

namespace
{
const FStringView BlockedCharacters = TEXT("&|;`$><\n\r");

bool IsAllowedOperation(const FString& Operation)
{
	static const TSet<FString> Operations = {TEXT("status"), TEXT("diff"), TEXT("log"), TEXT("branch"), TEXT("show")};
	return Operations.Contains(Operation.ToLower());
}

/** The arguments as git sees them, near enough to tell options. */
TArray<FString> SplitWords(const FString& Arguments)
{
	TArray<FString> Words;
	Arguments.Replace(TEXT("\""), TEXT(""))
		.Replace(TEXT("'"), TEXT(""))
		.Replace(TEXT("\\"), TEXT(""))
		.ParseIntoArrayWS(Words);
	return Words;
}

/** Whether a word is one of these options of git or an abbreviation, as git takes them. */
bool IsLongOption(const FString& Word, TArrayView<const TCHAR* const> Options)
{
	const FString Name = Word.Left(Word.Find(TEXT("=")) == INDEX_NONE ? Word.Len() : Word.Find(TEXT("=")));
	return Algo::AnyOf(Options,
		[&](const TCHAR* Option)
		{ return Name.Len() > 2 && FString(Option).StartsWith(Name, ESearchCase::CaseSensitive); });
}

/** Whether `git branch` would do more than list: it deletes, moves, copies and creates by its arguments alone. */
bool ChangesBranches(const FString& Arguments)
{
	static constexpr const TCHAR* Changing[] = {TEXT("--delete"), TEXT("--move"), TEXT("--copy"), TEXT("--force"),
		TEXT("--set-upstream-to"), TEXT("--unset-upstream"), TEXT("--edit-description"), TEXT("--create-reflog"),
		TEXT("--track")};
	static constexpr const TCHAR* Listing[] = {TEXT("--list"), TEXT("--contains"), TEXT("--no-contains"),
		TEXT("--merged"), TEXT("--no-merged"), TEXT("--points-at"), TEXT("--sort"), TEXT("--format")};
	bool bLists = false;
	bool bNames = false;
	for (const FString& Word : SplitWords(Arguments))
	{
		const bool bLong = Word.StartsWith(TEXT("--"));
		const bool bShort = !bLong && Word.StartsWith(TEXT("-"));
		int32 Place = INDEX_NONE;
		for (const TCHAR Char : bShort ? Word : FString())
		{
			if (FStringView(TEXT("dDmMcCfut")).FindChar(Char, Place))
			{
				return true;
			}
			bLists |= Char == u'l';
		}
		if (bLong && IsLongOption(Word, Changing))
		{
			return true;
		}
		bLists |= bLong && IsLongOption(Word, Listing);
		bNames |= !bLong && !bShort;
	}
	return bNames && !bLists;
}

/** Whether git would be told, by the option or an abbreviation of it, to write to a file. */
bool WritesFile(const FString& Arguments)
{
	return SplitWords(Arguments).ContainsByPredicate(
		[](const FString& Word)
		{
			return Word.StartsWith(TEXT("--out"), ESearchCase::CaseSensitive) &&
				!Word.StartsWith(TEXT("--output-indicator"), ESearchCase::CaseSensitive);
		});
}

/** @return whether the arguments are fit for a query; else OutError says why not. */
bool CheckArguments(const FString& Operation, const FString& Arguments, FString& OutError)
{
	for (const TCHAR Char : Arguments)
	{
		int32 Place = INDEX_NONE;
		if (Char == u'\0' || BlockedCharacters.FindChar(Char, Place))
		{
			OutError = FString::Printf(TEXT("Argument contains blocked character '%s'. Shell metacharacters are not "
											"allowed in git_query args."),
				Char == u'\0' ? TEXT("\\0") : *FString::Chr(Char));
			return false;
		}
	}
	if (WritesFile(Arguments))
	{
		OutError = TEXT("Argument '--output' is not allowed in git_query args: a query writes no files.");
		return false;
	}
	if (Operation == TEXT("branch") && ChangesBranches(Arguments))
	{
		OutError =
			TEXT("These arguments change branches, and a query only reads. Use execute_shell for that, or --list to "
				 "find branches by name.");
		return false;
	}
	return true;
}

/** Where a text in single quotes ends; INDEX_NONE when nothing quoted begins here. */
int32 FindSingleQuotedEnd(FStringView Arguments, int32 Index, bool bInDoubleQuotes)
{
	return bInDoubleQuotes || Arguments[Index] != u'\'' ? (int32)INDEX_NONE : Arguments.Find(TEXT("'"), Index + 1);
}

/** Models write single quotes as well, which mean nothing in a command line. */
FString WithDoubleQuotes(FStringView Arguments)
{
	FString Result;
	bool bInDoubleQuotes = false;
	for (int32 Index = 0; Index < Arguments.Len(); ++Index)
	{
		const int32 End = FindSingleQuotedEnd(Arguments, Index, bInDoubleQuotes);
		if (End != INDEX_NONE)
		{
			Result += QuoteArgument(Arguments.Mid(Index + 1, End - Index - 1));
			Index = End;
			continue;
		}
		const bool bEscaped = Index > 0 && Arguments[Index - 1] == u'\\';
		bInDoubleQuotes ^= Arguments[Index] == u'"' && !bEscaped;
		Result.AppendChar(Arguments[Index]);
	}
	return Result;
}

FCVXToolExecutionResult Query(const FString& Command)
{
	FString Error;
	const FString Output =
		RunGit(WithDoubleQuotes(Command), FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()), Error);
	if (!Output.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeSuccess(Output);
	}
	if (!Error.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("git %s failed:\n%s"), *Command, *Error));
	}
	return FCVXToolExecutionResult::MakeSuccess(FString::Printf(TEXT("git %s: (no output)"), *Command));
}
} // namespace

FString FCVXGitStatusTool::GetName() const
{
	return TEXT("git_query");
}

FString FCVXGitStatusTool::GetDescription() const
{
	return TEXT("Runs read-only git commands (status, diff, log, branch) on the project repository. Use to understand "
				"uncommitted changes, recent history, or current branch.");
}

FString FCVXGitStatusTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("operation":{"type":"string","enum":["status","diff","log","branch","show"],)"
				R"("description":"Git operation to run"},)"
				R"("args":{"type":"string",)"
				R"__("description":"Extra git arguments (e.g. --oneline -10 for log)"}},)__"
				R"("required":["operation"]})");
}

FCVXToolExecutionResult FCVXGitStatusTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Json;
	FString Operation;
	FString Arguments;
	if (!ParseToolArguments(ArgumentsJson, Json, Error) || !ReadStringArgument(*Json, TEXT("args"), Arguments, Error))
	{
		return Error;
	}
	if (!Json->TryGetStringField(TEXT("operation"), Operation))
	{
		return FCVXToolExecutionResult::MakeError(TEXT("Missing required field: operation"));
	}
	if (!IsAllowedOperation(Operation))
	{
		return FCVXToolExecutionResult::MakeError(
			FString::Printf(TEXT("Invalid operation '%s'. Allowed: status, diff, log, branch, show."), *Operation));
	}
	FString Message;
	if (!CheckArguments(Operation, Arguments, Message))
	{
		return FCVXToolExecutionResult::MakeError(Message);
	}
	return Query(Arguments.IsEmpty() ? Operation : Operation + TEXT(" ") + Arguments);
}
