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
usage() {
    echo "deckshare: $*" >&2
    exit 1
}
[[ $seconds =~ ^[1-9][0-9]{0,4}$ ]] || usage "usage: deckshare.sh [SECONDS [BIN]]"
for program in "$bin/gramoscope" "$bin/gramoscope-virtualdeck" "$bin/bench_flushcount.so"; do
    [ -s "$program" ] || usage "$program isn't built"
done

rig=deckshare
rig_finish() { # EXIT-CODE
    [ "$1" -eq 0 ] || tail -n 3 "$scratch"/*.log >&2 2>/dev/null || true
}
# shellcheck source=tools/rig/rig.sh
. "$top/tools/rig/rig.sh"
start_server
start_screen
manage_windows
start_deck --pattern chirp,baby --timecode generic_V2

# ---- the program ----
counts=$scratch/counts # how often the window was handed to the screen, and how many pixels of it
start_program '[processing]
displayFrequency=120
[display]
graphGrid=true
graphVinylPosition=true
graphShiniMode=1' FLUSH_COUNT="$counts" LD_PRELOAD="$(realpath "$bin/bench_flushcount.so")"
click "${record_button[@]}"
click "${decks_button[@]}"
press space
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
