#!/usr/bin/env bash
# Builds with coverage, runs the tests and prints the line coverage of src.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages build test coverage
cmake --preset coverage
cmake --build --preset coverage
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure
cd build/coverage  # sources are named as seen from where the compiler ran
gcovr --root ../.. --filter ../../src/ --object-directory . --print-summary --gcov-ignore-parse-errors .
