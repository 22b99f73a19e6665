#!/usr/bin/env bash
# cross-compiler.sh FOLDER: what it takes to build for a Mac on Linux, in FOLDER, for cmake/MacToolchain.cmake.
#
#   bin/    clang, clang++, ar and ranlib: Zig's compiler with its C++ library and the Mac's C headers and stubs, as the
#           npm registry has them
#   root/   the two libraries that the build looks for: their headers, which are the same everywhere, and for libplist
#           the names of what it exports, which is what is linked with on a Mac, too
#
# Ends with 69 where it cannot be had: the registry is not reached, or this is another machine than the compiler's.
set -euo pipefail

VERSION=0.16.0
LIB_SHA512=6edc60a8f272f77af095cca968c1cb2c68efb63fedd649be2942a39420b1295f94a5ac9e235bfac9b5ede3f8c5237b9f0caa0b7bd18b293a6c5fc6dabcc13280
PROGRAM_SHA512=cd54862a62196f9c3ea2ddde0dda05ec6cef2023757ba9b01880206af0e2411d2cb579c9bbd52038ca697082aa3f97c6e5e72c1fa8ec21ff6b4e1777648fdd95

[ $# -eq 1 ] || { echo "Usage: cross-compiler.sh FOLDER" >&2; exit 2; }
mkdir -p "$1"
folder=$(cd "$1" && pwd)

# fetch PACKAGE SHA512: unpacks that package into a folder of its name, once.
fetch() {
    local package=$1 sum=$2 archive=$folder/zigc-$1-$VERSION.tgz
    [ ! -d "$folder/$package-$VERSION" ] || return 0
    (cd "$folder" &&
        npm pack --silent --fetch-retries 1 --cache "$folder/npm" "@zigc/$package@$VERSION" >/dev/null) || {
        echo "the npm registry gives no @zigc/$package@$VERSION" >&2
        exit 69
    }
    echo "$sum  $archive" | sha512sum --check --quiet >&2
    rm -rf "$folder/unpacking"
    mkdir "$folder/unpacking"
    tar -xzf "$archive" -C "$folder/unpacking" --strip-components 1
    mv "$folder/unpacking" "$folder/$package-$VERSION"
    rm -rf "$archive" "$folder/npm"
}

# tool NAME COMMAND: a program of that name in bin/ that runs this command of the compiler.
tool() {
    cat >"$folder/bin/$1" <<SCRIPT
#!/bin/sh
export ZIG_LIB_DIR='$folder/lib-$VERSION' ZIG_GLOBAL_CACHE_DIR='$folder/cache' ZIG_LOCAL_CACHE_DIR='$folder/cache'
exec '$folder/linux-x64-$VERSION/bin/zig' $2 "\$@"
SCRIPT
    chmod +x "$folder/bin/$1"
}

# The symbols of a Linux library as a Mac's linker reads them.
text_stub() {
    local library=$1 install_name=$2
    printf '%s\n' '--- !tapi-tbd' 'tbd-version: 4' 'targets: [ x86_64-macos, arm64-macos ]' \
        "install-name: '$install_name'" 'exports:' '  - targets: [ x86_64-macos, arm64-macos ]'
    nm --dynamic --defined-only --format=posix "$library" |
        awk '$2 == "T" { names = names (names ? ", " : "") "_" $1 }
            END { print "    symbols: [ " names " ]"; print "..." }'
}

case $(uname -sm) in
'Linux x86_64') ;;
*)
    echo "needs Linux on x86_64" >&2
    exit 69
    ;;
esac
fetch lib "$LIB_SHA512"
fetch linux-x64 "$PROGRAM_SHA512"
mkdir -p "$folder/bin"
for name in clang:cc clang++:c++ ar:ar ranlib:ranlib; do tool "${name%:*}" "${name#*:}"; done

# Made anew and kept as it was where nothing is different, so that nothing is built again for it.
root=$folder/root
rm -rf "$root.new"
mkdir -p "$root.new/include" "$root.new/lib/pkgconfig" "$root.new/share/cmake"
cp -R /usr/include/plist /usr/include/nlohmann "$root.new/include/"
cp -R /usr/share/cmake/nlohmann_json "$root.new/share/cmake/"
text_stub "$(pkg-config --variable=libdir libplist-2.0)/libplist-2.0.so" @rpath/libplist-2.0.dylib \
    >"$root.new/lib/libplist-2.0.tbd"
cat >"$root.new/lib/pkgconfig/libplist-2.0.pc" <<PC
prefix=$root
Name: libplist
Description: Property lists, to be linked for a Mac
Version: $(pkg-config --modversion libplist-2.0)
Libs: -L\${prefix}/lib -lplist-2.0
Cflags: -I\${prefix}/include
PC
if diff -qr "$root" "$root.new" >/dev/null 2>&1; then
    rm -rf "$root.new"
else
    rm -rf "$root"
    mv "$root.new" "$root"
fi
