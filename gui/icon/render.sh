#!/usr/bin/env bash
# Renders every picture from its drawing: gui/icon/svg and gui/image/svg to the PNGs that the
# resources carry. Needs rsvg-convert (package librsvg2-bin); the PNGs are kept with the sources, so
# that a build doesn't. A picture takes the size that its drawing names: twice the size it is shown at.
set -euo pipefail

gui=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

command -v rsvg-convert >/dev/null || {
    echo "render.sh: rsvg-convert is missing (package librsvg2-bin)" >&2
    exit 1
}

render() { # DRAWING TARGET-FOLDER
    rsvg-convert --format=png --output="$2/$(basename "$1" .svg).png" "$1"
}

mkdir -p "$gui/icon/graphlogo"
for drawing in "$gui"/icon/svg/*.svg; do
    render "$drawing" "$gui/icon"
done
for drawing in "$gui"/icon/svg/graphlogo/*.svg; do
    render "$drawing" "$gui/icon/graphlogo"
done
for drawing in "$gui"/image/svg/*.svg; do
    render "$drawing" "$gui/image"
done
