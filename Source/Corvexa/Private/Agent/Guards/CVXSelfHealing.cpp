#include "Agent/Guards/CVXSelfHealing.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"
#include "Algo/AnyOf.h"
#include "Core/CVXProfiles.h"
#include "Internationalization/Regex.h"
#include "Tools/CVXTool.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
/** Characters of discovered API text for each unknown name. */
constexpr int32 MaxDiscoveredChars = 1500;

/** Compiler texts that come of compiling before all classes exist. */
constexpr const TCHAR* MissingClassMarkers[] = {TEXT("undeclared identifier"), TEXT("is not a class or namespace"),
	TEXT("undefined type"), TEXT("incomplete type"), TEXT("no type named")};
/** Outputs that begin so are listings and help, no work. */
constexpr const TCHAR* ListingPrefixes[] = {TEXT("['"), TEXT("X."), TEXT("x."), TEXT("Help on ")};
constexpr const TCHAR* EmptyOutputs[] = {TEXT("(no output)"), TEXT("Python execution failed (no output captured).")};

bool IsListing(const FString& Output)
{
	return Algo::AnyOf(ListingPrefixes,
			   [&](const TCHAR* Prefix) { return Output.StartsWith(Prefix, ESearchCase::CaseSensitive); }) ||
		Algo::AnyOf(EmptyOutputs, [&](const TCHAR* Text) { return Output == Text; });
}

bool IsRealSuccess(const FCVXCompletedToolResult& Result)
{
	if (Result.bIsError)
	{
		return false;
	}
	const bool bPythonWorked =
		CVXToolOutcome::IsPython(Result) && !CVXToolOutcome::HasPythonError(Result.Output) && !IsListing(Result.Output);
	return bPythonWorked || CVXToolOutcome::IsCompilation(Result.ToolName);
}

void CollectMatches(const FString& Pattern, const FString& Text, TArray<FString>& Out)
{
	FRegexMatcher Matcher(FRegexPattern(Pattern), Text);
	while (Matcher.FindNext())
	{
		Out.AddUnique(Matcher.GetCaptureGroup(1));
	}
}

/** What the API query tool knows about names that Python didn't find. */
FString DiscoverApi(const FString& ErrorText)
{
	const TSharedPtr<ICVXTool> Query = FCVXToolRegistry::Get().FindToolShared(TEXT("query_ue_api"));
	if (!Query.IsValid())
	{
		return FString();
	}
	FString Text;
	for (const FString& Name : CVXSelfHealing::FindUnknownNames(ErrorText))
	{
		const FString Arguments = FString::Printf(TEXT("{\"query\":\"%s\"}"), *Name.Replace(TEXT("\""), TEXT("\\\"")));
		const FCVXToolExecutionResult Result = Query->Execute(Arguments, FCVXAgentProfile());
		if (!Result.bIsError && !Result.Output.IsEmpty())
		{
			Text += FString::Printf(
				TEXT("\n\n[Auto-discovered API for '%s']:\n%s"), *Name, *Result.Output.Left(MaxDiscoveredChars));
		}
	}
	return Text;
}

const TCHAR* ChooseAdvice(const FString& ErrorText, bool bPythonError)
{
	if (bPythonError)
	{
		return TEXT(
			"Fix ONLY the broken part. Do NOT delete functions. Do NOT recreate from scratch. Do NOT create _v2 "
			"copies.");
	}
	if (CVXToolOutcome::ContainsAny(ErrorText, MissingClassMarkers))
	{
		return TEXT(
			"STOP — these errors are likely caused by compiling BEFORE creating all C++ files.\nWhen creating "
			"multiple interdependent C++ classes:\n1. Create ALL .h and .cpp files FIRST (use forward declarations "
			"in headers)\n2. THEN call live_coding_compile ONCE after all files exist\nDo NOT compile after each "
			"individual file — it wastes turns on cascading errors.\nCheck: have you created all the classes "
			"referenced in the error? If not, create them first.");
	}
	return TEXT("Fix these specific errors and recompile. Do NOT delete and recreate — fix in place.");
}

void AskForRetry(FCVXGuardContext& Context, const FCVXTurnFindings& Findings)
{
	FCVXGuardState& State = Context.State;
	State.RecentCallHashes.Empty();
	const FString ErrorText = CVXToolOutcome::GatherErrors(Context.Results, true);
	const FString Discovered = Findings.bPythonError ? DiscoverApi(ErrorText) : FString();
	const TCHAR* Title = Findings.bCompileError ? TEXT("Compilation errors") : TEXT("Python runtime error");
	Context.AddHidden(
		FString::Printf(TEXT("[Auto-retry %d/%d] %s:\n%s\n%s%s"), State.SelfHealRetries, CVXSelfHealing::MaxRetries,
			Title, *ErrorText, ChooseAdvice(ErrorText, Findings.bPythonError), *Discovered),
		FString::Printf(TEXT("auto-retry-%d"), State.SelfHealRetries));
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Self-healing: injected retry hint (%d/%d) [%s]"), State.SelfHealRetries,
		CVXSelfHealing::MaxRetries, Findings.bCompileError ? TEXT("compile") : TEXT("python"));
}

void SuggestAskingTheUser(FCVXGuardContext& Context)
{
	UE_LOG(LogCVXAgentLoop, Warning, TEXT("Self-healing: max retries (%d) exhausted, suggesting ask_followup_question"),
		CVXSelfHealing::MaxRetries);
	Context.AddHidden(
		FString::Printf(
			TEXT(
				"[Max retries exhausted] You have failed to fix these errors after %d attempts. Do NOT keep retrying "
				"the "
				"same approach. Instead:\n- Use ask_followup_question to present the problem and proposed solutions to "
				"the user. Include specific options like: 'Option A: try alternative approach X', 'Option B: skip this "
				"feature and continue', 'Option C: implement via C++ instead'.\n- The user can guide you to the right "
				"solution faster than blind retrying.\n- If this is a non-critical feature, you may also skip it and "
				"move on."),
			CVXSelfHealing::MaxRetries),
		TEXT("max-retries-ask-user"));
	Context.State.SelfHealRetries = 0;
}
} // namespace

void CVXSelfHealing::Run(FCVXGuardContext& Context, const FCVXTurnFindings& Findings)
{
	FCVXGuardState& State = Context.State;
	if (!Findings.bCompileError && !Findings.bPythonError)
	{
		if (State.SelfHealRetries > 0 && Algo::AnyOf(Context.Results, IsRealSuccess))
		{
			State.SelfHealRetries = 0;
		}
		return;
	}
	++State.SelfHealRetries;
	if (State.SelfHealRetries <= MaxRetries)
	{
		AskForRetry(Context, Findings);
		return;
	}
	SuggestAskingTheUser(Context);
}

TArray<FString> CVXSelfHealing::FindUnknownNames(const FString& ErrorText)
{
	TArray<FString> Names;
	CollectMatches(TEXT("AttributeError:.*no attribute '([^']+)'"), ErrorText, Names);
	CollectMatches(TEXT("NameError: name '([^']+)' is not defined"), ErrorText, Names);
	return Names;
}
