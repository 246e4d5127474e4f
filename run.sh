#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program with the arguments given; without any, shows one whole run on
# a copy of the sample project.
source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"

Program="$Root/Build/release/Host/Launch/corvexa"
Sample="$Root/Samples/Skirmish"
Copy="$Root/Build/demo/Skirmish"

# What the build says goes to standard error, so that the program's output can be piped on.
prepare()
{
	install_packages build bench
	build release CorvexaProgram
}

show_demo()
{
	local status=0
	rm -rf "$Copy"
	mkdir -p "$(dirname "$Copy")"
	cp -r "$Sample" "$Copy"
	say "One request to the built-in demo model, on a copy of the sample project in $Copy"
	"$Program" run --project "$Copy" --provider demo --agent Coder --approve all \
		"A weapon seems to fire once more when its magazine is empty. Find out why and fix it." </dev/null || status=$?
	((status == 0)) || fail "the run ended with status $status"
	say "What it changed:"
	diff -ru --exclude=Saved --exclude=Config "$Sample" "$Copy" || true
	cat <<END

== How to go on
Talk with it:            ./run.sh chat --project Build/demo/Skirmish --agent Coder
Go on with this run:     ./run.sh chat --project Build/demo/Skirmish --resume
See work delegated:      rm -r Build/demo/Skirmish; cp -r Samples/Skirmish Build/demo/
                         ./run.sh run --project Build/demo/Skirmish --approve all "Weapons fire when they are empty"
Vendors, models, keys:   ./run.sh models --project DIR
Use a real model:        export ANTHROPIC_API_KEY=..., or put the key into Saved/CVX/apikeys.cfg of the project
Use your own project:    ./run.sh chat --project DIR
One request, scripted:   ./run.sh run --project DIR --approve reads "..."
All options:             ./run.sh --help
END
}

prepare 1>&2
if (($# > 0)); then
	exec "$Program" "$@"
fi
show_demo
