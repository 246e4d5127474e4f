#include "Corvexa/MCP/MCPFixture.h"

FCVXMCPServerConfig FMCPFixture::MakeConfig(const TCHAR* Beginning, const TCHAR* Name) const
{
	FCVXMCPServerConfig Config;
	Config.Name = Name;
	Config.Command = TEXT("python3");
	Config.Args = {TEXT("-BES"), TEXT(CORVEXA_TEST_DATA_DIR "/MCP/Fixtures/ScriptedServer.py"),
		Project.Path("received"), Beginning};
	return Config;
}
