#include "Agent/Loop/CVXUserInput.h"

#include "Agent/CVXAgentLog.h"
#include "Tools/CVXViewportCapture.h"

namespace
{
constexpr const TCHAR* ScreenshotMention = TEXT("@screenshot");

/** @return no block when there is nothing to be seen, which is logged. */
TArray<FCVXContentBlock> CaptureScreenshot()
{
	const FCVXViewportImage Image = FCVXViewportCapture::Capture(FCVXViewportCapture::DefaultMaxEdge);
	if (!Image.bSuccess)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Viewport capture failed: %s"), *Image.Error);
		return {};
	}
	UE_LOG(
		LogCVXAgentLoop, Log, TEXT("Captured viewport screenshot %dx%d for vision input"), Image.Width, Image.Height);
	FCVXContentBlock Block;
	Block.Type = TEXT("image");
	Block.ImageBase64 = Image.Base64;
	Block.ImageMediaType = TEXT("image/png");
	return {Block};
}
} // namespace

FCVXUserInput FCVXUserInput::Prepare(const FString& Text)
{
	const TArray<FCVXContentBlock> Images =
		Text.Contains(ScreenshotMention) ? CaptureScreenshot() : TArray<FCVXContentBlock>();
	FCVXUserInput Input{FCVXMessage::MakeUserText(Text),
		FCVXMessage::MakeUserText(Text.Replace(ScreenshotMention, TEXT("[viewport screenshot attached]")))};
	Input.DisplayMessage.Content.Append(Images);
	Input.ConversationMessage.Content.Append(Images);
	return Input;
}
