# Shared by run.sh, test.sh and .ci/run: sourced, never run. Gives say, fail, install_packages and build.
set -euo pipefail

Root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
Jobs="$(nproc)"

say()
{
	printf '== %s\n' "$*"
}

fail()
{
	printf '%s: %s\n' "${0##*/}" "$*" >&2
	exit 1
}

# The packages of the given sets (build, test, bench, fuzz), one a line.
packages_of()
{
	local wanted=" $* "
	local set names name
	while read -r set names; do
		case "$set" in '' | '#'*) continue ;; esac
		if [[ "$wanted" == *" $set "* ]]; then
			for name in $names; do printf '%s\n' "$name"; done
		fi
	done <"$Root/scripts/packages.txt"
}

is_installed()
{
	[[ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

# Installs what is missing of the given sets. Touches nothing, and asks no server, when all is there.
install_packages()
{
	command -v dpkg-query >/dev/null || fail "this is not Debian; install by hand what scripts/packages.txt names"
	local name
	local missing=()
	while read -r name; do
		is_installed "$name" || missing+=("$name")
	done < <(packages_of "$@" | sort -u)
	if ((${#missing[@]} == 0)); then
		return
	fi
	local as_root=()
	if ((EUID != 0)); then
		command -v sudo >/dev/null || fail "missing packages, and neither root nor sudo to install them: ${missing[*]}"
		as_root=(sudo)
	fi
	say "Installing missing packages: ${missing[*]}"
	"${as_root[@]}" apt-get update -q || fail "apt-get update failed"
	"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
		apt-get install -q -y --no-install-recommends "${missing[@]}" || fail "apt-get install failed"
}

# Configures (quick when nothing changed) and builds the preset, or only the targets named behind it.
build()
{
	local preset="$1"
	shift
	cd "$Root"
	say "Configuring preset '$preset'"
	cmake --preset "$preset" --log-level=NOTICE || fail "configuring preset '$preset' failed"
	say "Building preset '$preset' with $Jobs jobs"
	cmake --build --preset "$preset" -j "$Jobs" ${@:+--target "$@"} || fail "building preset '$preset' failed"
}

# Runs the suite of a preset that is built.
run_suite()
{
	cd "$Root"
	say "Testing preset '$1'"
	ctest --preset "$1" -j "$Jobs" --no-tests=error || fail "tests of preset '$1' failed"
}
