#include "Core/CVXApiKeysFile.h"

#include "Core/CVXLog.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

namespace
{
const TCHAR* const TemplateLines[] = {
	TEXT("# Corvexa — API Keys Configuration"),
	TEXT("#"),
	TEXT("# Format: ENV_VAR_NAME=your-api-key  (one per line)"),
	TEXT("# Lines starting with # are comments."),
	TEXT("# This file is in Saved/ — add it to .gitignore."),
	TEXT("#"),
	TEXT("# Uncomment and fill in the keys for the providers you use:"),
	TEXT(""),
	TEXT("# ANTHROPIC_API_KEY=sk-ant-..."),
	TEXT("# OPENAI_API_KEY=sk-..."),
	TEXT("# GEMINI_API_KEY=AIza..."),
	TEXT("# XAI_API_KEY=xai-..."),
	TEXT("# DEEPSEEK_API_KEY=sk-..."),
	TEXT("# MISTRAL_API_KEY=key..."),
	TEXT("# GROQ_API_KEY=gsk_..."),
	TEXT("# OPENROUTER_API_KEY=sk-or-..."),
};
} // namespace

FString FCVXApiKeysFile::GetPath()
{
	return FPaths::Combine(FPaths::ProjectSavedDir(), TEXT("CVX/apikeys.cfg"));
}

FString FCVXApiKeysFile::FindKey(const FString& VariableName)
{
	FString Text;
	if (!FFileHelper::LoadFileToString(Text, *GetPath()))
	{
		return FString();
	}
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines);
	const FString Prefix = VariableName + TEXT("=");
	for (const FString& Line : Lines)
	{
		const FString Trimmed = Line.TrimStartAndEnd();
		if (!Trimmed.StartsWith(TEXT("#")) && Trimmed.StartsWith(Prefix))
		{
			return Trimmed.RightChop(Prefix.Len()).TrimStartAndEnd();
		}
	}
	return FString();
}

void FCVXApiKeysFile::EnsureTemplate()
{
	const FString Path = GetPath();
	if (IFileManager::Get().FileExists(*Path))
	{
		return;
	}
	FString Text;
	for (const TCHAR* Line : TemplateLines)
	{
		Text += Line;
		Text += TEXT('\n');
	}
	IFileManager::Get().MakeDirectory(*FPaths::GetPath(Path), true);
	if (FFileHelper::SaveStringToFile(Text, *Path, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM))
	{
		UE_LOG(LogCorvexa, Log, TEXT("Created API keys template: %s"), *Path);
	}
}
