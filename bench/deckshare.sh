#!/usr/bin/env bash
# What the window costs while a session runs: processor seconds of the GUI thread, and of every other thread
# of the program, over wall seconds. The graphs are drawn by threads of their own, for which the GUI thread
# waits: their share is told beside its own. Two decks in view and recorded, 120 repaints a second, with grid,
# disc, icons at the cuts and a few areas; sound server, screen and virtual deck of its own, a fresh data
# folder.
# The aim is a share of at most 15 % for the GUI thread. The exit code tells whether something was measured.
# usage: deckshare.sh [SECONDS [BIN]]     SECONDS: 60; BIN: build/release/bin
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60} bin=${2:-$top/build/release/bin}
aim=15 # %
die() {
    echo "deckshare: $*" >&2
    exit 1
}
[[ $seconds =~ ^[1-9][0-9]{0,4}$ ]] || die "usage: deckshare.sh [SECONDS [BIN]]"
for program in "$bin/gramoscope" "$bin/gramoscope-virtualdeck" "$bin/bench_flushcount.so"; do
    [ -s "$program" ] || die "$program isn't built"
done

scratch=$(mktemp -d "${TMPDIR:-/tmp}/gramoscope-deckshare.XXXXXX")
started=()
finish() { # ends what was started here, by its id, last one first
    local rc=$? i n
    trap '' INT TERM HUP
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        kill "${started[i]}" 2>/dev/null || continue
        for ((n = 0; n < 50; n++)); do
            kill -0 "${started[i]}" 2>/dev/null || continue 2
            sleep 0.1
        done
        kill -KILL "${started[i]}" 2>/dev/null || true
    done
    [ "$rc" -eq 0 ] || tail -n 3 "$scratch"/*.log >&2 2>/dev/null || true
    rm -rf "$scratch"
    exit "$rc"
}
trap finish EXIT
trap 'exit 130' INT TERM HUP

launch() { # LOG COMMAND...: in the background; leaves its id in $pid
    "${@:2}" </dev/null >"$scratch/$1.log" 2>&1 &
    pid=$!
    started+=("$pid")
}
within() { # SECONDS COMMAND...: true as soon as the command is, false at the deadline
    local until=$((SECONDS + $1))
    until "${@:2}"; do
        [ $SECONDS -lt $until ] || return 1
        sleep 0.2
    done
}

# ---- sound server, screen, deck ----
server_runs() { [ "$(timeout 5 jack_wait -c 2>/dev/null || true)" = running ]; }
screen_named() { [ -s "$scratch/display" ]; }
managed() { timeout 5 xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
deck_there() { timeout 5 jack_lsp 2>/dev/null | grep -q '^Virtual Deck'; }

export JACK_DEFAULT_SERVER=gramoscope-deckshare-$$
launch jackd jackd -R -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 64
within 10 server_runs || die "no JACK server could be started"
: >"$scratch/display"
# shellcheck disable=SC2016 # $0 is the inner shell's
launch xvfb sh -c 'exec Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp -noreset 3>"$0"' "$scratch/display"
within 15 screen_named || die "Xvfb doesn't start"
DISPLAY=:$(tr -d '[:space:]' <"$scratch/display")
export DISPLAY
launch openbox openbox --sm-disable
within 10 managed || die "openbox doesn't start"
launch virtualdeck "$bin/gramoscope-virtualdeck" --pattern chirp,baby --timecode generic_V2
within 10 deck_there || die "the virtual deck doesn't show up"

# ---- the program ----
home=$scratch/home
mkdir "$home"
cp "$bin/gramoscope" "$home/"
cp -R "$top/appdata" "$home/AppData"
cat >"$home/AppData/Input/config.ini" <<'END'
[processing]
displayFrequency=120
[display]
graphGrid=true
graphVinylPosition=true
graphShiniMode=1
END
counts=$scratch/counts # how often the window was handed to the screen, and how many pixels of it
launch gramoscope env QT_QPA_PLATFORM=xcb FLUSH_COUNT="$counts" LD_PRELOAD="$(realpath "$bin/bench_flushcount.so")" \
    "$home/gramoscope"
program=$pid

window="" width="" height="" shape="" before=""
settled() { # the splash is gone and the main window has kept its size
    kill -0 "$program" 2>/dev/null || die "the program ended at its start"
    mapfile -t windows < <(timeout 5 xdotool search --onlyvisible --pid "$program" 2>/dev/null || true)
    [ ${#windows[@]} -eq 1 ] || return 1
    window=${windows[0]} before=$shape
    shape=$(timeout 5 xdotool getwindowgeometry --shell "$window" 2>/dev/null) || return 1
    width=$(sed -n 's/^WIDTH=//p' <<<"$shape") height=$(sed -n 's/^HEIGHT=//p' <<<"$shape")
    [ "$width" -ge 1000 ] && [ "$shape" = "$before" ]
}
within 60 settled || die "the program's window doesn't show up"
click() { # pixels from the window's right (left if negative) and lower edge
    local x=$(($1 < 0 ? -$1 : width - $1))
    timeout 5 xdotool mousemove --window "$window" "$x" "$((height - $2))" click 1
    sleep 0.5
}
timeout 5 xdotool windowactivate --sync "$window"
click -30 30 # record
click 417 30 # both decks
timeout 5 xdotool key space
sleep 6 # the count-in, and a little
for ((i = 0; i < 4; i++)); do # areas, where the records are by then
    timeout 5 xdotool key e key i
    sleep 0.7
done

# ---- the measuring ----
ticks=$(getconf CLK_TCK)
counted() { od -An -t u8 "$counts" | tr -s ' '; }
sample() { # a line a thread: id, ticks used, name
    local task text
    for task in "/proc/$program/task/"*; do
        text=$(cat "$task/stat" 2>/dev/null) || continue
        # The name stands in brackets and may have any character in it.
        read -r -a fields <<<"${text##*) }"
        echo "${task##*/} $((fields[11] + fields[12])) $(cat "$task/comm")"
    done
}
echo "load at the start: $(cut -d ' ' -f 1-3 /proc/loadavg)"
begin=$EPOCHREALTIME flushes=$(counted)
sample >"$scratch/first"
for ((i = 0; i < seconds; i++)); do
    sleep 1
    kill -0 "$program" 2>/dev/null || die "the program ended early"
done
sample >"$scratch/last"
end=$EPOCHREALTIME flushes+=" $(counted)"
echo "load at the end:   $(cut -d ' ' -f 1-3 /proc/loadavg)"
[ -z "${DECKSHARE_PICTURE:-}" ] || timeout 30 import -window root "$DECKSHARE_PICTURE"

awk -v wall="$(((${end/[.,]/} - ${begin/[.,]/}) / 1000))" -v hz="$ticks" -v gui="$program" -v aim="$aim" \
    -v flushes="$flushes" '
    NR == FNR { used[$1] = $2; next }
    {
        name = $0; sub(/^[^ ]+ [^ ]+ /, "", name)
        s = ($2 - used[$1]) / hz
        if ($1 == gui) own = s
        else rest += s
        if (name ~ /^drawing /) drawing += s
        if (s > 0) printf "%-20s %8s %8.2f s %7.2f %%\n", name ($1 == gui ? " (GUI)" : ""), $1, s, 100000 * s / wall
    }
    END {
        split(flushes, f, " ")
        n = f[3] - f[1]
        printf "%-29s %8.2f s %7.2f %%\n", "all but the GUI thread", rest, 100000 * rest / wall
        printf "%-29s %8.2f s %7.2f %%\n", "GUI and drawing threads", own + drawing, 100000 * (own + drawing) / wall
        printf "%.1f repaints a second, %.0f pixels each, %.0f us of the GUI thread each\n", \
            1000 * n / wall, n ? (f[4] - f[2]) / n : 0, n ? 1e6 * own / n : 0
        share = 100000 * own / wall
        printf "GUI thread over %.1f s: %.1f %% of a core; at most %g %%: %s\n", wall / 1000, share, aim, \
            (share > aim ? "missed" : 1000 * n / wall < 118 ? "not judged, too few repaints" : "met")
    }' "$scratch/first" "$scratch/last"
