#pragma once

#include "Launch/Demo/DemoRequest.h"

/** A text in the pieces in which it is streamed: words with the blanks behind them; put together they are the text. */
TArray<FString> SplitDemoText(const FString& Text);

/** An id for a call, unlike all others. */
FString MakeDemoCallId();

/** Whether a tool's result tells of a failure, for the dialects that have no mark for it. */
bool SoundsFailed(const FString& Result);

/** An estimate of a request's tokens, from what the demo model reads of it. */
int32 CountDemoTokens(const FDemoRequest& Request);
