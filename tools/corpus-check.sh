#!/usr/bin/env bash
# Runs the bridges over every file of a folder of real-world text files
# (iCalendar, vCard, e-mail) and prints one line per file and a summary.
#
#   tools/corpus-check.sh [--tool PATH] [--bad] DIR...
#
# Good files (the default): each must import (losses are counted, not
# failures), give streams that `pimtlv check` finds clean, export, and import
# again to the very same streams: what the items carry survives the text
# format's own writer and reader. E-mails (eml, mbox) must also read, in
# GMime, the same as their export: MIME tree, carried header values, decoded
# part contents (mime-compare, built beside the tool). --bad: each file must
# end in items or a clear error (exit status 0, 1 or 2 and no sanitizer
# report); a crash, a hang (60 s) or a sanitizer report is a failure. Exit
# status 1 when any file failed.
set -uo pipefail

tool=build/release/tools/pimtlv
bad=0
dirs=()
while [ $# -gt 0 ]; do
  case "$1" in
    --tool) tool="${2:?--tool needs a path}"; shift 2 ;;
    --bad) bad=1; shift ;;
    -h|--help) sed -n '2,16p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) dirs+=("$1"); shift ;;
  esac
done
[ ${#dirs[@]} -gt 0 ] || { echo "usage: $0 [--tool PATH] [--bad] DIR..." >&2; exit 2; }
[ -x "$tool" ] || { echo "no tool at $tool (build the release preset, or give --tool)" >&2; exit 2; }

compare="$(dirname "$tool")/mime-compare"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The format a file's name tells, for export.
format_of() {
  case "${1,,}" in
    *.ics|*.ical|*.ifb) echo ics ;;
    *.vcf|*.vcard) echo vcf ;;
    *.eml|*.msg) echo eml ;;
    *.mbox|*.mbx) echo mbox ;;
    *) echo "" ;;
  esac
}

files=0 failed=0
declare -A losses=()
# Runs a command with a time limit; status 124 on time-out, >= 128 on a signal.
run() { timeout 60 "$@"; }

for dir in "${dirs[@]}"; do
  for f in "$dir"/*; do
    [ -f "$f" ] || continue
    files=$((files + 1))
    name=$(basename "$f")
    fmt=$(format_of "$f")
    run "$tool" import "$f" -o "$work/a.tlv" 2>"$work/import.err"
    status=$?
    if grep -q -E 'Sanitizer|runtime error' "$work/import.err"; then status=134; fi
    while read -r prop; do
      [ -n "$prop" ] && losses[$prop]=$(( ${losses[$prop]:-0} + 1 ))
    done < <(sed -n -E 's/^warning: [^ ]*: ([a-z]+ [0-9]+: )?(.*) not carried.*/\2/p' \
               "$work/import.err" | sort -u)
    lost=$(grep -c '^warning: .*not carried' "$work/import.err")
    if [ "$bad" = 1 ]; then
      if [ "$status" -le 2 ]; then
        verdict="ok (exit $status)"
        [ "$status" -eq 2 ] && verdict="ok (refused: $(head -n 1 "$work/import.err" | cut -c1-90))"
      else
        verdict="FAILED (exit $status)"; failed=$((failed + 1))
      fi
      printf '%-60s %s\n' "$name" "$verdict"
      continue
    fi
    verdict=ok
    if [ "$status" -ne 0 ]; then
      verdict="FAILED import (exit $status): $(grep -m1 '^error' "$work/import.err" | cut -c1-90)"
    elif [ ! -s "$work/a.tlv" ]; then
      :  # no items (a file of time zones, say): nothing to export
    elif ! run "$tool" check "$work/a.tlv" >"$work/check.out" 2>&1; then
      verdict="FAILED check: $(grep -m1 -E '^(code|error)' "$work/check.out" | cut -c1-90)"
    elif ! run "$tool" export "$work/a.tlv" --to "$fmt" -o "$work/b.txt" 2>"$work/export.err"; then
      verdict="FAILED export: $(head -n 1 "$work/export.err" | cut -c1-90)"
    elif ! run "$tool" import "$work/b.txt" --from "$fmt" -o "$work/c.tlv" 2>/dev/null; then
      verdict="FAILED re-import of the export"
    elif ! cmp -s "$work/a.tlv" "$work/c.tlv"; then
      verdict="FAILED round trip: the export imports to other streams"
    elif [ "$fmt" = eml ] || [ "$fmt" = mbox ]; then
      if [ ! -x "$compare" ]; then
        verdict="FAILED: no $compare to compare the MIME trees"
      elif ! run "$compare" "$f" "$work/b.txt" $([ "$fmt" = mbox ] && echo --mbox) \
          >"$work/compare.out" 2>&1; then
        verdict="FAILED compare: $(head -n 1 "$work/compare.out" | cut -c1-90)"
      fi
    fi
    [ "$verdict" = ok ] || failed=$((failed + 1))
    printf '%-60s %-3s %s\n' "$name" "$fmt" "$verdict, $lost lost"
  done
done

echo "== $files files, $failed failed"
if [ "$bad" = 0 ] && [ ${#losses[@]} -gt 0 ]; then
  echo "== losses (files in which each was reported):"
  for p in "${!losses[@]}"; do printf '   %-28s %d\n' "$p" "${losses[$p]}"; done | sort -k2,2nr -k1,1
fi
[ "$failed" -eq 0 ]
