#!/usr/bin/env bash
# Makes the delivered style sheets, appdata/Css, from theme.css: one theme in four colours. The ground
# and the letters are the same in all of them, since the graph's own colours are chosen for that ground.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
css=$here/../../appdata/Css
mkdir -p "$css"

theme() { # NAME RADIUS ACCENT DIM DARK: the colours as "r, g, b"; DIM for hints, DARK behind a light icon
    sed -e "s/@name@/$1/g" -e "s/@radius@/$2/g" -e "s/@accent@/rgb($3)/g" -e "s/@accent-dim@/rgb($4)/g" \
        -e "s/@accent-dark@/rgb($5)/g" -e '1s/ Made by .*/ *\//' "$here/theme.css" >"$css/$1.css"
}

theme Gramoscope 6 "0, 220, 0" "24, 110, 24" "26, 64, 28"
theme RedGuillotine 0 "208, 0, 24" "128, 20, 32" "78, 22, 28"
theme ScreamBeat 10 "0, 220, 220" "16, 106, 110" "20, 62, 66"
theme FightBeat 3 "255, 150, 0" "136, 84, 16" "78, 54, 22"
