# shellcheck shell=bash
# The packages of the program, and the check that they can be made again. Part of `dev`, whose functions it uses.

# make_packages: into build/packages. The same sources and the same Debian make the same files, byte for byte, whoever
# makes them where and when. Who publishes them tells the page at the forge in ZENTRILL_HOMEPAGE, and who answers for
# them in ZENTRILL_CONTACT.
make_packages() {
    local folder=build/package released told results=build/packages
    released=$(sed -n 's/^## [0-9.]* - \([0-9-]*\)$/\1/p' CHANGELOG.md | head -n 1)
    SOURCE_DATE_EPOCH=$(date --utc --date="$released" +%s)
    export SOURCE_DATE_EPOCH LC_ALL=C TZ=UTC
    umask 022
    # What is generated from these is not generated again for others.
    told="$SOURCE_DATE_EPOCH ${ZENTRILL_HOMEPAGE:-} ${ZENTRILL_CONTACT:-}"
    [ "$(cat "$folder/told" 2>/dev/null)" = "$told" ] || rm -rf "$folder"
    mkdir -p "$folder"
    printf '%s\n' "$told" >"$folder/told"
    build package program zentrill_package_contents
    say "Packing"
    mkdir -p "$results"
    rm -f "$results"/zentrill[-_][0-9]* "$folder"/zentrill[-_][0-9]*
    (cd "$folder" && cpack >cpack.log 2>&1) || { cat "$folder/cpack.log" >&2 && die "the packages could not be made"; }
    mv "$folder"/zentrill[-_][0-9]* "$results"
    python3 packaging/package/sbom.py "$(app_of package)" "$results"
}

tell_packages() {
    local package
    for package in "$PWD"/build/packages/*; do
        printf '%9d bytes  %s\n' "$(wc -c <"$package")" "$package"
    done
}

# check_packages: what Debian's checker says of the .deb, and whether the packages come out the same elsewhere.
check_packages() {
    local package different=''
    again='' # Seen by the trap as well, which runs when this function is over.
    say "lintian"
    lintian --allow-root --fail-on error build/packages/*.deb
    say "Making them again in another folder"
    again=$(mktemp -d "$PWD/build/package-again.XXXXXX")
    trap 'rm -rf "$again"' EXIT
    tar --create --exclude=./build --exclude=./.git . | tar --extract --no-same-permissions --directory "$again"
    # Times, rights, the time zone and the folder could show in the packages, and must not. A cache would give back what
    # was compiled in the first folder.
    (umask 077 && cd "$again" && find . -type f -exec touch {} + &&
        TZ=Asia/Tokyo CCACHE_DISABLE=1 ./dev package >/dev/null)
    for package in build/packages/*; do
        cmp "$package" "$again/$package" || different=yes
    done
    [ -z "$different" ] || die "the packages are not the same"
    say "The packages are the same, byte for byte"
}
