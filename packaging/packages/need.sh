# shellcheck shell=bash
# What is installed, what is missing, and how it gets here. The names are in the lists of this folder, which hold
# for Debian; those of a Mac's Homebrew are in brew-*.txt.

# packages_of GROUP...: the names that this system's package manager knows them by.
packages_of() {
    local group
    for group in "$@"; do
        if [ "$(uname)" != Darwin ]; then
            cat "packaging/packages/$group.txt"
        elif [ -f "packaging/packages/brew-$group.txt" ]; then
            cat "packaging/packages/brew-$group.txt"
        fi
    done | sort -u
}

installed_packages() {
    if [ "$(uname)" = Darwin ]; then
        brew list --formula -1
    else
        # It fails where it has never heard of a package, which just means that this one is missing.
        # shellcheck disable=SC2016  # dpkg-query's own placeholders
        { dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null || true; } | sed -n 's/^ii  *//p'
    fi | sort -u
}

# is_brought_otherwise PACKAGE: another source's package may bring the same programs, and then forbid this one: so
# it is with npm and some nodejs, and with the Docker Engine as its makers package it.
is_brought_otherwise() {
    case $1 in
    docker.io) [ -x /usr/bin/docker ] && { [ -x /usr/bin/dockerd ] || [ -x /usr/sbin/dockerd ]; } ;;
    *) [ -x "/usr/bin/$1" ] ;;
    esac
}

# missing_packages GROUP...: those that are not installed, one a line.
missing_packages() {
    local wanted package
    wanted=$(packages_of "$@")
    # shellcheck disable=SC2086  # names without spaces
    comm -23 <(printf '%s\n' "$wanted") <(installed_packages $wanted) | while read -r package; do
        [ -z "$package" ] || is_brought_otherwise "$package" || printf '%s\n' "$package"
    done
}

knows_packages() {
    case $(uname) in
    Darwin) command -v brew >/dev/null || die "Homebrew is needed (https://brew.sh)" ;;
    *) command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ;;
    esac
}

may_install() { [ "$(uname)" = Darwin ] || [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; }

as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

# install_packages PACKAGE...
install_packages() {
    local by_hand="apt-get install --no-install-recommends $*" log=build/install.log
    may_install || die "installing needs root: run this as root, install sudo, or have root do it: $by_hand"
    say "Installing: $*"
    if [ "$(uname)" = Darwin ]; then
        brew install "$@"
        return
    fi
    mkdir -p build
    # Nothing that is there may have to go for it.
    { as_root apt-get update -qq && as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends --no-remove "$@"; } >"$log" 2>&1 || {
        cat "$log" >&2
        die "the packages could not be installed: try it by hand: $by_hand"
    }
}

# need GROUP...: installs the packages of these groups that are missing.
need() {
    local missing
    if ! knows_packages; then
        # Where the names are known by other means, the build itself tells what it misses.
        missing=$(packages_of "$@")
        say "No apt here. These are the Debian names of what is needed: ${missing//$'\n'/ }"
        return
    fi
    missing=$(missing_packages "$@")
    # shellcheck disable=SC2086  # names without spaces
    [ -z "$missing" ] || install_packages $missing
}
