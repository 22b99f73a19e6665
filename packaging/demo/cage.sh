# shellcheck shell=bash disable=SC2154  # variables that run.sh and these files share
# The walls of the playground: a root in which the samples stand where the program looks for the real things, the
# rest of the machine is read-only, and the folders that hold people's own files are missing.

cage_home=/home/sam

cage_works() { bwrap --unshare-user-try --unshare-pid --ro-bind / / --dev /dev --proc /proc true 2>/dev/null; }

require_cage() {
    command -v bwrap >/dev/null || die "bubblewrap is missing: install the package of that name"
    cage_works || die "bubblewrap cannot make a root of its own here: unprivileged user namespaces are switched off" \
        "(see kernel.unprivileged_userns_clone and kernel.apparmor_restrict_unprivileged_userns)"
}

# is_below PATH FOLDER
is_below() { case $1/ in "$2"/*) return 0 ;; esac; return 1; }

cage_machine() {
    local entry folder
    cage+=(--dir /home --dir /root --tmpfs /tmp --tmpfs /run --dev /dev --proc /proc)
    for entry in /*; do
        case $entry in
        /Applications | /boot | /dev | /home | /lost+found | /media | /mnt | /proc | /root | /run | /srv | /tmp) ;;
        *)
            if [ -L "$entry" ]; then
                cage+=(--symlink "$(readlink "$entry")" "$entry")
            else
                cage+=(--ro-bind "$entry" "$entry")
            fi
            ;;
        esac
    done
    # Tools that are installed here are not part of the samples.
    if [ -d /opt/homebrew ]; then cage+=(--tmpfs /opt/homebrew); fi
    # A home folder can lie anywhere.
    for folder in "${HOME:-}" "$(getent passwd "$(id -u)" | cut -d: -f6)"; do
        if [ "${folder#/}" != "$folder" ] && [ "$folder" != / ] && [ -d "$folder" ] && ! is_below /usr/local/bin "$folder"; then
            cage+=(--tmpfs "$folder")
        fi
    done
}

cage_samples() {
    cage+=(--bind "$playground/home" "$cage_home" --bind "$playground/applications" /Applications)
    if [ -d /usr/local/bin ]; then
        cage+=(--bind "$playground/bin" /usr/local/bin)
    else
        cage+=(--tmpfs /usr/local --bind "$playground/bin" /usr/local/bin)
    fi
    cage+=(--setenv HOME "$cage_home" --setenv USER sam --setenv LOGNAME sam --setenv RUNNING_TOOL "$running_tool")
    cage+=(--setenv PATH /usr/local/bin:/usr/bin:/bin --setenv DOCKER_CONTEXT "$docker_context")
    if [ -d "$playground/docker/socket" ]; then
        cage+=(--ro-bind "$playground/docker/socket" "$docker_socket_folder")
    fi
}

# The window needs its display and nothing else of the session.
cage_display() {
    local name socket authority=${XAUTHORITY:-${HOME:-}/.Xauthority}
    for name in DISPLAY LANG LC_ALL TERM TZ "${!QT_@}"; do
        if [ -n "${!name:-}" ]; then cage+=(--setenv "$name" "${!name}"); fi
    done
    cage+=(--perms 0700 --dir /run/session --setenv XDG_RUNTIME_DIR /run/session)
    if [ -n "${WAYLAND_DISPLAY:-}" ]; then
        socket=$WAYLAND_DISPLAY
        [ "${socket#/}" != "$socket" ] || socket=${XDG_RUNTIME_DIR:-}/$socket
        if [ -S "$socket" ]; then
            cage+=(--bind "$socket" /run/session/wayland-0 --setenv WAYLAND_DISPLAY wayland-0)
        fi
    fi
    if [ -d /tmp/.X11-unix ]; then cage+=(--ro-bind /tmp/.X11-unix /tmp/.X11-unix); fi
    if [ -f "$authority" ]; then
        cage+=(--ro-bind "$authority" /run/xauthority --setenv XAUTHORITY /run/xauthority)
    fi
    # A display of another machine is the one thing that the network is needed for.
    case ${DISPLAY:-} in '' | :* | unix:*) cage+=(--unshare-net) ;; esac
}

# run_in_cage COMMAND [ARGUMENT ...]: becomes the command.
run_in_cage() {
    local cage=(--unshare-user-try --unshare-pid --unshare-ipc --cap-drop ALL --new-session --die-with-parent --clearenv)
    cage_machine
    cage_samples
    cage_display
    cage+=(--remount-ro / --chdir "$cage_home")
    # Through a file, for whoever looks for running programs in the cage would find their names in bubblewrap's
    # own arguments.
    exec 9< <(printf '%s\0' "${cage[@]}")
    # shellcheck disable=SC2016  # for the shell in the cage
    exec bwrap --args 9 /bin/sh -c 'tool=$RUNNING_TOOL; unset RUNNING_TOOL; "$tool" & exec "$@"' sh "$@"
}
