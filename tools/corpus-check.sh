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
# part contents (mime-compare, built beside the tool). Calendars and cards
# must also merge back onto themselves (`export --onto`) with every item
# reported unchanged and text that the format's reader (text-compare, built
# beside the tool) sees as the original; and a stream edited as a device
# would (a summary or formatted name changed, one carried property removed)
# must merge with exactly that reported and changed. A format whose adapter
# has no merge yet skips these checks. --bad: each file must
# end in items or a clear error (exit status 0, 1 or 2 and no sanitizer
# report), and so must a merge onto it; a crash, a hang (60 s) or a
# sanitizer report is a failure. Exit
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
textcompare="$(dirname "$tool")/text-compare"
vcardcompare="$(dirname "$tool")/vcard-compare"

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

# The device's edit: the first item with a summary (or formatted name) gets
# another one, and loses one carried property. Prints the item's number and
# the report it must give; nothing when no item can be edited. Each item
# kind's operations name the properties they become.
edit_stream() {
  python3 - "$1" "$2" <<'PY'
import json, sys
renamed = {"Summary": "SUMMARY", "FormattedName": "FN"}
removable = {"Location": "LOCATION", "Description": "DESCRIPTION", "Categories": "CATEGORIES",
             "Priority": "PRIORITY", "Classification": "CLASS", "Organizer": "ORGANIZER",
             "Attendee": "ATTENDEE", "Status": "STATUS", "Note": "NOTE", "Title": "TITLE",
             "Organization": "ORG", "Url": "URL"}
data = json.load(open(sys.argv[1]))
items = data if isinstance(data, list) else [data]
for n, item in enumerate(items):
    calls = item.get("calls", [])
    ops = [c["op"] for c in calls]
    rename = next((op for op in ops if op in renamed), None)
    drop = next((op for op in ops if op in removable), None)
    if rename is None or drop is None:
        continue
    for c in calls:
        if c["op"] == rename:
            c["args"]["text"] = (c["args"].get("text") or "") + " (edited)"
            break
    item["calls"] = [c for c in calls if c["op"] != drop]
    json.dump(data, open(sys.argv[2], "w"))
    print(n + 1, ", ".join(sorted([renamed[rename] + " changed", removable[drop] + " removed"])))
    break
PY
}

# The merge checks of one file whose streams are in $work/a.tlv: prints
# "skipped" when the format has no merge, a failure, or nothing.
merge_check() {
  local f=$1 fmt=$2
  run "$tool" export "$work/a.tlv" --to "$fmt" --onto "$f" -o "$work/m.txt" 2>"$work/merge.err"
  local status=$?
  if [ "$status" -eq 2 ] && grep -q 'has no merge' "$work/merge.err"; then echo skipped; return; fi
  if [ "$status" -ne 0 ]; then echo "merge onto itself (exit $status): $(head -n 1 "$work/merge.err" | cut -c1-80)"; return; fi
  if grep -v -q ': unchanged$' "$work/merge.err"; then
    echo "merge onto itself: $(grep -v -m1 ': unchanged$' "$work/merge.err" | cut -c1-80)"; return
  fi
  # Cards are compared line for line by vcard-compare (which names the first
  # difference only), calendars property by property by text-compare.
  local compared=1
  if [ "$fmt" = vcf ] && [ -x "$vcardcompare" ]; then
    run "$vcardcompare" "$f" "$work/m.txt" >"$work/tc.out" 2>&1
    status=$?
    compared=0
  else
    run "$textcompare" --format "$fmt" "$f" "$work/m.txt" >"$work/tc.out" 2>&1
    status=$?
  fi
  if [ "$status" -eq 3 ]; then compared=0
  elif [ "$status" -ne 0 ]; then echo "merge onto itself reads otherwise: $(head -n 1 "$work/tc.out" | cut -c1-80)"; return
  fi
  run "$tool" decode "$work/a.tlv" >"$work/a.json" 2>/dev/null || { echo "decode failed"; return; }
  local expected
  expected=$(edit_stream "$work/a.json" "$work/e.json") || { echo "edit failed"; return; }
  [ -n "$expected" ] || return
  local item=${expected%% *} want=${expected#* }
  run "$tool" encode "$work/e.json" -o "$work/e.tlv" 2>/dev/null || { echo "encode of the edit failed"; return; }
  run "$tool" export "$work/e.tlv" --to "$fmt" --onto "$f" -o "$work/m2.txt" 2>"$work/merge2.err" \
    || { echo "merge of the edit failed: $(head -n 1 "$work/merge2.err" | cut -c1-80)"; return; }
  local line got
  line=$(grep -E "^[a-z]+ $item( |:)" "$work/merge2.err" | head -n 1)
  got=$(sed -E 's/.*: changed: //' <<<"$line" | tr ',' '\n' | sed 's/^ //' | sort | paste -sd, | sed 's/,/, /g')
  if [ "$got" != "$want" ]; then echo "edit reported as '${line#*: }', not '$want'"; return; fi
  if [ "$(grep -c -v ': unchanged$' "$work/merge2.err")" -ne 1 ]; then echo "edit changed other items"; return; fi
  [ "$compared" = 1 ] || return
  run "$textcompare" --format "$fmt" "$f" "$work/m2.txt" >"$work/tc2.out" 2>&1
  # What the edit touched, and what a changed item gets by rule.
  local allowed="${want//,/}"
  allowed=" $(sed -E 's/ (changed|removed)//g' <<<"$allowed") DTSTAMP LAST-MODIFIED SEQUENCE REV "
  local name
  while read -r name; do
    case "$allowed" in *" $name "*) ;; *) echo "edit also changed $name in the text"; return ;; esac
  done < <(sed -n -E 's/.*: ([A-Z0-9-]+) (differs|only in the (first|second))$/\1/p' "$work/tc2.out")
  if grep -q 'components differ' "$work/tc2.out"; then echo "edit changed the components"; return; fi
  for name in $(sed -E 's/ (changed|removed)//g; s/,//g' <<<"$want"); do
    grep -q ": $name " "$work/tc2.out" || { echo "edit of $name is not in the text"; return; }
  done
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
    rm -f "$work/a.tlv"
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
      # A bad original under a merge (with whatever streams its import gave):
      # a merge or a clear error, never a crash.
      if [ "$status" -le 2 ] && { [ "$fmt" = ics ] || [ "$fmt" = vcf ]; }; then
        [ -f "$work/a.tlv" ] || : >"$work/a.tlv"
        run "$tool" export "$work/a.tlv" --to "$fmt" --onto "$f" -o "$work/m.txt" 2>"$work/merge.err"
        merged=$?
        if grep -q -E 'Sanitizer|runtime error' "$work/merge.err"; then merged=134; fi
        if [ "$merged" -gt 2 ]; then
          verdict="FAILED merge onto it (exit $merged)"; failed=$((failed + 1))
        fi
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
    elif [ "$fmt" = ics ] || [ "$fmt" = vcf ]; then
      merged=$(merge_check "$f" "$fmt")
      if [ "$merged" = skipped ]; then verdict="ok (no merge)"
      elif [ -n "$merged" ]; then verdict="FAILED $merged"
      fi
    fi
    case "$verdict" in ok*) ;; *) failed=$((failed + 1)) ;; esac
    printf '%-60s %-3s %s\n' "$name" "$fmt" "$verdict, $lost lost"
  done
done

echo "== $files files, $failed failed"
if [ "$bad" = 0 ] && [ ${#losses[@]} -gt 0 ]; then
  echo "== losses (files in which each was reported):"
  for p in "${!losses[@]}"; do printf '   %-28s %d\n' "$p" "${losses[$p]}"; done | sort -k2,2nr -k1,1
fi
[ "$failed" -eq 0 ]
