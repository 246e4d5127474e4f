#include "Environment.h"

#include "Containers/StringConv.h"

#include <cstring>
#include <unistd.h>

FEnvironment& FEnvironment::Get()
{
	static FEnvironment Environment;
	return Environment;
}

FEnvironment::FEnvironment()
{
	for (char** Entry = environ; Entry && *Entry; ++Entry)
	{
		if (const char* Equals = std::strchr(*Entry, '='))
		{
			Variables.emplace(std::string(*Entry, (SIZE_T)(Equals - *Entry)), Equals + 1);
		}
	}
}

FString FEnvironment::GetVariable(const TCHAR* Name) const
{
	const std::lock_guard Guard(Mutex);
	const auto Found = Variables.find(TCHAR_TO_UTF8(Name));
	return Found == Variables.end() ? FString() : FString(Found->second.c_str());
}

void FEnvironment::SetVariable(const TCHAR* Name, const TCHAR* Value)
{
	const std::string Key(TCHAR_TO_UTF8(Name));
	if (Key.empty() || Key.find('=') != std::string::npos)
	{
		return;
	}
	const FTCHARToUTF8 Bytes(Value);
	const std::lock_guard Guard(Mutex);
	if (Bytes.Length() == 0)
	{
		Variables.erase(Key);
		return;
	}
	Variables[Key] = Bytes.Get();
}

std::vector<std::string> FEnvironment::GetBlock() const
{
	const std::lock_guard Guard(Mutex);
	std::vector<std::string> Block;
	Block.reserve(Variables.size());
	for (const auto& [Name, Value] : Variables)
	{
		Block.push_back(Name + '=' + Value);
	}
	return Block;
}
