#pragma once

#include "Launch/Demo/DemoRequest.h"

/** A text in the pieces in which it is streamed: words with the blanks behind them; put together they are the text. */
TArray<FString> SplitDemoText(const FString& Text);

/** An estimate of a request's tokens, from what the demo model reads of it. */
int32 CountDemoTokens(const FDemoRequest& Request);
