#!/usr/bin/env bash
# Proves from the sources' own lines that a floor includes only what stands below it, that private folders stay private,
# that third-party libraries stay at the edges, and that no delay-loaded function is noexcept. Needs bash and awk only.
#
#   scripts/check-floors.sh [TREE]      default: this checkout. Every C++ file below TREE counts, build/ aside.
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"

# The rooms, from the ground up; the first row whose pattern fits a path is its room. A room sees itself and every
# room with a smaller floor; rooms of one floor do not see each other. Floor 0 stands on the platform layer.
rooms='
#   floor   room            paths
   -1       limits          utilitiesstaticlib/documentlimits
    0.0     winport         winport/
    2       delayload       utilitiesstaticlib/dlldelayloader
    0.1     ground          utilitiesstaticlib/|interfaces/
    1       tvutil          siblings/tvutil/
    3       tvcore-doors    siblings/tvcore/include/
    5       tvcore          siblings/tvcore/
    6       provider        complugins/ptpcprovider/|complugins/jtif|complugins/ren|complugins/workflowobject
    6       tvwftu          siblings/tvwftu/
    6       tvui            siblings/tvui/
    4       devmode         complugins/
    7       tools           tools/
    8       tests           tests/
    9       bench           bench/
    9       fuzz            fuzz/
'

# Third-party headers and the rooms that may include them; tests, benchmarks and fuzzers may include any.
libraries='
#   header          rooms
    nlohmann/       tvcore tools
    CLI/            tools
    libxml/         winport
    sqlite3\.h      winport
    gtest/          -
    benchmark/      -
'

mapfile -t files < <(find . -path ./build -prune -o -path ./.git -prune -o -type f \( -name '*.h' -o -name '*.hpp' -o -name '*.cpp' \
    -o -name '*.cc' -o -name '*.c' -o -name '*.inc' \) -print | sed 's,^\./,,' | LC_ALL=C sort)
[ "${#files[@]}" -gt 0 ] || { echo "check-floors: no C++ files in $PWD" >&2; exit 1; }

awk -v rooms="$rooms" -v libraries="$libraries" -v files="$(printf '%s\n' "${files[@]}")" '
    BEGIN {
        count = split(rooms, line, "\n")
        for (i = 1; i <= count; i++)
            if (split(line[i], word, " ") == 3 && word[1] != "#")
            {
                floors[++roomCount] = word[1]
                names[roomCount] = word[2]
                patterns[roomCount] = "^(" word[3] ")"
            }
        count = split(libraries, line, "\n")
        for (i = 1; i <= count; i++)
        {
            fields = split(line[i], word, " ")
            if (fields < 2 || word[1] == "#")
                continue
            header[++libraryCount] = "^" word[1]
            for (j = 2; j <= fields; j++)
                allowed[libraryCount, word[j]] = 1
        }
        count = split(files, line, "\n")
        for (i = 1; i <= count; i++)
            exists[line[i]] = 1
    }

    function room(path,   i) {
        for (i = 1; i <= roomCount; i++)
            if (path ~ patterns[i])
                return i
        return 0
    }
    function violation(text) {
        printf "%s:%d: %s\n", FILENAME, FNR, text
        bad++
    }
    # "a/b/../c" is "a/c".
    function plain(path) {
        while (match(path, /[^\/.]+\/\.\.\//))
            path = substr(path, 1, RSTART - 1) substr(path, RSTART + RLENGTH)
        gsub(/(^|\/)\.\//, "/", path)
        sub(/^\//, "", path)
        return path
    }
    # The file of ours that an include names, or "": beside the including file, from the root, from a door.
    function ours(name, quoted,   folder, i, count, door) {
        folder = FILENAME
        sub(/[^\/]*$/, "", folder)
        if (quoted && (plain(folder name) in exists))
            return plain(folder name)
        if (plain(name) in exists)
            return plain(name)
        count = split("winport/include/ winport/src/ siblings/tvutil/include/ siblings/tvutil/src/ " \
            "siblings/tvcore/include/ siblings/tvcore/src/ siblings/tvwftu/include/ siblings/tvwftu/src/ " \
            "siblings/tvui/include/ siblings/tvui/src/ tools/tvpt/", door, " ")
        for (i = 1; i <= count; i++)
            if (plain(door[i] name) in exists)
                return plain(door[i] name)
        return ""
    }
    function checkOwn(target,   to, owner) {
        to = room(target)
        if (!to)
            return
        if (names[to] != names[here] && floors[to] >= floors[here])
            violation(names[here] " (floor " floors[here] ") includes " target " of " names[to] " (floor " floors[to] ")")
        else if (target ~ /^(winport|siblings\/[a-z]+)\/src\//)
        {
            owner = target
            sub(/src\/.*/, "", owner)
            if (index(FILENAME, owner) != 1 && !isTest)
                violation("includes the private " target)
        }
        else if (target ~ /^winport\/include\/winport\// && names[here] != "winport" && !isTest)
            violation("knows the portability layer: " target " is for tests")
    }
    function checkForeign(name, quoted,   i) {
        if (isTest && !quoted)
            return
        for (i = 1; i <= libraryCount; i++)
            if (name ~ header[i])
            {
                if (!((i, names[here]) in allowed))
                    violation(names[here] " includes the third-party " name)
                return
            }
        if (quoted)
            violation("there is no file \"" name "\"")
        else if (name ~ /[.\/]/ && !mayKnowPlatform)
            violation("<" name "> is neither ours nor the standard library\047s nor one that winport has")
    }

    FNR == 1 {
        here = room(FILENAME)
        isTest = names[here] == "tests" || names[here] == "bench" || names[here] == "fuzz"
        # The build chooses platform_windows.cpp or platform_linux.cpp; modules have no such files.
        mayKnowPlatform = names[here] == "winport" || \
            (names[here] == "tools" && FILENAME ~ /_(windows|linux)\.(h|cpp)$/)
        hasWindows = names[here] == "winport"
        if (!here)
            violation("stands in no room")
    }
    here && /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
        quoted = $0 ~ /include[ \t]*"/
        name = $0
        sub(/^[^<"]*[<"]/, "", name)
        sub(/[>"].*/, "", name)
        includes++
        # Natively these stand alone; on Windows they do not, and the error there is a long one.
        if (name == "windows.h")
            hasWindows = 1
        else if (!hasWindows && (name == "winspool.h" || name == "oleauto.h"))
            violation("<" name "> stands on <windows.h>: include that before it")
        target = ours(name, quoted)
        if (target != "")
            checkOwn(target)
        else
            checkForeign(name, quoted)
    }
    # Platform differences live in winport and in the build files; tests are chosen by the build or skip themselves.
    here && !isTest && !mayKnowPlatform && \
        /^[ \t]*#[ \t]*(if|ifdef|ifndef|elif)[^\/]*(_WIN32|_WIN64|__linux__|__unix__|_MSC_VER|__MINGW)/ {
        violation("asks for the platform: " $0)
    }
    # The first call loads the core library, and a load that fails is thrown.
    here && /^class TVCORE_API / { isDelayLoaded = 1 }
    here && /^};/ { isDelayLoaded = 0 }
    here && isDelayLoaded && /noexcept( override)?;/ {
        violation("is delay-loaded and noexcept: " $0)
    }
    END {
        if (!bad)
            printf "floors: %d includes obey\n", includes
        exit bad ? 1 : 0
    }' "${files[@]}"
