#!/usr/bin/env bash
# Builds the release preset and runs the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release
./build/release/examples/pimtlv_example
