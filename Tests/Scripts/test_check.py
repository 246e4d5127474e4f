"""Each rule of scripts/check catches its fault, and passes over what only looks like one."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check"
CORE = "Source/Corvexa/Private/Core/"
TOOLS = "Source/Corvexa/Private/Tools/"
AGENT = "Source/Corvexa/Private/Agent/"


class CheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()

    def write(self, path, text=""):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def write_commands(self, *sources):
        entries = [
            {
                "directory": str(self.root),
                "file": source,
                "command": f"env X=1 ccache /usr/bin/c++ -std=c++20 -IHost/Core/Public -Wall -Werror "
                f"-include pch.hxx -MD -MF a.d -o a.o -c {source}",
            }
            for source in sources
        ]
        self.write("Build/dev/compile_commands.json", json.dumps(entries))

    def check(self, *rules):
        """(exit status, lines of findings)."""
        command = [sys.executable, "-B", str(CHECK), "--root", str(self.root), *rules]
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        return done.returncode, done.stdout.splitlines()

    def assert_faults(self, rule, *expected):
        """The rule finds exactly these, each given as 'path:line: part of the message'."""
        status, lines = self.check(rule)
        self.assertEqual(len(expected), len(lines), lines)
        self.assertEqual(1 if expected else 0, status)
        for line, wanted in zip(lines, sorted(expected)):
            place, _, message = wanted.partition(": ")
            self.assertTrue(line.startswith(place + ": "), f"{line} is not at {place}")
            self.assertIn(message, line)


class LayersTest(CheckTest):
    def test_an_include_may_run_down_or_sideways(self):
        self.write("Host/Core/Public/CoreMinimal.h")
        self.write(CORE + "CVXTypes.h", "#include <vector>\n#include <CoreMinimal.h>\n")
        self.write("Source/Corvexa/Private/MCP/CVXMCPServer.h", '#include "Core/CVXTypes.h"\n')
        self.write(TOOLS + "CVXTool.h", '#include "CoreMinimal.h"\n#include "MCP/CVXMCPServer.h"\n')
        self.write("Source/Corvexa/Private/UI/SCVXPanel.cpp", '#include "Tools/CVXTool.h"\n')
        self.write("Host/Launch/Private/Main.cpp", '#include "UI/SCVXPanel.h"\n')
        self.assert_faults("layers")

    def test_an_upward_include_is_found_with_its_line(self):
        self.write(AGENT + "CVXAgentLoop.h")
        self.write(TOOLS + "CVXTool.h", '#pragma once\n\n#include "Agent/CVXAgentLoop.h"\n')
        self.write(CORE + "CVXTypes.h", '#include "../Tools/CVXTool.h"\n')
        self.write("Host/CoreUObject/Public/UObject/Object.h")
        self.write("Host/Core/Private/Name.cpp", '  #  include "UObject/Object.h"\n')
        self.write("Host/Editor/Private/Panel.cpp", '#include "Core/CVXTypes.h"\n')
        self.assert_faults(
            "layers",
            TOOLS + "CVXTool.h:3: stands above",
            CORE + "CVXTypes.h:1: stands above",
            "Host/Core/Private/Name.cpp:1: stands above",
            "Host/Editor/Private/Panel.cpp:1: stands above",
        )

    def test_an_exception_holds_for_its_own_files_alone(self):
        self.write(AGENT + "CVXApprovalManager.h")
        self.write(TOOLS + "CVXToolExecutor.cpp", '#include "Agent/CVXApprovalManager.h"\n')
        self.write(TOOLS + "CVXToolRegistry.cpp", '#include "Agent/CVXApprovalManager.h"\n')
        self.assert_faults("layers", TOOLS + "CVXToolRegistry.cpp:1: stands above")

    def test_a_private_header_of_another_host_module_is_out_of_reach(self):
        self.write("Host/Core/Private/HAL/Pipe.h")
        self.write("Host/Core/Private/HAL/Process.cpp", '#include "HAL/Pipe.h"\n')
        self.write("Host/Engine/Private/Actor.cpp", '#include "Core/Private/HAL/Pipe.h"\n')
        self.assert_faults("layers", "Host/Engine/Private/Actor.cpp:1: private to another module")

    def test_a_folder_without_a_level_is_a_fault(self):
        self.write("Host/Core/Public/CoreMinimal.h")
        self.write("Host/Sound/Private/Mixer.cpp", '#include "CoreMinimal.h"\n')
        self.assert_faults("layers", "Host/Sound/Private/Mixer.cpp:1: has no level")

    def test_a_loop_is_told_once_and_in_full(self):
        self.write(CORE + "A.h", '#include "B.h"\n')
        self.write(CORE + "B.h", '#include "Core/C.h"\n')
        self.write(CORE + "C.h", '\n#include "A.h"\n')
        self.write(CORE + "D.cpp", '#include "A.h"\n')
        self.assert_faults("layers", f"{CORE}C.h:2: {CORE}A.h -> {CORE}B.h -> {CORE}C.h -> {CORE}A.h")

    def test_an_include_in_a_comment_is_none(self):
        self.write(AGENT + "CVXAgentLoop.h")
        self.write(CORE + "A.h", '/*\n#include "Agent/CVXAgentLoop.h"\n*/\n// #include "Agent/CVXAgentLoop.h"\n')
        self.assert_faults("layers")


class BannedTest(CheckTest):
    def test_the_plug_in_reaches_the_system_through_the_host_alone(self):
        calls = {
            "std::thread T;": "AsyncTask",
            "std::lock_guard L(M);": "locks",
            "std::filesystem::path P;": "FPaths",
            'auto* F = fopen("x", "r");': "FFileHelper",
            "std::ifstream In;": "FFileHelper",
            "int F = ::open(Path, 0);": "FFileHelper",
            "auto T = std::chrono::seconds(1);": "FPlatformTime",
            "auto T = time(nullptr);": "FPlatformTime",
            "usleep(1);": "FPlatformTime",
            "int S = socket(1, 2, 3);": "FHttpModule",
            'const char* V = std::getenv("X");': "FPlatformMisc",
            'system("ls");': "FPlatformProcess",
            'popen("ls", "r");': "FPlatformProcess",
            "std::string S;": "FString",
            'printf("x");': "UE_LOG",
            "#include <mutex>": "locks",
            "#include <sys/socket.h>": "FHttpModule",
        }
        self.write(CORE + "A.cpp", "\n".join(calls) + "\n")
        expected = [f"{CORE}A.cpp:{line}: {instead}" for line, instead in enumerate(calls.values(), 1)]
        status, lines = self.check("banned")
        self.assertEqual(1, status)
        for wanted in expected:
            place, _, instead = wanted.partition(": ")
            self.assertTrue(any(l.startswith(place + ": ") and instead in l for l in lines), f"{wanted} in {lines}")
        self.assertEqual(len(expected), len(lines), lines)

    def test_what_only_looks_like_a_banned_call_passes(self):
        self.write(
            CORE + "A.cpp",
            "// std::thread in a comment\n"
            'const TCHAR* Text = TEXT("system(1) std::mutex");\n'
            'const char* Raw = R"x(popen("))x"; int Big = 1\'000\'000;\n'
            "Object.time(); Object->system(); FClock::sleep(); GetSystem(); FString::Printf(1); Filesystem(2);\n"
            "std::move(A); std::atomic<int> B; Pipe.read(1); IFileManager::Get().Open(2);\n",
        )
        self.write("Host/Core/Private/Thread.cpp", "#include <thread>\nstd::thread T;\n")
        self.assert_faults("banned")


class SizeTest(CheckTest):
    def test_a_file_over_the_limit_is_a_fault(self):
        self.write(CORE + "Full.cpp", "\n" * 1000)
        self.write(CORE + "Over.cpp", "\n" * 1001)
        self.write("Tests/Host/Golden/Large.cpp", "\n" * 2000)
        self.assert_faults("size", CORE + "Over.cpp:1001: 1001 lines")


class OrphansTest(CheckTest):
    def test_a_test_that_nothing_builds_is_found(self):
        self.write("Tests/Host/Core/BuiltTest.cpp")
        self.write("Tests/Host/Core/LostTest.cpp")
        self.write("Tests/Host/HeaderTool/Golden/Sample.cpp")
        self.write_commands("Tests/Host/Core/BuiltTest.cpp")
        self.assert_faults("orphans", "Tests/Host/Core/LostTest.cpp:1: no target builds")

    def test_without_a_configured_build_the_gate_says_so(self):
        self.write("Tests/Host/Core/BuiltTest.cpp")
        self.assertEqual((2, []), self.check("orphans"))


class FormattingTest(CheckTest):
    def test_a_file_that_is_not_formatted_is_found_again_until_it_is(self):
        self.write(".clang-format", "BasedOnStyle: LLVM\n")
        self.write(CORE + "A.cpp", "int A;\nint  B;\n")
        self.write(CORE + "B.cpp", "int B;\n")
        self.assert_faults("formatting", CORE + "A.cpp:2: clang-format-14 -i")
        self.assert_faults("formatting", CORE + "A.cpp:2: clang-format-14 -i")
        self.write(CORE + "A.cpp", "int A;\nint B;\n")
        self.assert_faults("formatting")
        self.write(".clang-format", "BasedOnStyle: LLVM\nAlignConsecutiveAssignments: true\nUseTab: Always\n")
        self.write(CORE + "B.cpp", "void B() {\n  int A;\n}\n")
        self.assert_faults("formatting", CORE + "B.cpp:1: clang-format-14 -i")


class HeadersTest(CheckTest):
    def setUp(self):
        super().setUp()
        self.write("Host/Core/Public/Base.h", "#pragma once\nstruct FBase {};\n")
        self.write("Host/Core/Private/Core.cpp")
        self.write_commands("Host/Core/Private/Core.cpp")

    def test_a_header_that_leans_on_its_includer_is_found(self):
        self.write("Host/Core/Public/Leaning.h", "#pragma once\nFBase Base();\n")
        self.write("Host/Core/Public/Standing.h", '#pragma once\n#include "Base.h"\nFBase Base2();\n')
        self.assert_faults("headers", "Host/Core/Public/Leaning.h:1: 'FBase' does not name a type")

    def test_a_change_below_a_header_is_noticed(self):
        self.write("Host/Core/Public/Standing.h", '#pragma once\n#include "Base.h"\nFBase Base2();\n')
        self.assert_faults("headers")
        self.write("Host/Core/Public/Base.h", "#pragma once\nstruct FOther {};\n")
        self.assert_faults("headers", "Host/Core/Public/Standing.h:1: 'FBase' does not name a type")


class UsageTest(CheckTest):
    def test_an_unknown_rule_is_wrong_usage(self):
        self.assertEqual((2, []), self.check("taste"))


if __name__ == "__main__":
    unittest.main()
