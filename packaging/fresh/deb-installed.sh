#!/usr/bin/env bash
# deb-installed.sh DEB PICTURE: what becomes of a bare Debian on which the package is installed, opened from its menu
# entry and removed. Run as root, from a checkout, in a container that is thrown away.
set -euo pipefail

deb=$1 picture=$2
checkout=$PWD
# Where the person can read it.
scripts=/tmp/scripts
installing='apt-get install -y -qq --no-install-recommends'
export DEBIAN_FRONTEND=noninteractive

say() { printf 'deb: %s\n' "$*"; }

die() {
    say "$*" >&2
    exit 1
}

# Everything but what the system notes down about its packages, and what is of the moment.
listing() {
    find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /run -o -path /tmp -o -path /var/cache -o -path /var/log \
        -o -path /var/lib/apt -o -path /var/lib/dpkg -o -path "$checkout" \) -prune -o -printf '%y %m %u %g %p %l\n' | sort
}

# What the package's own files hold, in bytes.
size_of_package() {
    dpkg-query --listfiles zentrill | while read -r file; do
        if [ -f "$file" ] && [ ! -L "$file" ]; then stat --format=%s "$file"; fi
    done | awk '{ sum += $1 } END { print sum }'
}

packages() { dpkg-query --show | wc -l; }

# open_from_menu: the entry's own command, as the person, on a virtual display, until the first scan is published.
open_from_menu() {
    local entry=/usr/share/applications/com.user.Zentrill.desktop command
    command=$(sed -n 's/^Exec=//p' "$entry")
    [ -n "$command" ] || die "$entry has no command"
    su --login sam --command "
        set -eu
        cd '$scripts'
        say() { echo \"deb: \$*\"; }
        die() { say \"\$*\" >&2; exit 1; }
        . packaging/packages/need.sh
        . packaging/display.sh
        cd '$(dirname "$picture")'
        need_virtual_display() { :; }
        on_virtual_display '$(basename "$picture")' $command"
}

apt-get update -qq
# shellcheck disable=SC2046  # names without spaces
$installing $(cat packaging/packages/display.txt) >/dev/null
useradd --create-home --shell /bin/bash sam
mkdir -p "$scripts"
cp -r packaging "$scripts"
chmod -R a+rX "$scripts"
listing >/tmp/before

had=$(packages)
$installing "$deb" >/dev/null
say "installed: $(dpkg-query --show --showformat='${Package} ${Version}' zentrill), $(size_of_package) bytes, and" \
    "$(($(packages) - had - 1)) packages that it needs"
open_from_menu
say "opened from the menu"
# Not held by those that do without as well.
apt-get purge -y -qq --autoremove -o APT::AutoRemove::RecommendsImportant=false \
    -o APT::AutoRemove::SuggestsImportant=false zentrill >/dev/null
listing >/tmp/after
diff /tmp/before /tmp/after || die "this is what the package left behind or took along"
say "removed, and nothing is left"
