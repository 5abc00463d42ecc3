#!/usr/bin/env bash
# Installs what packaging/debian-packages.txt names and this machine lacks.
# Says nothing when nothing is missing. On a system without Debian's packages it installs nothing: it
# names what it can't find and ends with 1.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mapfile -t packages < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$here/debian-packages.txt")

say() { echo "install: $*" >&2; }

# ---- another system: look for the things themselves ----
elsewhere() {
    local missing=() name
    for name in c++ cmake ninja ccache pkg-config lrelease jackd jack_wait jack_lsp Xvfb openbox xdotool \
        wmctrl xprop import clang clang-format; do
        # lrelease hides in a folder of Qt's own on some systems
        command -v "$name" >/dev/null || [ -x "/usr/lib/qt6/bin/$name" ] || missing+=("$name")
    done
    for name in Qt6Core Qt6Gui Qt6Xml Qt6Widgets Qt6Test portaudio-2.0 jack rtmidi quazip1-qt6 zlib; do
        pkg-config --exists "$name" 2>/dev/null || missing+=("$name")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        exit 0
    fi
    say "this system has no apt-get. Not found here: ${missing[*]}"
    say "install what corresponds to these Debian packages, then try again:"
    printf '    %s\n' "${packages[@]}" >&2
    exit 1
}
if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    elsewhere
fi

# ---- Debian and its kin ----
declare -A installed=()
while read -r name status; do
    [ "$status" = installed ] && installed[$name]=1
done < <(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null || true)

missing=()
for name in "${packages[@]}"; do
    [ -n "${installed[$name]:-}" ] || missing+=("$name")
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

say "installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        say "root is needed for that, and there is no sudo; as root: apt-get install ${missing[*]}"
        exit 1
    }
    as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() { # ARGUMENTS...: quiet, but for a failure
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y "$@" </dev/null >"$log" 2>&1
}

# The package lists may be missing or too old to find the files that they name.
known() {
    local name
    for name in "${missing[@]}"; do
        apt-cache policy "$name" 2>/dev/null | grep -q '^ *Candidate: [^(]' || return 1
    done
}
known || apt update || say "apt-get update failed; trying all the same"
install=(install --no-install-recommends "${missing[@]}")
if ! apt "${install[@]}"; then
    apt update || true
    apt "${install[@]}" || {
        tail -n 20 "$log" >&2
        say "could not install ${missing[*]}"
        exit 1
    }
fi
