#!/usr/bin/env bash
# The codec beside its yardsticks, in instructions per item (bench/instructions.py,
# callgrind; steady whatever else the machine runs) and in median CPU time of
# five repetitions, each pair from one run of one program.
#
#   bench/compare.sh [BENCH_DIR]      (default: build/bench/bench, bench preset)
#
# Rows: the walk against the yardstick walker (target: at most 2x); parse and
# create + GetData of the event, contact, e-mail and instant message against
# protobuf (targets: parse 1.5x faster, create 2x faster); the event against
# msgpack-c (create within 2x of pack, parse no slower than unpack).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
dir="${1:-$root/build/bench/bench}"
ir() {  # program filter function per-iteration -> instructions per item
  python3 "$root/bench/instructions.py" "$dir/$1" "$2" "$3" "$4" | sed -n 's/.*: \([0-9]*\) instructions.*/\1/p'
}
cpu() {  # program filter -> median CPU ns
  "$dir/$1" --benchmark_filter="$2" --benchmark_repetitions=5 --benchmark_min_time=0.2 \
    --benchmark_report_aggregates_only=true --benchmark_format=csv 2>/dev/null |
    awk -F, '/_median/ {print $4; exit}'
}
# Ratios are the yardstick's cost over the codec's (how many times faster the
# codec is), except for the walk, where they are the codec's over the yardstick's.
row() {  # label program ours-filter ours-function ours-per theirs-filter theirs-function theirs-per
  local a b ca cb
  a=$(ir "$2" "$3" "$4" "$5"); b=$(ir "$2" "$6" "$7" "$8")
  ca=$(cpu "$2" "$3"); cb=$(cpu "$2" "$6")
  awk -v l="$1" -v a="$a" -v b="$b" -v ca="$ca" -v cb="$cb" -v walk="${1%% *}" 'BEGIN {
    r = walk == "walk" ? a / b : b / a; rc = walk == "walk" ? ca / cb : cb / ca
    printf "%-26s %8d Ir %7.0f ns | %8d Ir %7.0f ns | %5.2fx Ir %5.2fx CPU\n", l, a, ca, b, cb, r, rc }'
}
echo "                           codec               | yardstick           | ratio"
if [ -x "$dir/calendar_bench" ]; then
  row "walk (event) / yardstick" calendar_bench '^Event/PlainWalk$' '*::Walk<PimShared::CTLVCalendarCreator*' 'CTLVParser::Parse' \
      '^Event/YardstickWalk$' '*YardstickWalk<*' 'FastTextCheck>::Walk'
  row "event parse / protobuf" calendar_bench '^Event/Parse$' '*Parse<PimShared::CTLVCalendarParser*' 'CTLVCalendarParser::Parse' \
      '^Event/Protobuf/ParseFromString$' '*ProtobufParse<*' 'ParseFromString'
  row "event create / protobuf" calendar_bench '^Event/CreateAndGetData$' '*Create<PimShared::CTLVCalendarCreator*' 'CTLVCreatorImpl::GetData' \
      '^Event/Protobuf/BuildAndSerialize$' '*ProtobufBuildAndSerialize<*' 'SerializeToString'
  row "event parse / msgpack" calendar_bench '^Event/Parse$' '*Parse<PimShared::CTLVCalendarParser*' 'CTLVCalendarParser::Parse' \
      '^Event/Msgpack/Unpack$' '*MsgpackUnpack<*' 'MsgpackUnpackEvent'
  row "event create / msgpack" calendar_bench '^Event/CreateAndGetData$' '*Create<PimShared::CTLVCalendarCreator*' 'CTLVCreatorImpl::GetData' \
      '^Event/Msgpack/Pack$' '*MsgpackPack<*' 'MsgpackPackEvent'
  # The compact event: 994 bytes, 66 elements.
  row "compact parse / protobuf" calendar_bench '^CompactEvent/Parse$' '*Parse<PimShared::CTLVCalendarParser*' 'CTLVCalendarParser::Parse' \
      '^CompactEvent/Protobuf/ParseFromString$' '*ProtobufParse<*' 'ParseFromString'
  row "compact parse / msgpack" calendar_bench '^CompactEvent/Parse$' '*Parse<PimShared::CTLVCalendarParser*' 'CTLVCalendarParser::Parse' \
      '^CompactEvent/Msgpack/Unpack$' '*MsgpackUnpack<*' 'MsgpackUnpackEvent'
  row "compact create / msgpack" calendar_bench '^CompactEvent/CreateAndGetData$' '*Create<PimShared::CTLVCalendarCreator*' 'CTLVCreatorImpl::GetData' \
      '^CompactEvent/Msgpack/Pack$' '*MsgpackPack<*' 'MsgpackPackEvent'
  # Task and note have no yardstick: their parse against the event's.
  for item in Task Note; do
    row "${item,,} parse / event parse" calendar_bench "^${item}/Parse\$" "*Parse<PimShared::CTLV${item}Parser*" "CTLV${item}Parser::Parse" \
        '^Event/Parse$' '*Parse<PimShared::CTLVCalendarParser*' 'CTLVCalendarParser::Parse'
  done
fi
if [ -x "$dir/contact_bench" ]; then
  row "contact parse / protobuf" contact_bench '^BM_ContactParse$' '*BM_ContactParse*' 'CTLVContactParser::Parse' \
      '^Contact/Protobuf/ParseFromString$' '*ProtobufParse<*' 'ParseFromString'
  row "contact create / protobuf" contact_bench '^BM_ContactCreateAndGetData$' '*BM_ContactCreateAndGetData*' 'CTLVCreatorImpl::GetData' \
      '^Contact/Protobuf/BuildAndSerialize$' '*ProtobufBuildAndSerialize<*' 'SerializeToString'
fi
if [ -x "$dir/message_bench" ]; then
  for item in Email IM; do
    row "${item} parse / protobuf" message_bench "^${item}/Parse\$" "*ParseItem<PimShared::CTLV${item}Creator*CTLV${item}Parser*" "CTLV${item}Parser::Parse" \
        "^${item}/Protobuf/ParseFromString\$" "*ProtobufParse<pimbench::$([ $item = IM ] && echo InstantMessage || echo Email)*" 'ParseFromString'
    row "${item} create / protobuf" message_bench "^${item}/Create\$" "*Create<PimShared::CTLV${item}Creator*" 'CTLVCreatorImpl::GetData' \
        "^${item}/Protobuf/BuildAndSerialize\$" "*ProtobufBuildAndSerialize<pimbench::$([ $item = IM ] && echo InstantMessage || echo Email)*" 'SerializeToString'
  done
fi
