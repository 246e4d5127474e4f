#include "HAL/IConsoleManager.h"

class IConsoleManager::FCommand final : public IConsoleObject
{
public:
	FCommand(const TCHAR* InHelp, const FConsoleCommandWithArgsDelegate& InCommand)
		: Command(InCommand)
		, Help(InHelp)
	{
	}
	const TCHAR* GetHelp() const override { return *Help; }

	const FConsoleCommandWithArgsDelegate Command;

private:
	FString Help;
};

namespace
{
TArray<FString> SplitWords(FStringView Input)
{
	TArray<FString> Words;
	FString Word;
	bool bQuoted = false;
	bool bInWord = false;
	for (const TCHAR Char : Input)
	{
		if (!bQuoted && FChar::IsWhitespace(Char))
		{
			if (bInWord)
			{
				Words.Add(MoveTemp(Word));
				Word.Reset();
			}
			bInWord = false;
			continue;
		}
		bInWord = true;
		bQuoted = Char == u'"' ? !bQuoted : bQuoted;
		Word.Append(FStringView(&Char, Char == u'"' ? 0 : 1));
	}
	if (bInWord)
	{
		Words.Add(MoveTemp(Word));
	}
	return Words;
}
} // namespace

IConsoleManager& IConsoleManager::Get()
{
	static IConsoleManager Manager;
	return Manager;
}

IConsoleCommand* IConsoleManager::Add(
	const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command)
{
	const TSharedRef<FCommand> Made = MakeShared<FCommand>(Help, Command);
	Commands.Add(FString(Name), Made);
	return &Made.Get();
}

IConsoleCommand* IConsoleManager::RegisterConsoleCommand(
	const TCHAR* Name, const TCHAR* Help, const FConsoleCommandDelegate& Command, uint32 /*Flags*/)
{
	return Add(Name, Help,
		FConsoleCommandWithArgsDelegate::CreateLambda([Command](const TArray<FString>&) { Command.ExecuteIfBound(); }));
}

IConsoleCommand* IConsoleManager::RegisterConsoleCommand(
	const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command, uint32 /*Flags*/)
{
	return Add(Name, Help, Command);
}

void IConsoleManager::UnregisterConsoleObject(IConsoleObject* Object, bool /*bKeepState*/)
{
	for (auto It = Commands.CreateIterator(); It; ++It)
	{
		if (It.Value().Get() == Object)
		{
			It.RemoveCurrent();
		}
	}
}

void IConsoleManager::UnregisterConsoleObject(const TCHAR* Name, bool /*bKeepState*/)
{
	Commands.Remove(Name);
}

IConsoleObject* IConsoleManager::FindConsoleObject(const TCHAR* Name) const
{
	const TSharedPtr<FCommand>* Found = Commands.Find(Name);
	return Found ? Found->Get() : nullptr;
}

void IConsoleManager::ForEachConsoleObjectThatStartsWith(
	const TDelegate<void(const TCHAR*, IConsoleObject*)>& Visitor, const TCHAR* Prefix) const
{
	TMap<FString, TSharedPtr<FCommand>> Sorted = Commands;
	Sorted.KeySort([](const FString& A, const FString& B) { return A < B; });
	for (const auto& [Name, Command] : Sorted)
	{
		if (Name.StartsWith(Prefix))
		{
			Visitor.ExecuteIfBound(*Name, Command.Get());
		}
	}
}

bool IConsoleManager::ProcessUserConsoleInput(const TCHAR* Input, FOutputDevice& Out)
{
	TArray<FString> Words = SplitWords(Input);
	const TSharedPtr<FCommand> Command = Words.IsEmpty() ? nullptr : Commands.FindRef(Words[0]);
	if (!Command)
	{
		Out.Logf(TEXT("Unknown command: %s"), Input);
		return false;
	}
	Words.RemoveAt(0);
	Command->Command.ExecuteIfBound(Words);
	return true;
}
