#include "Corvexa/Agent/Checkpoints/StoredTask.h"

#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
constexpr int32 WordsPerMessage = 24;

const TArray<FCVXMessage>& HistoryOf(const FCVXTask& Task)
{
	return Task.GetAgentLoop()->GetContextManager().GetHistory();
}

FString HeadOf(const FCVXMessage& Message)
{
	FString Head;
	FString Rest;
	return Message.GetFirstTextContent().Split(TEXT(":"), &Head, &Rest) ? Head : FString();
}
} // namespace

TSharedRef<FCVXTask> StoredTask::Make(const FString& Id)
{
	FCVXAgentProfile Profile;
	Profile.ProfileName = TEXT("Coder");
	return MakeShared<FCVXTask>(Id, TEXT("Stored"), nullptr, Profile);
}

int32 StoredTask::Speak(FCVXTask& Task, std::mt19937& Random, const TCHAR* Speaker)
{
	const int32 Number = Count(Task) + 1;
	FString Text = FString::Printf(TEXT("%d %s:"), Number, Speaker);
	for (int32 Word = 0; Word < WordsPerMessage; ++Word)
	{
		Text += FString::Printf(TEXT(" %08x"), static_cast<uint32>(Random()));
	}
	Task.GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(Text));
	return Number;
}

int32 StoredTask::Count(const FCVXTask& Task)
{
	return HistoryOf(Task).Num();
}

FString StoredTask::LastWords(const FCVXTask& Task)
{
	return HistoryOf(Task).IsEmpty() ? FString() : HeadOf(HistoryOf(Task).Last());
}

void StoredTask::ExpectWhole(const FCVXTask& Task)
{
	const TArray<FCVXMessage>& History = HistoryOf(Task);
	EXPECT_FALSE(History.IsEmpty());
	for (int32 Index = 0; Index < History.Num(); ++Index)
	{
		EXPECT_EQ(FCString::Atoi(*HeadOf(History[Index])), Index + 1);
	}
}
