#include "Launch/Demo/DemoModel.h"

#include "Launch/Demo/DemoDialect.h"
#include "Launch/Demo/DemoJson.h"
#include "Launch/Demo/DemoScenarioTexts.h"
#include "Logging/LogMacros.h"
#include "Loopback/LoopbackServer.h"

DEFINE_LOG_CATEGORY_STATIC(LogDemoModel, Log, All);

namespace
{
constexpr const TCHAR* NothingToSay =
	TEXT("I'm the built-in demo model and have no scene for this. Choose a real model with --provider to go on.");
} // namespace

FDemoModel::FDemoModel(std::chrono::milliseconds InPause)
	: Pause(InPause)
	, Server(MakeUnique<FLoopbackServer>(false))
{
	AddScenarios();
	for (const IDemoDialect* Dialect : GetDemoDialects())
	{
		AddDialect(*Dialect);
	}
}

FDemoModel::~FDemoModel() = default;

void FDemoModel::AddScenarios()
{
	for (const FDemoScenarioText& Each : GetDemoScenarioTexts())
	{
		FString Error;
		const TSharedPtr<FDemoScenario> Scenario = FDemoScenario::Parse(Each.Json, Error);
		UE_CLOG(!Scenario, LogDemoModel, Error, TEXT("Scenario %s: %s"), Each.FileName, *Error);
		if (Scenario)
		{
			Scenarios.Add(Scenario);
		}
	}
}

void FDemoModel::AddDialect(const IDemoDialect& Dialect)
{
	Server->Route(Dialect.GetPath(),
		[this, &Dialect](const FHttpRequestMessage& Message)
		{
			FDemoRequest Request;
			const TSharedPtr<FJsonObject> Root = DemoJson::Parse(Message.Body);
			if (!Root || !Dialect.ReadRequest(*Root, Request))
			{
				return FLoopbackReply::Sized(400, "not a request of this dialect");
			}
			return FLoopbackReply::PacedEvents(Dialect.WriteAnswer(Request, Answer(Request)), Pause);
		});
}

FDemoAnswer FDemoModel::Answer(const FDemoRequest& Request) const
{
	for (const TSharedPtr<FDemoScenario>& Scenario : Scenarios)
	{
		if (Scenario->IsFor(Request))
		{
			if (const TOptional<FDemoAnswer> Played = Scenario->Play(Request))
			{
				return *Played;
			}
		}
	}
	FDemoAnswer Nothing;
	Nothing.Text = NothingToSay;
	return Nothing;
}

FCVXProviderProfile FDemoModel::MakeProfile(const IDemoDialect& Dialect) const
{
	FCVXProviderProfile Profile;
	Profile.ProfileName = TEXT("Demo model");
	Profile.ProviderType = Dialect.GetProviderType();
	Profile.BaseURL = FString(Server->Url(Dialect.GetBasePath()).c_str());
	Profile.ModelId = TEXT("demo");
	// Lower case stands for the key itself. The demo model asks for none.
	Profile.ApiKeyEnvVar = TEXT("no-key-needed");
	return Profile;
}
