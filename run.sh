#!/usr/bin/env bash
# Builds Gramo Scope if need be and starts it; --demo shows it at work with no deck attached.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

usage() {
    cat <<'END'
usage: ./run.sh                                     start Gramo Scope
       ./run.sh --demo [--seconds N] [--out DIR]    one recorded session on a virtual deck

--demo        starts a sound server and a screen if there are none, plays a virtual deck into the
              program, records a session with the buttons and keys a user has, and leaves a picture
              of the window and the recording behind
--seconds N   length of the session after the count-in (default 20); 0 leaves everything open until
              the window is closed, and needs a display
--out DIR     where picture and recording go (default demo-out here, or the next free name);
              what lies there is never overwritten
--help        this text
END
}

fail() {
    echo "run.sh: $1" >&2
    usage >&2
    exit 2
}

demo=0 seconds=20 out="" options=0
while [ $# -gt 0 ]; do
    case "$1" in
    --demo) demo=1 ;;
    --seconds)
        [ $# -ge 2 ] || fail "--seconds needs a number"
        [[ $2 =~ ^[0-9]{1,5}$ ]] || fail "--seconds takes a whole number from 0 to 99999, not \"$2\""
        seconds=$((10#$2)) options=1
        shift
        ;;
    --out)
        [ -n "${2:-}" ] || fail "--out needs a folder"
        out=$2 options=1
        shift
        ;;
    -h | --help)
        usage
        exit 0
        ;;
    *) fail "unknown option \"$1\"" ;;
    esac
    shift
done
[ $demo -eq 1 ] || [ $options -eq 0 ] || fail "--seconds and --out belong to --demo"

"$top/packaging/install.sh"
targets=(gramoscope)
[ $demo -eq 0 ] || targets+=(gramoscope-virtualdeck gramoscope-decode gramoscope-draw)
"$top/packaging/build.sh" release "${targets[@]}"

if [ $demo -eq 1 ]; then
    exec "$top/tools/demo/demo.sh" "$seconds" "$out"
fi
exec "$top/build/release/bin/gramoscope"
