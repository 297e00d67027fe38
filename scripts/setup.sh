#!/usr/bin/env bash
# Installs what a kind of work on this project needs, from the machine's own package sources.
#
#   scripts/setup.sh GROUP...        GROUP: base sanitizers style windows coverage
#
# Where everything is there already it does nothing and needs no network. Not root: it asks sudo.
set -euo pipefail

packages_of()
{
    case "$1" in
        base)       echo g++ cmake ninja-build ccache git make libxml2-dev libsqlite3-dev googletest \
                         nlohmann-json3-dev libcli11-dev libbenchmark-dev ;;
        sanitizers) echo clang libclang-rt-dev llvm ;;        # llvm: names instead of addresses in reports
        style)      echo clang-format clang-tidy ;;
        windows)    echo g++-mingw-w64-x86-64-posix wine wine64 ;;
        coverage)   echo gcovr ;;
        *)          echo "setup: there is no group '$1'" >&2; return 2 ;;
    esac
}

fail()
{
    echo "setup: $*" >&2
    exit 1
}

wanted=()
for group in "$@"; do
    list=$(packages_of "$group")
    read -ra names <<<"$list"
    wanted+=("${names[@]}")
done
[ "${#wanted[@]}" -gt 0 ] || { sed -n '2,6s/^# \{0,1\}//p' "$0" >&2; exit 2; }

command -v dpkg-query >/dev/null ||
    fail "this is no Debian; install by hand what these packages bring, then run the build again: ${wanted[*]}"

missing=()
for package in "${wanted[@]}"; do
    # shellcheck disable=SC2016
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing+=("$package")
done
[ "${#missing[@]}" -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "not root and no sudo; as root, run: apt-get install ${missing[*]}"
    as_root=(sudo)
fi

echo "setup: installing for '$*': ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT

# Quiet unless it fails. Another package run on the machine is waited for, a lost connection tried again.
apt()
{
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@" >"$log" 2>&1 && return
    cat "$log" >&2
    fail "apt-get $1 failed; its own words are above"
}
apt update
apt install -y --no-install-recommends "${missing[@]}"
echo "setup: done"
