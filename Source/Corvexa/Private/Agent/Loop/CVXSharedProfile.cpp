#include "Agent/Loop/CVXSharedProfile.h"

FCVXSharedProfile CVXSharedProfile::Share(const FCVXAgentProfile& Profile)
{
	static TArray<TWeakPtr<const FCVXAgentProfile>> Shared;
	Shared.RemoveAll([](const TWeakPtr<const FCVXAgentProfile>& Each) { return !Each.IsValid(); });
	for (const TWeakPtr<const FCVXAgentProfile>& Each : Shared)
	{
		const TSharedPtr<const FCVXAgentProfile> Held = Each.Pin();
		if (Held && FCVXAgentProfile::StaticStruct()->CompareScriptStruct(Held.Get(), &Profile, 0))
		{
			return Held.ToSharedRef();
		}
	}
	const FCVXSharedProfile Fresh = MakeShared<const FCVXAgentProfile>(Profile);
	Shared.Add(Fresh.ToWeakPtr());
	return Fresh;
}
