#!/usr/bin/env bash
# Every C++ source of ours stands as .clang-format has it; --fix puts it right.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

case "${1:-}" in
"") arguments=(--dry-run -Werror) ;;
--fix) arguments=(-i) ;;
*)
    echo "usage: packaging/check-format.sh [--fix]" >&2
    exit 2
    ;;
esac

mapfile -d '' -t files < <(git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp')
existing=()
for file in "${files[@]}"; do
    [ -f "$file" ] && existing+=("$file")
done
[ ${#existing[@]} -gt 0 ] || {
    echo "check-format: no source found" >&2
    exit 1
}
clang-format "${arguments[@]}" "${existing[@]}"
echo "check-format: ${#existing[@]} files"
