#!/usr/bin/env bash
# A playground: the program over a sample home, sample applications and sample Docker objects, behind walls that let
# it change nothing else.
set -euo pipefail

usage() {
    cat <<'USAGE'
Usage: run.sh [OPTION ...] ZENTRILL.APP [COMMAND [ARGUMENT ...]]

Opens the window of the application over samples, or runs COMMAND in the same surroundings. Ends with 77 where
nothing can hold the walls.

  --keep              leaves the samples behind
  --walls             only says by what means the walls would be held: namespaces, landlock or user
  --confine LAUNCHER  what holds the walls where no root of its own can be had
  --session FOLDER    a session's runtime folder with its bus, for who drives the window through the bus
USAGE
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=packaging/demo/sample-home.sh
. "$here/sample-home.sh"
# shellcheck source=packaging/demo/sample-docker.sh
. "$here/sample-docker.sh"
# shellcheck source=packaging/demo/walls.sh
. "$here/walls.sh"
# shellcheck source=packaging/demo/cage.sh
. "$here/cage.sh"
# shellcheck source=packaging/demo/fence.sh
. "$here/fence.sh"

say() { printf '%s\n' "$*" >&2; }

die() {
    say "demo: $*"
    exit 1
}

describe() {
    say "A playground: nothing that you remove in this window is real."
    "describe_$walls"
    say "  Hermes pretends to run, so that a refusal can be seen. This quits it: rm $sample_home/$running_tool_mark"
    if [ "$keep" = yes ]; then
        say "  The samples stay when the window closes. This removes them: rm -r $playground"
    else
        say "  All of this is removed when the window closes."
    fi
}

# The folder goes as soon as the last process that holds the pipe has ended, in whatever way it ended.
remove_at_the_end() {
    exec {alive}> >(
        trap '' HUP INT TERM
        cat >/dev/null
        remove_control_groups
        rm -rf "$playground"
    )
    remover=$!
}

program=''
# shellcheck disable=SC2317  # called by the trap
finish() {
    trap '' HUP INT TERM
    if [ -n "$program" ]; then
        kill -KILL "$program" 2>/dev/null || true
        wait "$program" 2>/dev/null || true
    fi
    stop_sample_engine
    if [ "$keep" = no ]; then
        exec {alive}>&-
        wait "$remover" || true
    fi
}

keep=no only_walls=no confine='' session=''
while [ $# -gt 0 ]; do
    case $1 in
    --keep) keep=yes ;;
    --walls) only_walls=yes ;;
    --confine) confine=$(realpath -e -- "${2:?}") && shift ;;
    --session) session=$(realpath -e -- "${2:?}") && shift ;;
    -h | --help) usage && exit ;;
    -*) usage >&2 && exit 2 ;;
    *) break ;;
    esac
    shift
done
[ $# -ge 1 ] || { usage >&2 && exit 2; }
application=$1
shift
[ -d "$application" ] || die "there is no application at $application"
[ "$(uname)" = Linux ] || die "the playground needs Linux"
choose_walls || {
    say "demo: nothing on this machine can hold the playground's walls ($walls_obstacle), so there is none here"
    exit 77
}
if [ "$only_walls" = yes ]; then rung_of_walls && exit; fi

playground=$(mktemp -d "${TMPDIR:-/tmp}/zentrill-demo.XXXXXX")
if [ "$keep" = no ]; then remove_at_the_end; fi
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

place_samples
make_sample_home "$sample_home" "$sample_applications" "$sample_tools"
mkdir -p "$sample_home/Applications"
cp -R "$application" "$sample_home/Applications/Zentrill.app"
make_sample_docker
describe
if [ $# -eq 0 ]; then set -- "$home_in_window/Applications/Zentrill.app/Contents/MacOS/Zentrill"; fi
# In the background, because a signal to this script is only handled while it waits by itself.
run_in_walls "$@" <&0 &
program=$!
status=0
wait "$program" || status=$?
program=''
exit "$status"
