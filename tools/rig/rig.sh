#!/usr/bin/env bash
# Sourced by the scripts that play a session with nothing attached: a sound server, a screen, the virtual deck and
# the program's window, and the end of all of them. The caller says `rig=NAME bin=FOLDER` before and defines
# rig_finish, called with the exit code when everything has ended and before the scratch folder goes.

scratch=$(mktemp -d "${TMPDIR:-/tmp}/gramoscope-$rig.XXXXXX")
started=()
rig_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

say() { echo "$rig: $*" >&2; }
die() { # MESSAGE [EXIT-CODE]
    say "$1"
    exit "${2:-1}"
}

# ---- what is started here is ended here, by its id, last one first; if this is killed the kernel does it ----
alive() { kill -0 "$1" 2>/dev/null; }

end_process() { # PID: five seconds to end by itself, then the hard way
    local n
    alive "$1" || return 0
    kill "$1" 2>/dev/null || true
    for ((n = 0; n < 50; n++)); do
        alive "$1" || return 0
        sleep 0.1
    done
    kill -KILL "$1" 2>/dev/null || true
}

finish() {
    local rc=$? i
    trap '' INT TERM HUP
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        end_process "${started[i]}"
    done
    rig_finish "$rc"
    rm -rf "$scratch"
    exit "$rc"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

launch() { # LOG COMMAND...: in the background; leaves its id in $pid
    local log=$1
    shift
    setpriv --pdeathsig KILL "$@" </dev/null >"$scratch/$log.log" 2>&1 &
    pid=$!
    started+=("$pid")
}

now() { echo $((${EPOCHREALTIME/[.,]/} / 1000)); } # ms

within() { # SECONDS COMMAND...: true as soon as the command is, false at the deadline
    local until=$(($(now) + 1000 * $1))
    shift
    until "$@"; do
        [ "$(now)" -lt "$until" ] || return 1
        sleep 0.2
    done
}

# ---- the sound server ----
server_runs() { [ "$(timeout 5 jack_wait -c 2>/dev/null || true)" = running ]; }
server_runs_or_ended() { server_runs || ! alive "$pid"; }

# Periods of 1024 frames, which the library below the program cuts into the program's 64: a dummy server at 64
# loses time whenever the machine stalls for a millisecond.
start_server() {
    local realtime
    for realtime in -R -r; do
        launch "jackd$realtime" "$rig_folder/jackserver.sh" "gramoscope-$rig" 1024 "$realtime"
        within 10 test -s "$scratch/jackd$realtime.log" || true
        JACK_DEFAULT_SERVER=$(sed -n '1s/^server //p' "$scratch/jackd$realtime.log")
        export JACK_DEFAULT_SERVER
        [ -n "$JACK_DEFAULT_SERVER" ] && within 10 server_runs_or_ended && alive "$pid" && return
        end_process "$pid"
    done
    die "no JACK server could be started"
}

# ---- the screen and its window manager ----
screen_works() { [ -n "${DISPLAY:-}" ] && timeout 5 xdpyinfo >/dev/null 2>&1; }
managed() { timeout 5 xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
managed_or_ended() { managed || ! alive "$pid"; }

start_screen() {
    : >"$scratch/display"
    # shellcheck disable=SC2016 # $0 is the inner shell's
    launch xvfb sh -c 'exec Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp -noreset 3>"$0"' "$scratch/display"
    within 15 test -s "$scratch/display" || die "Xvfb doesn't start"
    DISPLAY=:$(tr -d '[:space:]' <"$scratch/display")
    export DISPLAY
    within 10 screen_works || die "Xvfb doesn't answer on $DISPLAY"
}

# Without a window manager no window can be maximised or asked to close.
manage_windows() {
    local attempt
    # A screen that resets when its last client leaves refuses the next one for a moment: try again.
    for attempt in 1 2 3; do
        launch "openbox-$attempt" openbox --sm-disable
        within 10 managed_or_ended && managed && return
        end_process "$pid"
        sleep 0.5
    done
    die "openbox doesn't start"
}

# ---- the deck ----
deck_there() { timeout 5 jack_lsp 2>/dev/null | grep -q '^Virtual Deck'; }

start_deck() { # OPTIONS of gramoscope-virtualdeck...
    # A second deck would get another name, and the program would hear the first.
    ! deck_there || die "a virtual deck plays at this JACK server already: end it first" 2
    launch virtualdeck "$bin/gramoscope-virtualdeck" "$@"
    within 10 deck_there || die "the virtual deck doesn't show up at the JACK server"
    alive "$pid" || die "the virtual deck ended at once"
}

# ---- the program, on a data folder that nobody has touched ----
start_program() { # CONFIG NAME=VALUE...: the settings it starts with, and its environment
    home=$scratch/home
    mkdir "$home"
    cp "$bin/gramoscope" "$home/"
    cp -R "$rig_folder/../../appdata" "$home/AppData"
    printf '%s\n' "$1" >"$home/AppData/Input/config.ini"
    shift
    launch gramoscope env QT_QPA_PLATFORM=xcb "$@" "$home/gramoscope"
    program=$pid
    window="" size="" width=0 height=0
    within 60 settled || die "the program's window doesn't show up, or is only ${width:-0} by ${height:-0}"
}

# The splash comes first and goes by itself: the main window is there for good once it is the only
# window of the program and has kept its size.
settled() {
    local ids shape
    alive "$program" || die "the program ended at its start"
    mapfile -t ids < <(timeout 5 xdotool search --onlyvisible --pid "$program" 2>/dev/null || true)
    [ ${#ids[@]} -eq 1 ] || return 1
    shape=$(timeout 5 xdotool getwindowgeometry --shell "${ids[0]}" 2>/dev/null | grep -E '^(WIDTH|HEIGHT)=') || return 1
    shape="${ids[0]} "${shape//[!0-9]/ }
    # Until the main window comes the splash is the only one.
    read -r _ width height <<<"$shape"
    [ "$width" -ge 1000 ] || return 1
    [ "$shape" != "$size" ] || {
        window=${ids[0]}
        return 0
    }
    size=$shape
    return 1
}

# On a screen that others use the keyboard may be elsewhere: no key is pressed before it is ours.
focused() {
    [ "$(timeout 5 xdotool getwindowfocus 2>/dev/null || true)" = "$window" ] && return 0
    timeout 5 xdotool windowactivate "$window" 2>/dev/null || true
    return 1
}
press() { # KEY
    within 15 focused || die "the program's window doesn't get the keyboard"
    timeout 5 xdotool key "$1" || die "the keyboard doesn't work"
}

# Centres of buttons: pixels from the window's left edge, or its right one with a minus, and from its lower edge.
record_button=(30 30)
decks_button=(-417 30)
click() { # X Y
    local x=$1
    [ "$x" -ge 0 ] || x=$((width + x))
    within 15 focused || die "the program's window doesn't get the keyboard"
    timeout 5 xdotool mousemove --window "$window" "$x" "$((height - $2))" click 1 || die "the mouse doesn't work"
    sleep 0.5
}
