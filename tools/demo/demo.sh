#!/usr/bin/env bash
# One recorded session with nothing attached: a sound server, a screen, the virtual deck and the program
# on a fresh data folder, worked by the buttons and keys that a user has. run.sh --demo builds what this
# needs and calls it.
# usage: demo.sh SECONDS [OUT]     SECONDS after the count-in; 0: until the window is closed
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
bin=$top/build/release/bin
[ $# -ge 1 ] || {
    echo "usage: tools/demo/demo.sh SECONDS [OUT]" >&2
    exit 2
}
seconds=$1 out=${2:-}

# The centre of the record button in the window: pixels from its left and from its lower edge.
record_left=30
record_up=30
# The centre of the choice of decks: pixels from the window's right and lower edge.
decks_right=417

timecode=generic_V2
pattern=chirp,baby  # what the hands do on deck A and on deck B
decks=2             # both are recorded, each to a .wav and a .grw
count_in=4          # s: five ticks at 84 bpm are 3.57 s
icons=1             # at the cuts of the crossfader: arrows
# What marks the areas of deck A's record, one key after the other: an area up to the needle, the rest of the
# turn, and both once more.
phrasing_keys=(e ctrl+shift+e e ctrl+shift+e)
screen=1920x1080x24 # of the screen that is started where there is none

say() { echo "demo: $*" >&2; }
die() { # MESSAGE [EXIT-CODE]
    say "$1"
    exit "${2:-1}"
}

screen_works() { [ -n "${DISPLAY:-}" ] && timeout 5 xdpyinfo >/dev/null 2>&1; }
[ "$seconds" -gt 0 ] || screen_works || die "--seconds 0 needs a display" 2

# ---- where the result goes; a name that is taken stays as it is ----
free_folder() { # the first free one of demo-out, demo-out-2, ...
    local n=2 name=$PWD/demo-out
    while ! mkdir "$name" 2>/dev/null; do
        [ -e "$name" ] || die "can't make the folder $name"
        name=$PWD/demo-out-$n n=$((n + 1))
    done
    echo "$name"
}
if [ -z "$out" ]; then
    out=$(free_folder)
else
    if [ -e "$out" ] && [ -n "$(ls -A "$out" 2>/dev/null || echo taken)" ]; then
        die "$out is there already and isn't an empty folder" 2
    fi
    mkdir -p "$out" || die "can't make the folder $out" 2
    out=$(cd "$out" && pwd)
fi

# ---- what is started here is ended here, by its id, last one first ----
scratch=$(mktemp -d "${TMPDIR:-/tmp}/gramoscope-demo.XXXXXX")
started=()

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
    if [ "$rc" -ne 0 ] && compgen -G "$scratch/*.log" >/dev/null && mkdir -p "$out/logs"; then
        cp "$scratch"/*.log "$out/logs/" && say "what the programs said: $out/logs"
    fi
    rmdir "$out" 2>/dev/null || true # if it is still empty
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
    "$@" </dev/null >"$scratch/$log.log" 2>&1 &
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

if server_runs; then
    say "using the JACK server that runs"
else
    export JACK_DEFAULT_SERVER=gramoscope-demo-$$
    for realtime in -R -r; do
        launch "jackd$realtime" jackd "$realtime" -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 64
        within 10 server_runs && break
        end_process "$pid"
    done
    server_runs || die "no JACK server could be started"
fi

# ---- the screen and its window manager ----
screen_named() { [ -s "$scratch/display" ]; }
managed() {
    timeout 5 xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

managed_or_ended() { managed || ! alive "$pid"; }

own_screen=0
if ! screen_works; then
    own_screen=1
    : >"$scratch/display"
    # shellcheck disable=SC2016 # $0 and $1 are the inner shell's
    launch xvfb sh -c 'exec Xvfb -displayfd 3 -screen 0 "$1" -nolisten tcp -noreset 3>"$0"' "$scratch/display" "$screen"
    within 15 screen_named || die "Xvfb doesn't start"
    DISPLAY=:$(tr -d '[:space:]' <"$scratch/display")
    export DISPLAY
    within 10 screen_works || die "Xvfb doesn't answer on $DISPLAY"
fi
if ! managed; then
    # Without a window manager no window can be maximised or asked to close.
    # A screen that resets when its last client leaves refuses the next one for a moment: try again.
    for attempt in 1 2 3; do
        launch "openbox-$attempt" openbox --sm-disable
        within 10 managed_or_ended && managed && break
        end_process "$pid"
        sleep 0.5
    done
    managed || die "openbox doesn't start"
fi

# ---- the deck ----
# A second deck would get another name, and the program would hear the first.
! timeout 5 jack_lsp 2>/dev/null | grep -q '^Virtual Deck' || die "a virtual deck plays at this JACK server already: end it first" 2

deck_there() { timeout 5 jack_lsp 2>/dev/null | grep -q '^Virtual Deck'; }

launch virtualdeck "$bin/gramoscope-virtualdeck" --pattern "$pattern" --timecode "$timecode"
deck=$pid
within 10 deck_there || die "the virtual deck doesn't show up at the JACK server"
alive "$deck" || die "the virtual deck ended at once"

# ---- the program, on a data folder that nobody has touched ----
home=$scratch/home
mkdir "$home"
cp "$bin/gramoscope" "$home/"
cp -R "$top/appdata" "$home/AppData"
printf '[display]\ngraphShiniMode=%s\n' "$icons" >"$home/AppData/Input/config.ini"
launch gramoscope env QT_QPA_PLATFORM=xcb "$home/gramoscope"
program=$pid

# The splash comes first and goes by itself: the main window is there for good once it is the only
# window of the program and has kept its size.
window="" size=""
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
width="" height=""
within 60 settled || die "the program's window doesn't show up, or is only ${width:-0} by ${height:-0}"

# ---- a session, recorded ----
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

within 15 focused || die "the program's window doesn't get the keyboard"
timeout 5 xdotool mousemove --window "$window" "$record_left" "$((height - record_up))" click 1 ||
    die "the record button can't be clicked"
sleep 0.5
timeout 5 xdotool mousemove --window "$window" "$((width - decks_right))" "$((height - record_up))" click 1 ||
    die "the choice of decks can't be clicked"
sleep 0.5
press space
counted_in=$(($(now) + 1000 * count_in))
say "a session runs"

if [ "$seconds" -eq 0 ]; then
    say "everything stays open until the window is closed"
    rc=0
    wait "$program" || rc=$?
    find "$home/AppData/Recording" -mindepth 1 -maxdepth 1 -type d -exec cp -R {} "$out/" \;
    [ "$rc" -eq 0 ] || die "the program ended with $rc"
    exit 0
fi

before=$((seconds > 3 ? seconds - 2 : seconds / 2))
pause_to() { # MS: a point of time
    while [ "$(now)" -lt "$1" ]; do
        alive "$program" || die "the program ended early"
        sleep 0.05
    done
}
# Spread over the first half of what is recorded: the record has moved on from key to key.
for i in "${!phrasing_keys[@]}"; do
    pause_to $((counted_in + (2 * i + 1) * before * 1000 / 16 + 130 * i))
    press "${phrasing_keys[i]}"
done
pause_to $((counted_in + 1000 * before))
if [ $own_screen -eq 1 ]; then shown=root; else shown=$window; fi # nobody's desktop but our own
timeout 30 import -window "$shown" "$out/screenshot.png" || die "no picture of the screen"
pause_to $((counted_in + 1000 * seconds))
press space

# ---- the files: there, and of a size that stays ----
listing=""
written() {
    local now
    now=$(find "$home/AppData/Recording" -type f \( -name '*.wav' -o -name '*.grw' \) -size +0 -printf '%p %s\n' | sort)
    if [[ $now == *.wav\ * && $now == *.grw\ * && $now == "$listing" ]]; then
        return 0
    fi
    listing=$now
    return 1
}
# Two readings a second apart, so that a file still growing isn't taken for whole.
settled_files() { sleep 0.8 && written; }
problems=()
within 30 settled_files || problems+=("no .wav and .grw came to the recording folder")

# ---- the end, as the window's own button ends it ----
gone() { ! alive "$program"; }
timeout 5 wmctrl -i -c "$(printf '0x%x' "$window")" || problems+=("the window can't be asked to close")
if within 20 gone; then
    rc=0
    wait "$program" || rc=$?
    [ "$rc" -eq 0 ] || problems+=("the program ended with $rc")
else
    problems+=("the program doesn't end when its window is closed")
fi

# ---- what came of it ----
number() { # FILE OFFSET BYTES: a little-endian integer, signed
    od -An -j "$2" -N "$3" -t "d$3" --endian=little "$1" | tr -d '[:space:]'
}
tenths() { # COUNT COUNT-A-SECOND: seconds with one decimal
    local t=$(($1 * 10 / $2))
    echo "$((t / 10)).$((t % 10))"
}

wav_line() { # FILE
    local file=$1 size rate lock frame
    size=$(stat -c %s "$file") rate=$(number "$file" 24 4)
    if [ "$size" -le 44 ] || [ "${rate:-0}" -le 0 ]; then
        problems+=("$(basename "$file") holds no sound")
        return
    fi
    lock="timecode not recognised"
    if ! timeout 120 "$bin/gramoscope-decode" --timecode "$timecode" "$file" "$scratch/again.grw" >"$scratch/decode.log" 2>&1; then
        problems+=("$(basename "$file") can't be decoded")
    elif frame=$(sed -n 's/^first valid code at frame \([0-9]*\)$/\1/p' "$scratch/decode.log") && [ -n "$frame" ]; then
        lock="timecode recognised after $(tenths "$frame" "$rate") s"
    fi
    echo "  $(basename "$file"): $(tenths $((size - 44)) $((4 * rate))) s; $lock"
}

grw_line() { # FILE
    local file=$1 size count
    size=$(stat -c %s "$file") count=$(number "$file" 4 4)
    if [ "$size" -lt 8 ] || [ "$size" -ne $((8 + 23 * count)) ]; then
        problems+=("$(basename "$file") has $size bytes, which doesn't fit its $count points")
    elif [ "$count" -le 0 ]; then
        problems+=("$(basename "$file") has no points")
    fi
    timeout 120 "$bin/gramoscope-draw" --shini arrows "$file" "$out/$(basename "${file%.grw}").png" >"$scratch/draw.log" 2>&1 ||
        problems+=("$(basename "$file") can't be drawn")
    [ -f "${file%.grw}.wav" ] || problems+=("$(basename "$file") has no .wav beside it")
    curves=$((curves + 1))
    echo "  $(basename "$file"): $count points, drawn in $(basename "${file%.grw}").png"
}

curves=0
for folder in "$home"/AppData/Recording/*/; do
    [ -d "$folder" ] || continue
    cp -R "${folder%/}" "$out/"
    echo "Recording $out/$(basename "$folder")"
    for file in "$folder"*.wav; do [ ! -f "$file" ] || wav_line "$file"; done
    for file in "$folder"*.grw; do [ ! -f "$file" ] || grw_line "$file"; done
    for file in "$folder"*; do
        case $file in
        *.wav | *.grw) ;;
        *) echo "  $(basename "$file")" ;;
        esac
    done
done
[ $curves -eq $decks ] || problems+=("$curves curves were written, not $decks")
if [ -s "$out/screenshot.png" ]; then
    echo "Picture $out/screenshot.png"
else
    problems+=("screenshot.png is missing")
fi

for problem in "${problems[@]}"; do
    say "$problem"
done
[ ${#problems[@]} -eq 0 ]
