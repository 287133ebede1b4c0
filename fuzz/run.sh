#!/usr/bin/env bash
# Builds the fuzz targets (fuzz preset, clang) and runs each for a while on a
# copy of its seed corpus and its regression files, so runs never write into
# the repository. Every input that makes a target fail is copied to
# fuzz/regressions/<target>/ for the test suite to replay, and the script
# exits with status 1.
#
#   fuzz/run.sh [--seconds N | --minutes N] [target...]
#
# Targets are named by their file without "_fuzz.cpp" (tlv_parser); the
# default is all of them, 30 seconds each.
set -euo pipefail

usage() { sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//'; }

seconds=30
targets=()
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="${2:?--seconds needs a number}"; shift 2 ;;
    --minutes) seconds=$(( ${2:?--minutes needs a number} * 60 )); shift 2 ;;
    -h|--help) usage; exit 0 ;;
    -*) echo "unknown option: $1" >&2; usage >&2; exit 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
case "$seconds" in ''|*[!0-9]*) echo "not a number of seconds: $seconds" >&2; exit 2 ;; esac

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"
if [ ${#targets[@]} -eq 0 ]; then
  for src in fuzz/*_fuzz.cpp; do
    name="$(basename "$src" .cpp)"
    targets+=("${name%_fuzz}")
  done
fi
programs=()
for t in "${targets[@]}"; do
  [ -f "fuzz/${t}_fuzz.cpp" ] || { echo "no such fuzz target: $t" >&2; exit 2; }
  programs+=("${t}_fuzz")
done

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j2 --target "${programs[@]}"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
status=0
for t in "${targets[@]}"; do
  corpus="$work/$t/corpus"
  artifacts="$work/$t/artifacts"
  mkdir -p "$corpus" "$artifacts"
  for seeds in "fuzz/corpus/$t" "fuzz/regressions/$t"; do
    if [ -d "$seeds" ]; then cp -R "$seeds/." "$corpus/"; fi
  done
  options=(-max_total_time="$seconds" -max_len=8192 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
           -artifact_prefix="$artifacts/")
  [ -f "fuzz/$t.dict" ] && options+=(-dict="fuzz/$t.dict")
  echo "== $t: ${seconds}s"
  log="$work/$t/log"
  if "build/fuzz/fuzz/${t}_fuzz" "${options[@]}" "$corpus" >"$log" 2>&1; then
    result=clean
  else
    result=FAILED
    status=1
    tail -n 40 "$log" >&2
  fi
  # libFuzzer names its findings crash-, leak-, timeout-, oom- or slow-unit-
  # followed by the input's hash; the regression file keeps kind and hash.
  found=0
  for f in "$artifacts"/*; do
    [ -f "$f" ] || continue
    mkdir -p "fuzz/regressions/$t"
    cp "$f" "fuzz/regressions/$t/found-$(basename "$f")"
    found=$((found + 1))
  done
  runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)"
  echo "   $result: ${runs:-?} executions, $found new regression file(s)," \
       "corpus $(find "$corpus" -type f | wc -l) inputs"
done
exit "$status"
