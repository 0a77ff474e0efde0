#!/usr/bin/env bash
# Installs what is needed, builds, makes an album of FOLDER (or of sample pictures that it draws), starts the site and prints its
# address: ./run.sh [--window] [FOLDER]. Ctrl+C ends it. With --window it is the desktop program that serves. All that it keeps
# lies in build/site.
set -euo pipefail
top=$(cd "$(dirname "$0")" && pwd)
program=pixmorad
if [ "${1-}" = --window ]; then
  program=pixmora
  shift
  if [ -z "${DISPLAY-}${WAYLAND_DISPLAY-}" ]; then
    echo "run.sh: there is no display for a window here; ./run.sh without --window serves the same site" >&2
    exit 1
  fi
fi
folder=$(realpath -m "${1:-$top/build/site/samples}")
if [ $# -gt 0 ] && [ ! -d "$folder" ]; then
  echo "run.sh: there is no folder $folder" >&2
  exit 1
fi

"$top/scripts/install-packages" build run
cd "$top"
cmake --preset release -DPIXMORA_TESTS=OFF >/dev/null
cmake --build --preset release --target "$program" pixmoractl

export PIXMORA_HOME=$top/build/site XDG_CONFIG_HOME=$top/build/site/config
mkdir -p "$PIXMORA_HOME"
if [ $# -eq 0 ] && [ ! -d "$folder" ]; then
  echo "Drawing sample pictures"
  scripts/draw-samples "$folder"
fi

ctl=build/release/bin/pixmoractl
# An album's name can't have these characters; the folder's can.
name=$(basename "$folder" | tr -d "\\\\/:*?\"'<>|")
if ! "$ctl" album list | cut -f 2 | grep -Fqx -- "$folder"; then
  "$ctl" album add "$name" "$folder" --description "Shared by run.sh"
fi
# What a site of today wants; what has been set on this one stays.
while read -r key value; do
  [ -n "$("$ctl" get Setup "$key")" ] && continue
  "$ctl" set Setup "$key" "$value"
  echo "pixmoractl set Setup $key $value"
done <<<"MoreTypes 1
BrowserCache 60
ConversionSpacing 20"
if [ "$program" = pixmora ]; then
  "$ctl" set Setup RunSetup 1 # the album is there, so there is no first run to be led through
  exec build/release/bin/pixmora start
fi
exec build/release/bin/pixmorad
