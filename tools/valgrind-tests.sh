#!/usr/bin/env bash
# Runs the library's test programs under valgrind's memcheck: any leak, any
# invalid read or write, any use of uninitialised memory fails the run.
# Uses the dev build (builds it if needed). The whole run takes a few minutes;
# the malformed-input matrix and the million-node nesting test are the slowest.
# Usage: tools/valgrind-tests.sh [test program name ...]
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset dev >/dev/null
cmake --build --preset dev -j2 >/dev/null
programs=("$@")
if [ ${#programs[@]} -eq 0 ]; then
    for p in build/dev/tests/*_test; do programs+=("$(basename "$p")"); done
fi
failed=()
for name in "${programs[@]}"; do
    start=$(date +%s)
    if valgrind --quiet --leak-check=full --show-leak-kinds=definite,indirect,possible \
        --errors-for-leak-kinds=definite,indirect,possible --error-exitcode=1 \
        "build/dev/tests/$name" --gtest_brief=1 >"/tmp/valgrind-$name.log" 2>&1; then
        echo "clean   $name ($(($(date +%s) - start)) s)"
    else
        echo "FAILED  $name ($(($(date +%s) - start)) s), see /tmp/valgrind-$name.log"
        failed+=("$name")
    fi
done
if [ ${#failed[@]} -ne 0 ]; then
    echo "valgrind found problems in: ${failed[*]}"
    exit 1
fi
echo "all ${#programs[@]} test programs clean under valgrind"
