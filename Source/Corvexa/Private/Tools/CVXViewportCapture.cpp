#include "Tools/CVXViewportCapture.h"

namespace
{
FCVXViewportCapture::FSource& GetSource()
{
	static FCVXViewportCapture::FSource Source;
	return Source;
}
} // namespace

FCVXViewportImage FCVXViewportCapture::Capture(int32 MaxEdge)
{
	if (GetSource())
	{
		return GetSource()(MaxEdge);
	}
	FCVXViewportImage Image;
	Image.Error = TEXT("No active viewport. Open a level in the editor first.");
	return Image;
}

void FCVXViewportCapture::SetSource(FSource NewSource)
{
	GetSource() = MoveTemp(NewSource);
}
