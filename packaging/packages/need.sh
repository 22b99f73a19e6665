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
    may_install || die "installing needs root: run this as root, install sudo, or have root do it: $(by_hand "$@")"
    say "Installing: $*"
    if [ "$(uname)" = Darwin ]; then
        brew install "$@"
    else
        apt_install "$@" || not_installed "$@"
        package_lists_are_new=yes
    fi
}

by_hand() { printf 'apt-get install --no-install-recommends %s' "$*"; }

install_log=build/install.log
package_lists_are_new=''

# apt_install PACKAGE...: what it says goes into the log.
apt_install() {
    mkdir -p build
    # Nothing that is there may have to go for it.
    { { [ -n "$package_lists_are_new" ] || as_root apt-get update -qq; } &&
        as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends --no-remove "$@"; } >"$install_log" 2>&1
}

not_installed() {
    cat "$install_log" >&2
    die "the packages could not be installed: try it by hand: $(by_hand "$@")"
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

# The process that installs while the script goes on, and what it installs.
installer=''
being_installed=''

# need_in_turn "GROUP ..." "GROUP ...": installs the missing packages of the first groups now, and begins with those of
# the others, which are there when await_packages returns.
# shellcheck disable=SC2086  # names without spaces
need_in_turn() {
    if ! knows_packages || ! may_install || [ "$(uname)" = Darwin ]; then
        need $1 $2
        return
    fi
    need $1
    being_installed=$(missing_packages $2)
    if [ -z "$being_installed" ]; then return; fi
    say "Installing meanwhile:" $being_installed
    # A password is asked for while somebody looks.
    as_root true
    apt_install $being_installed </dev/null &
    installer=$!
    # However the script ends, it does not leave a package manager behind that is still at work.
    trap await_packages EXIT
}

await_packages() {
    local process=$installer
    [ -n "$process" ] || return 0
    installer=''
    if kill -0 "$process" 2>/dev/null; then say "Waiting for the packages"; fi
    # shellcheck disable=SC2086  # names without spaces
    wait "$process" || not_installed $being_installed
}
