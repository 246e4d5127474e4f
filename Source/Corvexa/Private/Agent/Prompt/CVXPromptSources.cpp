#include "Agent/Prompt/CVXPromptSources.h"

FCVXPromptSources& FCVXPromptSources::Get()
{
	static FCVXPromptSources Sources;
	return Sources;
}
