#pragma once

#include "CoreMinimal.h"

/** A picture of the editor's viewport, or why there is none. */
struct FCVXViewportImage
{
	bool bSuccess = false;
	/** Base64 of a PNG. */
	FString Base64;
	FString Error;
	/** In pixels. */
	int32 Width = 0;
	int32 Height = 0;
};

/** Captures of the active viewport. Game thread. */
class FCVXViewportCapture
{
public:
	/** The longer edge of a captured picture, in pixels. */
	static constexpr int32 DefaultMaxEdge = 1024;

	/** Takes the longer edge's limit in pixels. */
	using FSource = TFunction<FCVXViewportImage(int32)>;

	/** Scales down to the limit, never up. Fails where no viewport is. @param MaxEdge in pixels, above 0. */
	static FCVXViewportImage Capture(int32 MaxEdge);

	/** Sets who takes the pictures; an unset function takes the source away. */
	static void SetSource(FSource NewSource);
};
