#!/usr/bin/env bash
# Builds the pimtlv tool (release preset) and shows it on a shipped sample:
# the element tree of the stream, then the item's receiver calls as JSON.
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh

# Quiet while it works; the whole log when it does not.
log=$(mktemp)
if ! { cmake --preset release && cmake --build --preset release -j2 --target pimtlv_tool; } >"$log" 2>&1; then
  cat "$log" >&2
  rm -f "$log"
  exit 1
fi
rm -f "$log"
tool=build/release/tools/pimtlv

# The first sample whose item this checkout has.
for item in event contact email im sms task note calllist; do
  sample=samples/$item.tlv
  [ -f "$sample" ] && "$tool" decode "$sample" >/dev/null 2>&1 && break
  sample=""
done
if [ -z "$sample" ]; then
  # No item codec in this checkout yet: dump needs none.
  echo "\$ pimtlv dump samples/event.tlv"
  exec "$tool" dump samples/event.tlv
fi

echo "\$ pimtlv dump $sample"
"$tool" dump "$sample"
echo
echo "\$ pimtlv decode $sample"
"$tool" decode "$sample"
