#!/usr/bin/env bash
# Builds the development preset (warnings are errors) and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev
ctest --preset dev
