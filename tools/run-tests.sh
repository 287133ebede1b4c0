#!/usr/bin/env bash
# Builds the development preset (warnings are errors) and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset dev >/dev/null
cmake --build --preset dev
ctest --preset dev

# The Python package: built and installed into a throwaway virtual
# environment that sees the system's packages (pytest, Hypothesis), then its
# tests, which compare it with the tool just built.
python=${PIMTLV_PYTHON:-/usr/bin/python3}
venv=$(mktemp -d)
trap 'rm -rf "$venv"' EXIT
"$python" -m venv --system-site-packages "$venv"
"$venv/bin/pip" install --quiet --no-build-isolation --no-index .
PIMTLV_TOOL="$PWD/build/dev/tools/pimtlv" "$venv/bin/python" -m pytest -q -p no:cacheprovider python/tests
