# shellcheck shell=bash
# Where a window opens: on the display that is there, otherwise on a virtual one, of which a picture stays.

# Waits until the window has come to rest: while a scan runs its indicator turns, so two pictures differ.
picture_of_rest() {
    local display=$1 program=$2 picture=$3 window last='' now same=0 tries
    for ((tries = 0; tries < 300; tries++)); do
        kill -0 "$program" 2>/dev/null || die "the program ended before its window was at rest"
        window=$(DISPLAY=$display xwininfo -root -tree 2>/dev/null |
            sed -n 's/^ *\(0x[0-9a-f]*\) "Zentrill - Environment Cleaner".*/\1/p' | head -n 1)
        if [ -n "$window" ] && DISPLAY=$display import -silent -window "$window" "$picture" 2>/dev/null; then
            now=$(identify -format '%#' "$picture" 2>/dev/null || true)
            if [ -n "$now" ] && [ "$now" = "$last" ]; then same=$((same + 1)); else same=0; fi
            [ "$same" -ge 3 ] && return
            last=$now
        fi
        sleep 0.2
    done
    die "the window did not come to rest within a minute"
}

need_virtual_display() {
    local missing=''
    if knows_packages; then missing=$(missing_packages display); fi
    if [ -n "$missing" ] && ! may_install; then
        die "there is no display for the window, and a virtual one needs packages that root has to install:" \
            "${missing//$'\n'/ }"
    fi
    need display
}

# on_virtual_display PICTURE COMMAND [ARGUMENT ...]
on_virtual_display() {
    local picture=$1 display
    shift
    need_virtual_display
    # Seen by the trap as well, which runs when this function is over.
    numbers='' program='' server=''
    numbers=$(mktemp)
    say "No display: opening the window on a virtual one"
    # One that resets itself when its last client leaves would refuse who comes meanwhile.
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$numbers" >/dev/null 2>&1 &
    server=$!
    # The processes are this function's own, by id; the server goes last.
    trap '[ -z "$program" ] || { kill "$program" 2>/dev/null; wait "$program"; } || true
        kill "$server" 2>/dev/null || true; wait; rm -f "$numbers"' EXIT
    until [ -s "$numbers" ]; do
        kill -0 "$server" 2>/dev/null ||
            die "there is no display for the window, and no virtual one can be had: Xvfb did not start"
        sleep 0.05
    done
    display=:$(cat "$numbers")
    env -u WAYLAND_DISPLAY DISPLAY="$display" QT_QPA_PLATFORM=xcb "$@" &
    program=$!
    picture_of_rest "$display" "$program" "$picture"
    say "The first scan is published. A picture of the window: $PWD/$picture"
}

has_display() { [ "$(uname)" = Darwin ] || [ -n "${WAYLAND_DISPLAY:-}${DISPLAY:-}" ]; }

# show PICTURE COMMAND [ARGUMENT ...]: opens the window of the command; the picture is for want of a display.
show() {
    local picture=$1
    shift
    if has_display; then exec "$@"; fi
    on_virtual_display "$picture" "$@"
}
