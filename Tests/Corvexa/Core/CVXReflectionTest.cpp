#include "Core/CVXProfiles.h"

#include "Support/HostTypePrinting.h"
#include "UObject/Package.h"
#include "UObject/UObjectIterator.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

/** What people and models read about a type is the comment above it, so every reflected thing of the plug-in has one.
 */
TEST(CVXReflection, EveryReflectedTypeAndPropertyIsDocumented)
{
	// The first use of a type brings the others up.
	const UPackage* Package = FCVXProviderProfile::StaticStruct()->GetOutermost();
	EXPECT_EQ(Package->GetName(), TEXT("/Script/Corvexa"));
	int32 Structs = 0;
	for (TObjectIterator<UStruct> It; It; ++It)
	{
		if (It->GetOutermost() != Package || It->IsA<UFunction>())
		{
			continue;
		}
		++Structs;
		EXPECT_TRUE(It->HasMetaData(TEXT("ToolTip"))) << TCHAR_TO_UTF8(*It->GetPathName());
		for (TFieldIterator<FProperty> Property(*It); Property; ++Property)
		{
			EXPECT_TRUE(Property->HasMetaData(TEXT("ToolTip")))
				<< TCHAR_TO_UTF8(*(It->GetName() + TEXT(".") + Property->GetName()));
		}
	}
	EXPECT_GE(Structs, 7);
	int32 Enums = 0;
	for (TObjectIterator<UEnum> It; It; ++It)
	{
		if (It->GetOutermost() == Package)
		{
			++Enums;
			EXPECT_TRUE(It->HasMetaData(TEXT("ToolTip"))) << TCHAR_TO_UTF8(*It->GetPathName());
		}
	}
	EXPECT_GE(Enums, 5);
}
