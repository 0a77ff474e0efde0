#!/usr/bin/env bash
# Installs what is needed, builds, and runs all tests: ./test.sh [PRESET], by default release (see CMakePresets.json).
set -euo pipefail
cd "$(dirname "$0")"
preset=${1:-release}

scripts/install-packages build run test
cmake --preset "$preset" -DPIXMORA_TESTS=ON
cmake --build --preset "$preset"
# The tests, the browsers above all, wait more than they work.
ctest --test-dir "build/$preset" -j "$((3 * $(nproc)))" --output-on-failure
