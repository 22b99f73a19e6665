#!/usr/bin/env bash
# install-for-account.sh BUNDLE: puts the program into the home folder's Applications and, where the desktop has menus
# made of such entries, an entry and its icon into the account's. What it puts there is what "Uninstall Zentrill" removes.
set -euo pipefail

bundle=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
target=$HOME/Applications/Zentrill.app

# As an entry spells a program: in quotes, with what is special in them escaped, once more as a text of the entry.
quoted() {
    # shellcheck disable=SC2016  # characters, not expansions
    printf '"%s"' "$(printf '%s' "$1" | sed -e 's/[\\"`$]/\\&/g' -e 's/\\/\\\\/g' -e 's/%/%%/g')"
}

# Only an earlier Zentrill makes room for this one, never something else of that name.
if { [ -e "$target" ] || [ -L "$target" ]; } && ! grep -qs com.user.Zentrill "$target/Contents/Info.plist"; then
    printf '%s is not Zentrill: move it away first\n' "$target" >&2
    exit 1
fi
mkdir -p "$HOME/Applications"
rm -rf "$target"
cp -R "$bundle" "$target"
printf '%s\n' "$target"

if [ "$(uname)" = Linux ]; then
    data=${XDG_DATA_HOME:-}
    [ "${data#/}" != "$data" ] || data=$HOME/.local/share
    entry=$data/applications/com.user.Zentrill.desktop
    theme=$data/icons/hicolor
    mkdir -p "$data/applications" "$theme/scalable/apps"
    command=$(quoted "$target/Contents/MacOS/Zentrill")
    while IFS= read -r line; do
        case $line in
        Exec=*) printf 'Exec=%s\n' "$command" ;;
        *) printf '%s\n' "$line" ;;
        esac
    done <"$here/com.user.Zentrill.desktop" >"$entry"
    cp "$target/Contents/Resources/zentrill.svg" "$theme/scalable/apps/com.user.Zentrill.svg"
    # Whoever keeps a list of the icons looks at the time of this folder.
    touch "$theme"
    printf '%s\n' "$entry"
fi
