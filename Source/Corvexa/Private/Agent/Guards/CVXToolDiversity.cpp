#include "Agent/Guards/CVXToolDiversity.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"

namespace
{
/** The calls looked at. */
constexpr int32 Window = 10;
/** One tool may make up this share of them. */
constexpr float MaxShare = 0.8f;

int32 CountName(const TArray<FString>& Names, const FString& Wanted)
{
	int32 Count = 0;
	for (const FString& Name : Names)
	{
		Count += Name == Wanted ? 1 : 0;
	}
	return Count;
}
} // namespace

void CVXToolDiversity::NoteCalls(FCVXGuardContext& Context)
{
	TArray<FString>& Names = Context.State.RecentToolNames;
	for (const FCVXToolCall& Call : Context.Calls)
	{
		Names.Add(Call.Name);
	}
	if (Names.Num() > Window)
	{
		Names.RemoveAt(0, Names.Num() - Window);
	}
}

void CVXToolDiversity::Check(FCVXGuardContext& Context)
{
	const TArray<FString>& Names = Context.State.RecentToolNames;
	if (Names.Num() < Window || Context.State.bDiversityWarned)
	{
		return;
	}
	for (const FString& Name : Names)
	{
		const int32 Count = CountName(Names, Name);
		const float Share = static_cast<float>(Count) / static_cast<float>(Names.Num());
		if (Share <= MaxShare)
		{
			continue;
		}
		Context.State.bDiversityWarned = true;
		Context.AddHidden(
			FString::Printf(
				TEXT("[Diversity warning] Tool '%s' was called %d out of the last %d turns (%.0f%%). You may "
					 "be stuck in a loop. Consider a different approach or call attempt_completion."),
				*Name, Count, Names.Num(), Share * 100.0f),
			TEXT("diversity-warning"));
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Diversity warning: '%s' dominates %d/%d recent tool calls"), *Name,
			Count, Names.Num());
		return;
	}
}
