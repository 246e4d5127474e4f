#include "Misc/ConfigFile.h"

#include <cstddef>
#include <cstdint>

/** Any text of a configuration file comes back whole, and what is set in it is read again, whatever the value. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const FString Text = FString::FromUtf8((const char*)Data, (int64)Size);
	FConfigFile File;
	File.Parse(Text, FString());
	const FString Back = File.ToText();
	check(Back.StartsWith(Text, ESearchCase::CaseSensitive) && Back.Len() <= Text.Len() + 2);
	const TArray<FString> Values = {Text, TEXT("x"), Text};
	File.SetString(TEXT("Section"), TEXT("Key"), Text);
	File.SetArray(TEXT("Section"), TEXT("List"), Values);
	FConfigFile Again;
	Again.Parse(File.ToText(), FString());
	const FString* Value = Again.Find(TEXT("Section"), TEXT("Key"));
	const TArray<FString> List = Again.FindArray(TEXT("Section"), TEXT("List"));
	check(Value && Value->Equals(Text) && List.Num() == 3 && List[0].Equals(Text) && List[2].Equals(Text));
	return 0;
}
