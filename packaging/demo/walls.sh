# shellcheck shell=bash disable=SC2034,SC2154  # variables that run.sh and these files share
# The walls of the playground: a root of its own (cage.sh) where one can be had, otherwise a fence around the samples
# (fence.sh). ZENTRILL_CONFINEMENT forces one: namespaces for the root, landlock or user for the fence, none for none.

walls=''
walls_obstacle=''

choose_walls() {
    case ${ZENTRILL_CONFINEMENT:-} in
    '')
        if cage_can_be_had; then
            walls=cage
        elif fence_can_be_had; then
            walls=fence
        fi
        ;;
    namespaces) if cage_can_be_had; then walls=cage; fi ;;
    none) walls_obstacle='ZENTRILL_CONFINEMENT forbids every kind' ;;
    *)
        walls_obstacle="ZENTRILL_CONFINEMENT asks for $ZENTRILL_CONFINEMENT"
        if fence_can_be_had; then walls=fence; fi
        ;;
    esac
    [ -n "$walls" ]
}

rung_of_walls() { if [ "$walls" = cage ]; then echo namespaces; else echo "$fence_rung"; fi; }

# The walls' own names for the samples: where they are on the disk, and where they stand in the window.
place_samples() {
    sample_home=$playground/home
    if [ "$walls" = cage ]; then
        cage_places
    else
        fence_places
    fi
    mkdir -p "$sample_home" "$sample_applications" "$sample_tools"
}

# The window needs its display and nothing else of the session.
display_settings() {
    local name
    for name in DISPLAY LANG LC_ALL TERM TZ "${!QT_@}"; do
        if [ -n "${!name:-}" ]; then printf '%s=%s\0' "$name" "${!name}"; fi
    done
}

wayland_socket() {
    local socket=${WAYLAND_DISPLAY:-}
    [ -n "$socket" ] || return 0
    [ "${socket#/}" != "$socket" ] || socket=${XDG_RUNTIME_DIR:-}/$socket
    if [ -S "$socket" ]; then printf '%s' "$socket"; fi
}

x_authority() {
    local file=${XAUTHORITY:-${HOME:-}/.Xauthority}
    if [ -f "$file" ]; then printf '%s' "$file"; fi
}

# run_in_walls COMMAND [ARGUMENT ...]: becomes the command, with the running tool beside it.
run_in_walls() { "run_in_$walls" "$@"; }

# For /bin/sh in the walls.
# shellcheck disable=SC2016
beside_running_tool='tool=$RUNNING_TOOL; unset RUNNING_TOOL; BESIDE=$$ "$tool" & exec "$@"'
