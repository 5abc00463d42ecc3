#!/usr/bin/env bash
# A JACK server on its dummy driver, at 48000 Hz: prints "server NAME" and becomes jackd.
#
# JACK keeps a register of eight servers. One that was killed keeps its place, and with eight of them no server
# starts any more, until one comes under the name of a dead one: it takes over the place. So the names here are
# few and used again, and where the register is full the name of any dead server will do. Nothing is removed
# from the register, and no living server is touched.
# usage: jackserver.sh PREFIX PERIOD -R|-r     PERIOD in frames; -R asks for real-time scheduling, -r doesn't
set -euo pipefail

[ $# -eq 3 ] || {
    echo "usage: jackserver.sh PREFIX PERIOD -R|-r" >&2
    exit 2
}
prefix=$1 period=$2 realtime=$3

places=8
register=/dev/shm/jack-shm-registry
registered() { # USER: the entries of a user, a regular expression, as "offset:jack-user:name:"
    [ ! -r "$register" ] || grep -aobE "jack-$1:[^:[:cntrl:]]+:" "$register" || true
}
# The process's number stands before the name. JACK takes an ended process for a living server until somebody
# has asked for its end.
gone() { # OFFSET
    local pid
    pid=$(od -An -t d4 -j $(($1 - 4)) -N 4 "$register" | tr -d '[:space:]')
    [ ! -e "/proc/$pid" ]
}

own=() others=() living=" "
while IFS=: read -r offset _ name _; do
    if ! gone "$offset"; then living+="$name "; elif [[ $name == "$prefix"-[0-9] ]]; then own+=("$name"); else others+=("$name"); fi
done < <(registered "$(id -u)")
taken=$(registered '[0-9]+' | wc -l)
fresh=()
if [ "$taken" -lt $places ]; then
    for n in 1 2 3 4 5 6 7 8 9; do
        [[ $living == *" $prefix-$n "* ]] || fresh+=("$prefix-$n")
    done
fi

for name in "${own[@]}" "${fresh[@]}" "${others[@]}"; do
    # The lock goes over to jackd and lasts as long as it does: no two of us take the same name.
    exec 9>"${TMPDIR:-/tmp}/gramoscope-jack-$(id -u)-${name//\//_}.lock"
    flock -n 9 || continue
    echo "server $name"
    export JACK_NO_AUDIO_RESERVATION=1
    exec jackd "$realtime" -n "$name" -d dummy -r 48000 -p "$period"
done
echo "jackserver: eight servers run already" >&2
exit 1
