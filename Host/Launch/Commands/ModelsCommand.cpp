#include "Launch/Commands/ModelsCommand.h"

#include "Core/CVXSettings.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Options/NearestName.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Session/ModelList.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalOut.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

#include <unistd.h>

namespace
{
constexpr int32 IdColumn = 46;
constexpr int32 NumberColumn = 9;
constexpr int32 VisionColumn = 8;

using FLineWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

FString MakeRow(const FListedModel& Listed)
{
	const FCVXModelEntry& Model = Listed.Model;
	FString Row = TEXT("  ") + MakeSafeText(Model.ModelId).RightPad(IdColumn) +
		FString::FromInt(Model.MaxContextTokens).LeftPad(NumberColumn) +
		FString::FromInt(Model.MaxTokens).LeftPad(NumberColumn) + TEXT("  ") +
		FString(Model.bSupportsVision ? TEXT("vision") : TEXT("")).RightPad(VisionColumn) +
		MakeSafeText(Model.DisplayName);
	if (!Listed.Profiles.IsEmpty())
	{
		Row += TEXT("  <- ") + MakeSafeText(FString::Join(Listed.Profiles, TEXT(", "))) +
			(Listed.bActive ? TEXT(" (active)") : TEXT(""));
	}
	return Row + TEXT("\n");
}

FString MakeText(const FListedVendor& Listed)
{
	const FString Key = MakeSafeText(DescribeKeySource(Listed.Key, Listed.KeyVariable));
	FString Text = FString::Printf(TEXT("%s (%s): %s\n"), *Listed.Vendor.DisplayName, *Listed.Vendor.Id, *Key);
	for (const FListedModel& Model : Listed.Models)
	{
		Text += MakeRow(Model);
	}
	return Text;
}

FString MakeHead()
{
	return TEXT("  ") + FString(TEXT("MODEL")).RightPad(IdColumn) + FString(TEXT("CONTEXT")).LeftPad(NumberColumn) +
		FString(TEXT("OUTPUT")).LeftPad(NumberColumn) + TEXT("\n");
}

FString MakeModelJson(const FListedModel& Listed)
{
	FString Json;
	FLineWriter Writer(Json);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("kind"), TEXT("model"));
	Writer.WriteValue(TEXT("vendor"), Listed.Model.ProviderId);
	Writer.WriteValue(TEXT("id"), Listed.Model.ModelId);
	Writer.WriteValue(TEXT("name"), Listed.Model.DisplayName);
	Writer.WriteValue(TEXT("context_tokens"), Listed.Model.MaxContextTokens);
	Writer.WriteValue(TEXT("output_tokens"), Listed.Model.MaxTokens);
	Writer.WriteValue(TEXT("vision"), Listed.Model.bSupportsVision);
	Writer.WriteValue(TEXT("profiles"), Listed.Profiles);
	Writer.WriteValue(TEXT("active"), Listed.bActive);
	Writer.WriteObjectEnd();
	Writer.Close();
	return Json + TEXT("\n");
}

FString MakeJson(const FListedVendor& Listed)
{
	FString Json;
	FLineWriter Writer(Json);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("kind"), TEXT("vendor"));
	Writer.WriteValue(TEXT("id"), Listed.Vendor.Id);
	Writer.WriteValue(TEXT("name"), Listed.Vendor.DisplayName);
	Writer.WriteValue(TEXT("local"), Listed.Vendor.bIsLocal);
	Writer.WriteValue(TEXT("key"), GetKeySourceName(Listed.Key));
	Writer.WriteValue(TEXT("key_variable"), Listed.KeyVariable);
	Writer.WriteObjectEnd();
	Writer.Close();
	Json += TEXT("\n");
	for (const FListedModel& Model : Listed.Models)
	{
		Json += MakeModelJson(Model);
	}
	return Json;
}

/** @return false, with one line for the user, when no vendor is named so. */
bool KeepVendor(const FString& Name, TArray<FListedVendor>& InOutVendors, FString& OutError)
{
	TArray<FString> Names;
	for (const FListedVendor& Each : InOutVendors)
	{
		Names.Add(Each.Vendor.Id);
	}
	InOutVendors.RemoveAll(
		[&](const FListedVendor& Each) { return Each.Vendor.Id != Name && Each.Vendor.DisplayName != Name; });
	if (InOutVendors.IsEmpty())
	{
		const FString Nearest = FindNearestName(Name, Names);
		OutError = FString::Printf(TEXT("no vendor is named '%s'; "), *Name) +
			(Nearest.IsEmpty() ? TEXT("there are: ") + FString::Join(Names, TEXT(", "))
							   : FString::Printf(TEXT("did you mean '%s'?"), *Nearest));
	}
	return !InOutVendors.IsEmpty();
}
} // namespace

int RunModelsCommand(const FLaunchOptions& Options)
{
	if (Options.Words.Num() > 1)
	{
		return ReportUsageError(TEXT("'models' takes the name of one vendor, or none"));
	}
	FLaunchSession Session;
	const FLaunchSession::FStart Started = Session.StartProject(Options);
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	TArray<FListedVendor> Vendors = ListVendors(*UCVXSettings::Get());
	FString Error;
	if (!Options.Words.IsEmpty() && !KeepVendor(Options.Words[0], Vendors, Error))
	{
		return ReportUsageError(Error);
	}
	FString Text = Options.bJson ? FString() : MakeHead();
	for (const FListedVendor& Vendor : Vendors)
	{
		Text += Options.bJson ? MakeJson(Vendor) : MakeText(Vendor);
	}
	return WriteToDescriptor(STDOUT_FILENO, Text) ? ExitComplete : ExitError;
}
