#!/usr/bin/env bash
# Builds the fuzz targets (fuzz preset, clang) and runs each for a while on a
# copy of its seed corpus and its regression files, so runs never write into
# the repository. Every input that makes a target fail is copied to
# fuzz/regressions/<target>/ for the test suite to replay, and the script
# exits with status 1.
#
#   fuzz/run.sh [--seconds N | --minutes N] [--jobs N] [target...]
#
# Targets are named by their file without "_fuzz.cpp" (tlv_parser); the
# default is all of them, 30 seconds each, one at a time (--jobs runs that
# many targets side by side; each still gets its full time).
set -euo pipefail

usage() { sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//'; }

seconds=30
jobs=1
targets=()
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="${2:?--seconds needs a number}"; shift 2 ;;
    --minutes) seconds=$(( ${2:?--minutes needs a number} * 60 )); shift 2 ;;
    --jobs) jobs="${2:?--jobs needs a number}"; shift 2 ;;
    -h|--help) usage; exit 0 ;;
    -*) echo "unknown option: $1" >&2; usage >&2; exit 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
case "$seconds" in ''|*[!0-9]*) echo "not a number of seconds: $seconds" >&2; exit 2 ;; esac
case "$jobs" in ''|0|*[!0-9]*) echo "not a number of jobs: $jobs" >&2; exit 2 ;; esac

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
# REQUIRES: the target is built. Fuzzes it, copies its findings into the
# regression corpus and writes a one-line summary to $work/<t>/summary.
# Returns 1 if the target failed.
fuzz_one() {
  local t="$1" corpus="$work/$1/corpus" artifacts="$work/$1/artifacts" log="$work/$1/log"
  local seeds result found runs f
  mkdir -p "$corpus" "$artifacts"
  for seeds in "fuzz/corpus/$t" "fuzz/regressions/$t"; do
    if [ -d "$seeds" ]; then cp -R "$seeds/." "$corpus/"; fi
  done
  # The bridges' import targets also start from the real files beside the
  # project (read at run time, never kept in the repository).
  local real
  case "$t" in
    ical_import|ical_merge) real=ics ;;
    vcard_import|vcard_merge) real=vcf ;;
    mime_import) real=eml ;;
    *) real="" ;;
  esac
  if [ -n "$real" ]; then
    for seeds in "$root/../shared/corpora/$real" "$root/../shared/corpora/bad/$real"; do
      if [ -d "$seeds" ]; then cp "$seeds"/* "$corpus/" 2>/dev/null || true; fi
    done
  fi
  local options=(-max_total_time="$seconds" -max_len=8192 -timeout=10 -rss_limit_mb=2048
                 -print_final_stats=1 -artifact_prefix="$artifacts/")
  [ -f "fuzz/$t.dict" ] && options+=(-dict="fuzz/$t.dict")
  if "build/fuzz/fuzz/${t}_fuzz" "${options[@]}" "$corpus" >"$log" 2>&1; then
    result=clean
  else
    result=FAILED
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
  echo "== $t: ${seconds}s: $result: ${runs:-?} executions, $found new regression file(s)," \
       "corpus $(find "$corpus" -type f | wc -l) inputs" >"$work/$t/summary"
  [ "$result" = clean ]
}

status=0
running=0
for t in "${targets[@]}"; do
  if [ "$running" -ge "$jobs" ]; then
    wait -n || status=1
    running=$((running - 1))
  fi
  echo "== $t: ${seconds}s started"
  fuzz_one "$t" &
  running=$((running + 1))
done
while [ "$running" -gt 0 ]; do
  wait -n || status=1
  running=$((running - 1))
done
for t in "${targets[@]}"; do
  cat "$work/$t/summary"
  if grep -q FAILED "$work/$t/summary"; then tail -n 40 "$work/$t/log" >&2; fi
done
exit "$status"
