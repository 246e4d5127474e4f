#include "Support/LogCapture.h"

#include "Misc/OutputDeviceRedirector.h"
#include "Misc/ScopeLock.h"

FLogCapture::FLogCapture()
{
	FOutputDeviceRedirector::Get()->AddOutputDevice(this);
}

FLogCapture::~FLogCapture()
{
	FOutputDeviceRedirector::Get()->RemoveOutputDevice(this);
}

void FLogCapture::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const FScopeLock Guard(&Lock);
	Kept.Add({Text, Verbosity, Category});
}

TArray<FLogCapture::FLine> FLogCapture::Lines() const
{
	const FScopeLock Guard(&Lock);
	return Kept;
}

int32 FLogCapture::Count(FStringView Text, ELogVerbosity::Type Verbosity) const
{
	int32 Found = 0;
	for (const FLine& Line : Lines())
	{
		Found += Line.Verbosity == Verbosity && Line.Text.Contains(Text, ESearchCase::CaseSensitive) ? 1 : 0;
	}
	return Found;
}

bool FLogCapture::Contains(FStringView Text) const
{
	return Lines().ContainsByPredicate(
		[Text](const FLine& Line) { return Line.Text.Contains(Text, ESearchCase::CaseSensitive); });
}

void FLogCapture::Clear()
{
	const FScopeLock Guard(&Lock);
	Kept.Empty();
}
