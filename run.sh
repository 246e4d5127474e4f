#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program with the arguments given.
source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"

install_packages build
build release
Program="$Root/Build/release/Host/Launch/corvexa"
if [[ ! -x "$Program" ]]; then
	say "Built. There is no program to start yet: what exists today is the host's core library; ./test.sh shows it at work."
	exit 0
fi
exec "$Program" "$@"
