#!/usr/bin/env bash
# Configures a preset if it isn't yet, and builds it: all of it, or the named targets. Quiet when there
# is nothing to do; otherwise it shows the tools' own words, on stderr.
# usage: build.sh PRESET [TARGET...]
set -euo pipefail

[ $# -ge 1 ] || {
    echo "usage: packaging/build.sh PRESET [TARGET...]" >&2
    exit 2
}
preset=$1
shift
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# What one clone has compiled another one needn't: no path of this clone counts.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR="${CCACHE_NOHASHDIR:-1}"
# What ccache asks of those who precompile headers.
export CCACHE_SLOPPINESS="${CCACHE_SLOPPINESS:-pch_defines,time_macros,include_file_mtime,include_file_ctime}"

[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >&2
cmake --build "build/$preset" -j "${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}" ${1:+--target "$@"} >&2
