# shellcheck shell=bash disable=SC2034,SC2154  # variables that run.sh and these files share
# The walls of the playground where no root of its own can be had: a launcher that lets the program change nothing but
# the samples. Everything else of the machine stays in its place, so the home folder is the samples' own, and no tool
# in there may find its way to what runs outside: the walls hold files, not sockets.

fence_rung=''

fence_can_be_had() {
    [ -n "$confine" ] && fence_rung=$("$confine" --rung 2>/dev/null) && [ "$fence_rung" != none ]
}

fence_places() {
    sample_applications=$sample_home/Applications
    sample_tools=$sample_home/.local/bin
    home_in_window=$sample_home
}

# Tools that the program prefers to the samples, because of where they are.
tool_before_samples() {
    local folder
    for folder in /usr/local/bin /opt/homebrew/bin; do
        if [ -x "$folder/$1" ]; then echo "$folder/$1" && return; fi
    done
}

describe_fence() {
    local by tool
    case $fence_rung in
    landlock) by="the kernel's Landlock" ;;
    user) by='a user id of its own' ;;
    *) by='a read-only machine' ;;
    esac
    say "  sample home          $sample_home (in the window as well)"
    say "  sample applications  $sample_applications"
    say "  sample tools         $sample_tools"
    say "  Docker               $docker_description"
    say "  No root of its own can be had here: $walls_obstacle."
    say "  Instead $by lets the window change the sample home and nothing else. What differs:"
    say "    The rest of the machine can be read in there, your home folder too, which the program does not look into."
    say "    It looks into /Applications, /usr/local/bin and /opt/homebrew as they are, and cannot remove from them."
    say "    The sample applications are not where it looks: they count as gone, with their data left."
    say "    A tool of the catalog that runs on this machine runs for the window, too."
    tool=$(tool_before_samples ollama)
    if [ -n "$tool" ]; then say "    $tool comes before the sample and reaches no models."; fi
}

# No variable of the person's own gets in: one could name an engine, a server or a folder outside. With these two set
# not even a real tool finds one, whether it comes before the stand-in or in its place.
fence_settings() {
    printf '%s\0' HOME="$sample_home" USER=sam LOGNAME=sam PATH="$sample_tools:/usr/bin:/bin" \
        DOCKER_HOST="$no_engine" OLLAMA_HOST=http://127.0.0.1:1 TMPDIR="$playground/scratch" \
        RUNNING_TOOL="$sample_applications/${running_tool#/Applications/}"
    # The launcher's own; the scratch folder that it makes goes with the playground.
    if [ -n "${ZENTRILL_CONFINEMENT:-}" ]; then printf '%s\0' ZENTRILL_CONFINEMENT="$ZENTRILL_CONFINEMENT"; fi
    display_settings
    local socket authority
    if [ -n "$session" ]; then
        printf '%s\0' XDG_RUNTIME_DIR="$session" DBUS_SESSION_BUS_ADDRESS="unix:path=$session/bus"
    else
        printf '%s\0' XDG_RUNTIME_DIR="$playground/session"
    fi
    socket=$(wayland_socket)
    if [ -n "$socket" ]; then printf '%s\0' WAYLAND_DISPLAY="$socket"; fi
    authority=$(x_authority)
    if [ -n "$authority" ]; then printf '%s\0' XAUTHORITY="$authority"; fi
}

# Gives the samples to a user who owns nothing else and whom nobody else is at the moment; says his number.
own_user() {
    local user
    chmod 0711 "$playground"
    for user in $((1000000000 + $$)) $((61184 + $$ % 4000)); do
        if ! getent passwd "$user" >/dev/null && chown -R "$user:$user" "$playground"/*/ 2>/dev/null; then
            echo "$user" && return
        fi
    done
    return 1
}

# run_in_fence COMMAND [ARGUMENT ...]: becomes the command.
run_in_fence() {
    local settings=() user
    mkdir -m 0700 "$playground/session" "$playground/scratch"
    mapfile -d '' -t settings < <(fence_settings)
    cd "$sample_home" || exit
    set -- setpriv --pdeathsig KILL /bin/sh -c "$beside_running_tool" sh "$@"
    if [ "$fence_rung" = user ]; then
        user=$(own_user) || die "no user id of its own can be had for the samples"
        set -- setpriv --reuid "$user" --regid "$user" --clear-groups --no-new-privs "$@"
    else
        set -- "$confine" --write "$sample_home" --write "$playground/session" -- "$@"
    fi
    exec env -i "${settings[@]}" "$@"
}
