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

timecode=generic_V2
pattern=chirp,baby  # what the hands do on deck A and on deck B
beats=16            # that the graph shows
decks=2             # both are recorded, each to a .wav and a .grw
count_in=3570       # ms: five ticks at 84 bpm
icons=1             # at the cuts of the crossfader: arrows
# What marks the areas of deck A's record, one key after the other: an area up to the needle, the rest of the
# turn, and both once more.
phrasing_keys=(e ctrl+shift+e e ctrl+shift+e)

rig=demo
result="" # the folder, as soon as it is ours
rig_finish() { # EXIT-CODE
    [ -n "$result" ] || return 0
    if [ "$1" -ne 0 ] && compgen -G "$scratch/*.log" >/dev/null && mkdir -p "$result/logs"; then
        cp "$scratch"/*.log "$result/logs/" && say "what the programs said: $result/logs"
    fi
    rmdir "$result" 2>/dev/null || true # if it is still empty
}
# shellcheck source=tools/rig/rig.sh
. "$top/tools/rig/rig.sh"
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
result=$out

# ---- sound server, screen, deck, program ----
if server_runs; then
    say "using the JACK server that runs"
else
    start_server
fi
own_screen=0
if ! screen_works; then
    own_screen=1
    start_screen
fi
managed || manage_windows
start_deck --pattern "$pattern" --timecode "$timecode"
start_program "[display]
graphShiniMode=$icons"

# ---- a session, recorded ----
click "${record_button[@]}"
click "${decks_button[@]}"
press space
counted_in=$(($(now) + count_in))
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

# What is heard between the keys that start and stop, give or take a twentieth; the keys themselves take a little.
on_time() { # FRAMES RATE
    local heard=$(($1 * 1000 / $2)) asked=$((seconds * 1000)) slack
    slack=$((asked / 20 > 250 ? asked / 20 : 250))
    [ $heard -ge $((asked - slack)) ] && [ $heard -le $((asked + slack)) ]
}

wav_line() { # FILE
    local file=$1 size rate lock frame frames
    size=$(stat -c %s "$file") rate=$(number "$file" 24 4)
    if [ "$size" -le 44 ] || [ "${rate:-0}" -le 0 ]; then
        problems+=("$(basename "$file") holds no sound")
        return
    fi
    frames=$(((size - 44) / 4))
    on_time $frames "$rate" ||
        problems+=("$(basename "$file") holds $(tenths $frames "$rate") s of sound, not $seconds")
    lock="timecode not recognised"
    if ! timeout 120 "$bin/gramoscope-decode" --timecode "$timecode" "$file" "$scratch/again.grw" >"$scratch/decode.log" 2>&1; then
        problems+=("$(basename "$file") can't be decoded")
    elif frame=$(sed -n 's/^first valid code at frame \([0-9]*\)$/\1/p' "$scratch/decode.log") && [ -n "$frame" ]; then
        lock="timecode recognised after $(tenths "$frame" "$rate") s"
    fi
    echo "  $(basename "$file"): $(tenths $frames "$rate") s; $lock"
}

# How far each curve's end is from the cursor in the picture, in hundredths of a beat; nothing where one of them
# isn't found. The cursor is the one long line of pure red in deck A's graph, in the upper half of the window, and
# in deck B's, in the lower one. A curve ends where its strip of sound does: its colour, over the ground, is a
# deck's own.
curve_ends() { # PICTURE
    # A fifth of the rows is enough and takes a second.
    mogrify -path "$scratch" -sample '100%x20%' -format txt "$1" || return
    awk -v beats=$beats '
        NR == 1 { split($0, size, /[:,]/); width = size[2]; height = size[3]; next }
        {
            split($1, at, /[,:]/)
            if (/#FF0000/) ++red[at[2] >= height / 2, at[1]]
            else if (/#1A7E1A/ && at[1] > end[0]) end[0] = at[1]
            else if (/#1A7E7E/ && at[1] > end[1]) end[1] = at[1]
        }
        END {
            for (deck = 0; deck < 2; ++deck) {
                cursor = ""
                for (x = 0; x < width; ++x) if (red[deck, x] > height / 5) cursor = x
                if (cursor != "" && end[deck]) printf "%s %d\n", substr("AB", deck + 1, 1), 100 * (end[deck] - cursor) * beats / (width - 45)
            }
        }' "$scratch/$(basename "${1%.png}").txt"
}
check_picture() {
    local deck off found=0
    while read -r deck off; do
        found=$((found + 1))
        if [ "$off" -lt -25 ] || [ "$off" -gt 25 ]; then
            problems+=("the curve of deck $deck ends $off hundredths of a beat from the cursor")
        fi
    done < <(curve_ends "$out/screenshot.png")
    [ $found -eq $decks ] || problems+=("of $((decks - found)) of $decks decks cursor or curve isn't in the picture")
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
    check_picture
else
    problems+=("screenshot.png is missing")
fi

for problem in "${problems[@]}"; do
    say "$problem"
done
[ ${#problems[@]} -eq 0 ]
