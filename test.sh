#!/usr/bin/env bash
# Builds everything and runs the tests. Those that need a sound server or a screen start their own.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

usage() {
    echo "usage: ./test.sh           every test but the long ones"
    echo "       ./test.sh --long    every test: soaks, ten-minute recordings, thousands of starts too"
}

# A test that names no limit of its own hangs when it takes longer than this, in seconds.
selection=(--label-exclude long --timeout 300)
case "${1:-}" in
"") ;;
--long) selection=(--timeout 3600) ;;
-h | --help)
    usage
    exit 0
    ;;
*)
    echo "test.sh: unknown option \"$1\"" >&2
    usage >&2
    exit 2
    ;;
esac

"$top/packaging/install.sh"
"$top/packaging/build.sh" release
exec ctest --test-dir "$top/build/release" --output-on-failure --no-tests=error "${selection[@]}"
