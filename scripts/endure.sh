#!/usr/bin/env bash
# What the system survives, measured: endure.sh runs every script of endurance and the fuzz targets, and keeps their rows in
# docs/endurance.md. endure.sh --only NAME [ROW...] runs one of them (store, requests, fuzz ...), and leaves the document alone;
# endure.sh --again NAME... runs some and puts their rows into the document in place of those from before.
# Exit status 1 when a row isn't met. ENDURE_SOAK_MINUTES: how long the soak lasts, by default 5, 30 before a release.
# ENDURE_FUZZ_SECONDS: for each fuzz target, by default 60, and four times as long without the sanitizers.
# ENDURE_PROGRAMS: a folder of built programs, instead of building them.
set -euo pipefail
cd "$(dirname "$0")/.."
export ENDURE_SOAK_MINUTES=${ENDURE_SOAK_MINUTES:-5}
fuzz_seconds=${ENDURE_FUZZ_SECONDS:-60}
programs=${ENDURE_PROGRAMS:-build/release/bin}

build() {
  scripts/install-packages build run endure
  [ -z "${ENDURE_PROGRAMS:-}" ] || return 0
  cmake --preset release >/dev/null
  cmake --build --preset release --target pixmorad pixmoractl pixmora test_core test_store test_platform
}

# run NAME [ROW...]: prints its rows.
run() {
  if [ "$1" = fuzz ]; then
    nice -n 15 scripts/fuzz "$fuzz_seconds" && nice -n 15 scripts/fuzz --fast $((4 * fuzz_seconds))
  else
    python3 "endurance/$1.py" "$programs" "${@:2}"
  fi
}

if [ "${1:-}" = --only ]; then
  [ $# -ge 2 ] || { echo "usage: endure.sh [--only NAME [ROW...]]" >&2; exit 2; }
  build >&2
  run "${@:2}"
  exit
fi

build
kept=build/endurance  # each script's rows and the commit they are of
mkdir -p "$kept"
# A script that ends before its time leaves a row of its own, so that nothing is missing unseen.
record() {
  local status=0 due=0 own=$kept/$1
  run "$1" | tee "$own.tsv" || status=${PIPESTATUS[0]}
  ! grep -q $'\tNOT MET$' "$own.tsv" || due=1
  if [ "$status" -ne "$due" ] || [ ! -s "$own.tsv" ]; then
    printf -- '-\t%s\t1\tended with %s\tends with its rows\tNOT MET\n' "$1" "$status" | tee -a "$own.tsv"
  fi
  git rev-parse --short HEAD >"$own.commit"
}

if [ "${1:-}" = --again ]; then
  for script in "${@:2}"; do record "$script"; done
else
  rm -f "$kept"/*
  # The fuzz targets take what the others leave of the processor.
  record fuzz &
  fuzzing=$!
  for script in endurance/*.py; do
    [ ! -x "$script" ] || record "$(basename "$script" .py)"
  done
  wait "$fuzzing"
fi
rows=$(mktemp)
trap 'rm -f "$rows"' EXIT
cat "$kept"/*.tsv >"$rows"

processor=$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1)
memory=$(awk '/^MemTotal/ { printf "%.0f GB", $2 / 1048576 }' /proc/meminfo)
command="ENDURE_SOAK_MINUTES=$ENDURE_SOAK_MINUTES ENDURE_FUZZ_SECONDS=$fuzz_seconds scripts/endure.sh"
[ -z "${ENDURE_PROGRAMS:-}" ] || command="ENDURE_PROGRAMS=... $command"
# "commit (its scripts)", one after the other.
commits=$(cd "$kept" && sort -u ./*.commit | while read -r commit; do
  echo "$commit ($(grep -lx "$commit" ./*.commit | sed 's#^./##; s#[.]commit$##' | paste -sd' '))"
done | paste -sd';' | sed 's/;/; /g')
{
  echo "# Endurance"
  echo
  echo "What was done to the system, how often, and what was seen. Rows of a letter belong together: D what is stored, H what"
  echo "is asked, I what pictures and movies hold, L load and slow clients, R coming back. A number in \"wanted\" is a limit."
  echo
  echo "- Date: $(date -u +%Y-%m-%d)"
  echo "- Machine: $(nproc) cores ($processor), $memory, Linux $(uname -r | sed "s#-.*##"), Debian $(cat /etc/debian_version)"
  echo "- Command: \`$command\`"
  echo "- Commit: $commits"
  echo "- Result: $(grep -c $'\tmet$' "$rows" || true) of $(wc -l <"$rows") rows met"
  echo
  echo "| Row | What was done | Times | Seen | Wanted | Met |"
  echo "|---|---|---|---|---|---|"
  sort -t $'\t' -s -k 1,1V "$rows" |
    sed -e "s#${TMPDIR:-/tmp}/pixmora-[^/ ]*#...#g" -e 's/|/\\|/g' -e 's/</\&lt;/g' -e 's/\t/ | /g' -e 's/^/| /' -e 's/$/ |/'
} >docs/endurance.md
echo "docs/endurance.md is written."
! grep -q $'\tNOT MET$' "$rows"
