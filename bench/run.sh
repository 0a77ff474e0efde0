#!/usr/bin/env bash
# Installs the peers, builds, measures everything and writes docs/performance.md: bench/run.sh [FOLDER_OF_PHOTOGRAPHS]
# Without a folder it measures on pictures that it draws. Exit status 1 when a wanted figure was not met.
set -euo pipefail
photos=()
[ $# -eq 0 ] || photos=(--photos "$(realpath "$1")")
cd "$(dirname "$0")/.."

scripts/install-packages build run bench
cmake --preset bench >/dev/null
cmake --build --preset bench --target pixmorad pixmoractl bench_platform bench_site bench_store bare_walk
/usr/bin/python3 bench/whole/measure.py build/bench/bin docs/performance.md "${photos[@]}"
