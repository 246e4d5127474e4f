#include "Agent/Tasks/CVXDelegationHistory.h"

#include "Agent/CVXAgentLog.h"
#include "Dom/JsonObject.h"
#include "Misc/FileHelper.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"

namespace
{
constexpr int32 MinKeywordLength = 3;
/** The first records keep more of their result than the later ones. */
constexpr int32 LongSummaryRecords = 5;
constexpr int32 LongSummaryChars = 2000;
constexpr int32 ShortSummaryChars = 1000;

/** Words that nearly every task of a game project holds, and that tell nothing. */
const TSet<FString>& GetStopWords()
{
	static const TSet<FString> Words = {TEXT("the"), TEXT("and"), TEXT("for"), TEXT("with"), TEXT("that"), TEXT("this"),
		TEXT("from"), TEXT("into"), TEXT("also"), TEXT("using"), TEXT("based"), TEXT("need"), TEXT("ensure"),
		TEXT("should"), TEXT("must"), TEXT("will"), TEXT("can"), TEXT("all"), TEXT("any"), TEXT("new"), TEXT("create"),
		TEXT("implement"), TEXT("add"), TEXT("make"), TEXT("set"), TEXT("build"), TEXT("write"), TEXT("generate"),
		TEXT("develop"), TEXT("setup"), TEXT("project"), TEXT("prototype"), TEXT("game"), TEXT("unreal"),
		TEXT("engine"), TEXT("existing"), TEXT("classes"), TEXT("assets"), TEXT("framework"), TEXT("top"), TEXT("down"),
		TEXT("first"), TEXT("person"), TEXT("third"), TEXT("side"), TEXT("scroller"), TEXT("survival"), TEXT("shooter"),
		TEXT("rpg"), TEXT("platformer"), TEXT("racing"), TEXT("strategy"), TEXT("puzzle"), TEXT("action"),
		TEXT("horror"), TEXT("sandbox"), TEXT("moba"), TEXT("mmo"), TEXT("battle"), TEXT("royale")};
	return Words;
}

TSet<FString> GetKeywords(const FString& Text)
{
	static const FString Separators = TEXT(",.:\"()/-_");
	FString Plain = Text.ToLower();
	for (TCHAR& Char : Plain.GetCharArray())
	{
		int32 Index;
		if (Separators.FindChar(Char, Index))
		{
			Char = TEXT(' ');
		}
	}
	TArray<FString> Words;
	Plain.ParseIntoArray(Words, TEXT(" "), true);
	TSet<FString> Keywords;
	for (const FString& Word : Words)
	{
		if (Word.Len() >= MinKeywordLength && !GetStopWords().Contains(Word))
		{
			Keywords.Add(Word);
		}
	}
	return Keywords;
}

TSharedRef<FJsonValue> ToJson(const FCVXDelegationRecord& Record)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("agent_profile"), Record.AgentProfile);
	Object->SetStringField(TEXT("task_description"), Record.TaskDescription);
	Object->SetStringField(TEXT("result_summary"), Record.ResultSummary);
	Object->SetBoolField(TEXT("error"), Record.bError);
	Object->SetBoolField(TEXT("incomplete"), Record.bIncomplete);
	return MakeShared<FJsonValueObject>(Object);
}

FCVXDelegationRecord FromJson(const FJsonObject& Object)
{
	FCVXDelegationRecord Record;
	Object.TryGetStringField(TEXT("agent_profile"), Record.AgentProfile);
	Object.TryGetStringField(TEXT("task_description"), Record.TaskDescription);
	Object.TryGetStringField(TEXT("result_summary"), Record.ResultSummary);
	Object.TryGetBoolField(TEXT("error"), Record.bError);
	Object.TryGetBoolField(TEXT("incomplete"), Record.bIncomplete);
	return Record;
}
} // namespace

FString FCVXDelegationRecord::FormatStatus(bool bError, bool bIncomplete)
{
	return bError ? TEXT("ERROR") : bIncomplete ? TEXT("INCOMPLETE") : TEXT("SUCCESS");
}

FCVXDelegationHistory& FCVXDelegationHistory::Get()
{
	static FCVXDelegationHistory History;
	return History;
}

void FCVXDelegationHistory::Add(const FString& LoopId, const FString& AgentProfile, const FString& Task,
	const FString& Result, bool bError, bool bIncomplete)
{
	TArray<FCVXDelegationRecord>& Records = RecordsByLoop.FindOrAdd(LoopId);
	const int32 MaxChars = Records.Num() < LongSummaryRecords ? LongSummaryChars : ShortSummaryChars;
	const FString Summary = Result.Len() > MaxChars ? Result.Left(MaxChars) + TEXT("...") : Result;
	Records.Add({AgentProfile, Task, Summary, bError, bIncomplete});
	if (Records.Num() > MaxRecords)
	{
		Records.RemoveAt(0, Records.Num() - MaxRecords);
	}
}

const TArray<FCVXDelegationRecord>& FCVXDelegationHistory::GetRecords(const FString& LoopId) const
{
	static const TArray<FCVXDelegationRecord> None;
	const TArray<FCVXDelegationRecord>* Records = RecordsByLoop.Find(LoopId);
	return Records ? *Records : None;
}

const FCVXDelegationRecord* FCVXDelegationHistory::FindDuplicate(
	const FString& LoopId, const FString& AgentProfile, const FString& Task, float& OutOverlap) const
{
	for (const FCVXDelegationRecord& Record : GetRecords(LoopId))
	{
		if (Record.bError || Record.bIncomplete || Record.AgentProfile != AgentProfile)
		{
			continue;
		}
		OutOverlap = GetOverlap(Record.TaskDescription, Task);
		if (OutOverlap >= DuplicateOverlap)
		{
			return &Record;
		}
	}
	return nullptr;
}

FString FCVXDelegationHistory::ToText(const FString& LoopId) const
{
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FCVXDelegationRecord& Record : GetRecords(LoopId))
	{
		Values.Add(ToJson(Record));
	}
	FString Json;
	return !Values.IsEmpty() && FJsonSerializer::Serialize(Values, TJsonWriterFactory<>::Create(&Json)) ? Json
																										: FString();
}

bool FCVXDelegationHistory::Save(const FString& LoopId, const FString& FilePath) const
{
	const TArray<FCVXDelegationRecord>& Records = GetRecords(LoopId);
	if (Records.IsEmpty())
	{
		return false;
	}
	const FString Json = ToText(LoopId);
	if (Json.IsEmpty() ||
		!FFileHelper::SaveStringToFile(Json, *FilePath, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM))
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Failed to save delegation history to %s"), *FilePath);
		return false;
	}
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Saved %d delegation record(s) to %s"), Records.Num(), *FilePath);
	return true;
}

bool FCVXDelegationHistory::Load(const FString& LoopId, const FString& FilePath)
{
	FString Json;
	if (!FFileHelper::LoadFileToString(Json, *FilePath))
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Failed to read delegation history from %s"), *FilePath);
		return false;
	}
	TArray<TSharedPtr<FJsonValue>> Values;
	if (!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Values))
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Failed to parse delegation history JSON: %s"), *FilePath);
		return false;
	}
	TArray<FCVXDelegationRecord>& Records = RecordsByLoop.FindOrAdd(LoopId);
	Records.Reset();
	for (const TSharedPtr<FJsonValue>& Value : Values)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		if (Value.IsValid() && Value->TryGetObject(Object))
		{
			Records.Add(FromJson(**Object));
		}
	}
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Loaded %d delegation record(s) from %s under LoopId=%s"), Records.Num(),
		*FilePath, *LoopId);
	return true;
}

float FCVXDelegationHistory::GetOverlap(const FString& OldTask, const FString& NewTask)
{
	const TSet<FString> Wanted = GetKeywords(NewTask);
	if (Wanted.IsEmpty())
	{
		return 0.0f;
	}
	const int32 Shared = Wanted.Intersect(GetKeywords(OldTask)).Num();
	return static_cast<float>(Shared) / static_cast<float>(Wanted.Num());
}
