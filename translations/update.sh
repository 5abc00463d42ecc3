#!/usr/bin/env bash
# Brings the texts of the sources into the translations: new ones come as "unfinished", texts that are
# gone leave. Names each language's count of texts that still want a translation.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

tool() { # NAME: Qt 6's own, wherever the system keeps it
    local place
    for place in "/usr/lib/qt6/bin/$1" "$(command -v "$1" || true)"; do
        if [ -x "$place" ]; then
            echo "$place"
            return
        fi
    done
    echo "update.sh: $1 is missing (package qt6-l10n-tools)" >&2
    return 1
}

lupdate=$(tool lupdate)
"$lupdate" -silent -locations none -no-obsolete core gui main.cpp -ts translations/Gramoworks_*.ts
for file in translations/Gramoworks_*.ts; do
    echo "$file: $(grep -c 'type="unfinished"' "$file" || true) to translate"
done
