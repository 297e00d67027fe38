#!/usr/bin/env bash
# scripts/check-floors.sh must accept a tree that obeys and refuse each way of breaking the floors, by its reason.
set -u
check=$(cd "$(dirname "$0")/../.." && pwd)/scripts/check-floors.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

# file PATH [LINE]...: a file of the tree.
file()
{
    mkdir -p "$tree/$(dirname "$1")"
    printf '%s\n' "${@:2}" >"$tree/$1"
}

# A small tree in which every room has a header and obeys.
obedient_tree()
{
    rm -rf "${tree:?}"/*
    file winport/include/windows.h '#include "windef.h"'
    file winport/include/windef.h '#include <cstdint>'
    file winport/include/winport/faultinjection.h '#include "../windef.h"'
    file winport/include/winspool.h '#include "windef.h"'
    file winport/src/dom/node.h '#include <libxml/tree.h>' '#include <unistd.h>'
    file winport/src/dom/node.cpp '#include "dom/node.h"'
    file utilitiesstaticlib/iidof.h '#include <windows.h>'
    file utilitiesstaticlib/dlldelayloader.cpp '#include <tvutil/cxstring.h>'
    file utilitiesstaticlib/printerhandle.h '#include <windows.h>' '#include <winspool.h>'
    file interfaces/prcomoem.h '#include "utilitiesstaticlib/iidof.h"'
    file siblings/tvutil/include/tvutil/cxstring.h '#include <string>' '#include "utilitiesstaticlib/iidof.h"'
    file siblings/tvutil/src/table.h '#include <array>'
    file siblings/tvutil/src/crc32.cpp '#include "table.h"'
    file siblings/tvcore/include/tvcore/ids.h '#include <tvutil/cxstring.h>'
    file siblings/tvcore/src/model.cpp '#include <nlohmann/json.hpp>' '#include "complugins/xdevmode.h"'
    file siblings/tvui/include/tvui/ui.h '#include <tvcore/ids.h>'
    file complugins/xdevmode.h '#include <tvcore/ids.h>'
    file complugins/ptpcprovider/provider.cpp '#include "complugins/xdevmode.h"'
    file complugins/renbase.cpp '#include "complugins/ptpcprovider/provider.h"'
    file complugins/ptpcprovider/provider.h '#include "interfaces/prcomoem.h"'
    file tools/tvpt/main.cpp '#include <CLI/CLI.hpp>' '#include "complugins/ptpcprovider/provider.h"'
    file tools/tvpt/platform_linux.cpp '#include <sys/stat.h>'
    file bench/b.cpp '#include <benchmark/benchmark.h>' '#include "tests/tvutil/t.h"'
    file tests/tvutil/t.h '#include <unistd.h>'
    file tests/tvutil/t.cpp '#include <gtest/gtest.h>' '#include <winport/faultinjection.h>' '#ifdef _WIN32' '#endif'
}

# refuses WHAT REASON PATH LINE...: with this one file more, the check fails and says why.
refuses()
{
    local what=$1 reason=$2 output
    obedient_tree
    file "${@:3}"
    if output=$("$check" "$tree" 2>&1); then
        echo "accepted: $what"
        failed=1
    elif ! grep -q "^$3:.*$reason" <<<"$output" || [ "$(wc -l <<<"$output")" -ne 1 ]; then
        echo "refused for another reason: $what"
        echo "$output"
        failed=1
    fi
}

obedient_tree
"$check" "$tree" || { echo "refused: the obedient tree"; failed=1; }

refuses "the platform layer above itself" "includes utilitiesstaticlib/iidof.h" \
    winport/src/bad.cpp '#include "utilitiesstaticlib/iidof.h"'
refuses "the ground on the utility library" "includes siblings/tvutil" \
    utilitiesstaticlib/bad.h '#include <tvutil/cxstring.h>'
refuses "the utility library on the core library" "includes siblings/tvcore" \
    siblings/tvutil/src/bad.cpp '#  include <tvcore/ids.h>'
refuses "a core library door on the devmode layer" "floor 3" \
    siblings/tvcore/include/tvcore/bad.h '#include "complugins/xdevmode.h"'
refuses "the devmode layer on the provider" "devmode (floor 4)" \
    complugins/bad.cpp '#include "ptpcprovider/provider.h"'
refuses "rooms of one floor on each other" "tvui (floor 6) includes complugins/ptpcprovider" \
    siblings/tvui/src/bad.cpp '#include "complugins/ptpcprovider/provider.h"'
refuses "a way around by parent folders" "tvutil (floor 1)" \
    siblings/tvutil/src/bad.cpp '#include "../../../complugins/xdevmode.h"'
refuses "another room's private folder" "private siblings/tvutil/src/table.h" \
    complugins/ptpcprovider/bad.cpp '#include "siblings/tvutil/src/table.h"'
refuses "knowledge of the portability layer" "knows the portability layer" \
    complugins/ptpcprovider/bad.cpp '#include <winport/faultinjection.h>'
refuses "JSON in the module" "third-party nlohmann/json.hpp" \
    complugins/ptpcprovider/bad.cpp '#include <nlohmann/json.hpp>'
refuses "SQLite outside the platform layer" "third-party sqlite3.h" tools/tvpt/bad.cpp '#include <sqlite3.h>'
refuses "the tests' library outside the tests" "third-party gtest/gtest.h" tools/tvpt/bad.cpp '#include <gtest/gtest.h>'
refuses "POSIX in the module" "neither ours nor" complugins/bad.cpp '#include <unistd.h>'
refuses "POSIX by a file's name in the module" "neither ours nor" complugins/bad_linux.cpp '#include <unistd.h>'
refuses "a header that does not exist" "there is no file" complugins/bad.cpp '#include "complugins/gone.h"'
refuses "a header that Windows lets nobody include alone" "stands on <windows.h>" \
    complugins/bad.cpp '#include <winspool.h>'
refuses "a platform question" "asks for the platform" complugins/bad.cpp '#if defined(_WIN32)'
refuses "a delay-loaded function that may not throw" "is delay-loaded and noexcept" \
    siblings/tvcore/include/tvcore/bad.h 'class TVCORE_API Bad' '{' '    int Get() const noexcept;' '};'
refuses "a file without a room" "stands in no room" plugins/bad.cpp '#include <string>'

[ "$failed" -eq 0 ] && echo "check-floors keeps its word"
exit "$failed"
