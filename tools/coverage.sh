#!/usr/bin/env bash
# Builds the coverage preset (gcov instrumentation), runs the whole test suite
# and prints line and branch coverage of the library, per library directory,
# then the branch report of the item parsers (lines with a branch never taken
# are listed under "Missing").
# Branches that only throw (the library never lets an exception out, but the
# compiler still plants them around calls into the standard library) and
# branches the compiler marks unreachable are left out of the counts.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset coverage >/dev/null
cmake --build --preset coverage -j2 >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage >/dev/null
gcov_opts=(--root . --object-directory build/coverage --exclude-throw-branches
    --exclude-unreachable-branches)
# The summaries go to stdout; the full report to a scratch file (gcovr replaces
# its output file, so it must never be a device such as /dev/null).
scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT
for dir in platform parsercreatorcollection pimshared; do
    echo "== $dir/"
    gcovr "${gcov_opts[@]}" --filter "$dir/" --print-summary -o "$scratch" | grep -E '^(lines|branches)'
done
echo "== library"
gcovr "${gcov_opts[@]}" --filter 'platform/|parsercreatorcollection/|pimshared/' --print-summary \
    -o "$scratch" | grep -E '^(lines|branches)'
echo "== branches of the parsers"
gcovr "${gcov_opts[@]}" --filter 'pimshared/.*Parser.*\.cpp|parsercreatorcollection/.*Parser.*\.cpp' \
    --branches
