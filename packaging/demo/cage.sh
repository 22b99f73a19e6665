# shellcheck shell=bash disable=SC2034,SC2154  # variables that run.sh and these files share
# The walls of the playground: a root in which the samples stand where the program looks for the real things, the
# rest of the machine is read-only, and the folders that hold people's own files are missing.

# How bubblewrap gets its namespaces: through one of users, or where that cannot be had by right.
cage_user=()

cage_works() { bwrap "${cage_user[@]}" --unshare-pid --ro-bind / / --dev /dev --proc /proc true; }

cage_can_be_had() {
    local message
    if ! command -v bwrap >/dev/null; then
        walls_obstacle='bubblewrap is missing'
        return 1
    fi
    cage_user=(--unshare-user-try)
    cage_works 2>/dev/null && return
    cage_user=()
    message=$(cage_works 2>&1) && return
    message=${message#bwrap: }
    walls_obstacle="bubblewrap says \"${message%%. See*}\""
    return 1
}

cage_places() {
    sample_applications=$playground/applications
    sample_tools=$playground/bin
    home_in_window=/home/sam
}

describe_cage() {
    say "  sample home          $sample_home (in the window: $home_in_window)"
    say "  sample applications  $sample_applications (in the window: /Applications)"
    say "  sample tools         $sample_tools (in the window: /usr/local/bin)"
    say "  Docker               $docker_description"
    say "  The rest of the machine is read-only in there, and your home folder is not there at all."
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
    cage+=(--bind "$sample_home" "$home_in_window" --bind "$sample_applications" /Applications)
    if [ ! -d /usr/local/bin ]; then cage+=(--tmpfs /usr/local); fi
    cage+=(--bind "$sample_tools" /usr/local/bin)
    cage+=(--setenv HOME "$home_in_window" --setenv USER sam --setenv LOGNAME sam --setenv RUNNING_TOOL "$running_tool")
    cage+=(--setenv PATH /usr/local/bin:/usr/bin:/bin --setenv DOCKER_CONTEXT "$docker_context")
    if [ -d "$playground/docker/socket" ]; then
        cage+=(--ro-bind "$playground/docker/socket" "$docker_socket_folder")
    fi
}

cage_display() {
    local setting socket authority
    while IFS= read -r -d '' setting; do
        cage+=(--setenv "${setting%%=*}" "${setting#*=}")
    done < <(display_settings)
    if [ -n "$session" ]; then
        cage+=(--bind "$session" "$session" --setenv XDG_RUNTIME_DIR "$session")
        cage+=(--setenv DBUS_SESSION_BUS_ADDRESS "unix:path=$session/bus")
    else
        cage+=(--perms 0700 --dir /run/session --setenv XDG_RUNTIME_DIR /run/session)
    fi
    socket=$(wayland_socket)
    if [ -n "$socket" ]; then
        cage+=(--bind "$socket" /run/wayland --setenv WAYLAND_DISPLAY /run/wayland)
    fi
    if [ -d /tmp/.X11-unix ]; then cage+=(--ro-bind /tmp/.X11-unix /tmp/.X11-unix); fi
    authority=$(x_authority)
    if [ -n "$authority" ]; then
        cage+=(--ro-bind "$authority" /run/xauthority --setenv XAUTHORITY /run/xauthority)
    fi
    # A display of another machine is the one thing that the network is needed for.
    case ${DISPLAY:-} in '' | :* | unix:*) cage+=(--unshare-net) ;; esac
}

# run_in_cage COMMAND [ARGUMENT ...]: becomes the command.
run_in_cage() {
    local cage=("${cage_user[@]}" --unshare-pid --unshare-ipc --cap-drop ALL --new-session --die-with-parent --clearenv)
    cage_machine
    cage_samples
    cage_display
    cage+=(--remount-ro / --chdir "$home_in_window")
    # Through a file, for whoever looks for running programs in the cage would find their names in bubblewrap's
    # own arguments.
    exec 9< <(printf '%s\0' "${cage[@]}")
    exec bwrap --args 9 /bin/sh -c "$beside_running_tool" sh "$@"
}
