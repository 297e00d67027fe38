#!/usr/bin/env bash
# Gathers the driver package folders: build/package/linux and build/package/windows, each with the modules
# and tvpt in bin/ and the printer models in models/. A folder that lacks something of its own is an error.
set -euo pipefail
cd "$(dirname "$0")/.."

fail()
{
    echo "package: $*" >&2
    exit 1
}

# complete FOLDER EXTENSION PROGRAM: the modules, the program and the models are there.
complete()
{
    local name
    for name in "tvutil_B.$2" "tvcore_B.$2" "tvwftu_B.$2" "tvui_B.$2" "tvptpc_B.$2" "$3"; do
        [ -s "$1/bin/$name" ] || fail "$1 lacks $name"
    done
    compgen -G "$1/models/*.json" >/dev/null || fail "$1 lacks the printer models"
}

rm -rf build/package
cmake --install build/release --prefix build/package/linux --component driver --strip >/dev/null
cmake --install build/windows --prefix build/package/windows --component driver --strip >/dev/null
complete build/package/linux so tvpt
complete build/package/windows dll tvpt.exe

# The Linux folder must find its own libraries wherever it lies; on Windows only the system's may be missing from it.
missing=$(cd build/package/linux/bin && for file in tvpt ./*.so; do ldd "$file"; done | grep 'not found' || true)
[ -z "$missing" ] || fail "the Linux folder does not load by itself:"$'\n'"$missing"
for file in build/package/windows/bin/*; do
    imports=$(x86_64-w64-mingw32-objdump -p "$file" | sed -n 's/^\tDLL Name: //p')
    for import in $imports; do
        case "${import,,}" in
            libstdc++* | libgcc* | libwinpthread*) fail "$(basename "$file") needs the compiler's $import" ;;
        esac
    done
done
echo "package: build/package/linux and build/package/windows"
du -sh build/package/linux build/package/windows
