#pragma once

#include "Containers/Map.h"
#include "Delegates/Delegate.h"
#include "Misc/OutputDevice.h"
#include "Templates/SharedPointer.h"

/** Called with the words behind the command's name. */
using FConsoleCommandDelegate = TDelegate<void()>;
using FConsoleCommandWithArgsDelegate = TDelegate<void(const TArray<FString>&)>;

/** A command of the console. */
class IConsoleObject
{
public:
	virtual ~IConsoleObject() = default;
	virtual const TCHAR* GetHelp() const = 0;
};
using IConsoleCommand = IConsoleObject;

/** The commands that can be typed into the console. Names ignore case. Game thread. */
class IConsoleManager
{
public:
	static IConsoleManager& Get();

	/** A command of the same name is replaced. @return the handle to unregister it by. */
	IConsoleCommand* RegisterConsoleCommand(
		const TCHAR* Name, const TCHAR* Help, const FConsoleCommandDelegate& Command, uint32 Flags = 0);
	IConsoleCommand* RegisterConsoleCommand(
		const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command, uint32 Flags = 0);
	void UnregisterConsoleObject(IConsoleObject* Object, bool bKeepState = false);
	void UnregisterConsoleObject(const TCHAR* Name, bool bKeepState = false);

	IConsoleObject* FindConsoleObject(const TCHAR* Name) const;
	/** Calls the visitor for each command whose name begins with the prefix, by name. */
	void ForEachConsoleObjectThatStartsWith(
		const TDelegate<void(const TCHAR*, IConsoleObject*)>& Visitor, const TCHAR* Prefix) const;

	/** Runs a line: a command's name and its words, in double quotes if need be. @return false for an unknown one. */
	bool ProcessUserConsoleInput(const TCHAR* Input, FOutputDevice& Out);

private:
	class FCommand;

	IConsoleCommand* Add(const TCHAR* Name, const TCHAR* Help, const FConsoleCommandWithArgsDelegate& Command);

	TMap<FString, TSharedPtr<FCommand>> Commands;
};
