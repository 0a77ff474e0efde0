#!/usr/bin/env bash
# Installs what is needed, builds, makes an album of FOLDER (or of sample pictures that it draws), starts the site and prints its
# address: ./run.sh [FOLDER]. Ctrl+C ends it. All that it keeps lies in build/site.
set -euo pipefail
top=$(cd "$(dirname "$0")" && pwd)
folder=$(realpath -m "${1:-$top/build/site/samples}")
if [ $# -gt 0 ] && [ ! -d "$folder" ]; then
  echo "run.sh: there is no folder $folder" >&2
  exit 1
fi

"$top/scripts/install-packages" build run
cd "$top"
cmake --preset release -DPIXMORA_TESTS=OFF >/dev/null
cmake --build --preset release --target pixmorad pixmoractl

export PIXMORA_HOME=$top/build/site XDG_CONFIG_HOME=$top/build/site/config
mkdir -p "$PIXMORA_HOME"
if [ $# -eq 0 ] && [ ! -d "$folder" ]; then
  echo "Drawing sample pictures"
  scripts/draw-samples "$folder"
fi

# An album's name can't have these characters; the folder's can.
name=$(basename "$folder" | tr -d "\\\\/:*?\"'<>|")
if ! build/release/bin/pixmoractl album list | cut -f 2 | grep -Fqx -- "$folder"; then
  build/release/bin/pixmoractl album add "$name" "$folder" --description "Shared by run.sh"
fi
exec build/release/bin/pixmorad
