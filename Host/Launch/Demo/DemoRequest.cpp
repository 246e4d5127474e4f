#include "Launch/Demo/DemoRequest.h"

namespace
{
bool AsksToGoOn(const FString& Text)
{
	const FString Words = Text.TrimStartAndEnd();
	return Words == TEXT("continue") || Words == TEXT("go on");
}
} // namespace

void FDemoRequest::AddUserText(const FString& Text)
{
	if (Text.StartsWith(TEXT("[")))
	{
		Note = Text;
		return;
	}
	bGoesOn = !Question.IsEmpty() && AsksToGoOn(Text);
	if (!bGoesOn)
	{
		Question = Text;
	}
	Note.Empty();
	Calls.Empty();
}

void FDemoRequest::AddCall(const FString& Id, const FString& Tool)
{
	Note.Empty();
	FDemoCall& Call = Calls.AddDefaulted_GetRef();
	Call.Id = Id;
	Call.Tool = Tool;
}

void FDemoRequest::AddResult(const FString& Id, const FString& Result, bool bIsError)
{
	for (FDemoCall& Call : Calls)
	{
		if (Call.Id.Equals(Id))
		{
			Call.Result = Result;
			Call.bIsError = bIsError;
			Call.bHasResult = true;
		}
	}
}

void FDemoRequest::AddResultOfOldest(const FString& Tool, const FString& Result, bool bIsError)
{
	for (FDemoCall& Call : Calls)
	{
		if (!Call.bHasResult && Call.Tool == Tool)
		{
			Call.Result = Result;
			Call.bIsError = bIsError;
			Call.bHasResult = true;
			return;
		}
	}
}

const FDemoCall* FDemoRequest::FindLastCall(const FString& Tool) const
{
	for (int32 Index = Calls.Num() - 1; Index >= 0; --Index)
	{
		if (Calls[Index].bHasResult && Calls[Index].Tool == Tool)
		{
			return &Calls[Index];
		}
	}
	return nullptr;
}
