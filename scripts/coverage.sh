#!/usr/bin/env bash
# Builds with coverage, runs the tests and prints the line coverage of src.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages build test coverage
cmake --preset coverage
cmake --build --preset coverage
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure
gcovr --root . --filter src/ --object-directory build/coverage --print-summary --gcov-ignore-parse-errors
